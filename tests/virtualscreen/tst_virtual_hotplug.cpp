#include <QtTest>
#include <memory>
#include <thread>

#include "device/interface_name.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hotplug.h"

using namespace kivo;

namespace {

using Told = QVector<std::pair<QString, bool>>;

QString Short(const QString& name) {
    const InterfaceName read = ParseInterfaceName(name);
    return read.vendorId == 0x04D9 && read.productId == 0xFD01
               ? name.mid(name.indexOf(QLatin1String("MI_")), 5)
               : QString();
}

const Told kGone{{QStringLiteral("MI_01"), false}, {QStringLiteral("MI_00"), false}};
const Told kThere{{QStringLiteral("MI_00"), true}, {QStringLiteral("MI_01"), true}};

}  // namespace

class TestVirtualHotplug : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        m_told.clear();
        m_screen = std::make_unique<VirtualHidApi>();
        m_hotplug = std::make_unique<VirtualHotplug>(*m_screen);
        QVERIFY(m_hotplug->Register({},
                                    [this](const DeviceChange& change) {
                                        QCOMPARE(QThread::currentThread(), thread());
                                        m_told.append({Short(change.name), change.arrived});
                                    },
                                    {}));
    }
    void cleanup() {
        m_hotplug.reset();
        m_screen.reset();
    }

    void BothInterfacesAreToldByTheEventLoop() {
        m_screen->Unplug();
        QVERIFY(m_told.isEmpty());
        QTRY_COMPARE(m_told, kGone);
        m_told.clear();
        m_screen->Plug();
        QTRY_COMPARE(m_told, kThere);
    }

    void OrderIsKeptAcrossThreads() {
        std::thread other([this] {
            m_screen->Unplug();
            m_screen->Plug(VirtualHidApi::NodeNumbers::New);
        });
        other.join();
        QTRY_COMPARE(m_told, kGone + kThere);
    }

    void ReportsAreNotTold() {
        HidHandle* const handle = m_screen->OpenPath(m_screen->DataPath());
        const std::array<quint8, 65> report{0, 0x55};
        QVERIFY(m_screen->Write(handle, report.data(), report.size()) > 0);
        m_screen->Close(handle);
        m_screen->Unplug();
        QTRY_COMPARE(m_told, kGone);
    }

    void NothingIsToldAfterItsEnd() {
        m_screen->Unplug();
        m_hotplug.reset();
        m_screen->Plug();
        // Whatever is still queued for it would come with these.
        QCoreApplication::sendPostedEvents();
        QCoreApplication::processEvents();
        QVERIFY(m_told.isEmpty());
    }

    void PathsAreListedAfresh() { QCOMPARE(int(m_hotplug->PathOfArrival()), int(ArrivalPath::Enumeration)); }

private:
    Told m_told;
    std::unique_ptr<VirtualHidApi> m_screen;
    std::unique_ptr<VirtualHotplug> m_hotplug;
};

KIVO_GUILESS_TEST(TestVirtualHotplug)
#include "tst_virtual_hotplug.moc"
