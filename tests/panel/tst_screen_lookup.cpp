#include <QSemaphore>
#include <QtTest>

#include "panel/screen_lookup.h"
#include "support/forwarding_hid_api.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;
using std::chrono::milliseconds;
using std::chrono::minutes;

namespace {

// A bus on which a listing does not come back before it is let go.
class HangingBus : public test::ForwardingHidApi {
public:
    HangingBus(std::shared_ptr<VirtualHidApi> bus, std::shared_ptr<QSemaphore> go)
        : ForwardingHidApi(*bus), m_bus(std::move(bus)), m_go(std::move(go)) {}
    std::vector<HidDeviceInfo> Enumerate(quint16 vendor, quint16 product) override {
        m_go->acquire();
        return ForwardingHidApi::Enumerate(vendor, product);
    }

private:
    const std::shared_ptr<VirtualHidApi> m_bus;
    const std::shared_ptr<QSemaphore> m_go;
};

}  // namespace

class TestScreenLookup : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void AScreenIsFound();
    void NoneIsNotFound();
    void AListingThatHangsGivesNoAnswer();
};

void TestScreenLookup::AScreenIsFound() {
    const auto found = IsScreenPluggedIn([] { return std::make_unique<VirtualHidApi>(); }, minutes(5));
    QCOMPARE(found, std::optional<bool>(true));
}

void TestScreenLookup::NoneIsNotFound() {
    const auto makeEmpty = [] {
        auto bus = std::make_unique<VirtualHidApi>();
        bus->Unplug();
        return bus;
    };
    QCOMPARE(IsScreenPluggedIn(makeEmpty, minutes(5)), std::optional<bool>(false));
}

void TestScreenLookup::AListingThatHangsGivesNoAnswer() {
    const auto go = std::make_shared<QSemaphore>();
    const auto makeHanging = [go] {
        return std::make_unique<HangingBus>(std::make_shared<VirtualHidApi>(), go);
    };
    const auto found = IsScreenPluggedIn(makeHanging, milliseconds(10));
    QVERIFY(!found);
    // It may come back whenever it likes.
    go->release(100);
    QTRY_VERIFY(go->available() < 100);
}

KIVO_GUILESS_TEST(TestScreenLookup)
#include "tst_screen_lookup.moc"
