#include <QtTest>
#include <atomic>
#include <thread>

#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

namespace {

QByteArray TimeSync() {
    return QByteArray::fromHex("0055a1f2122e05") + QByteArray(4097 - 7, '\0');
}

QByteArray RedPixel() {
    return QByteArray::fromHex("0055a2000000000101f800") + QByteArray(4096 - 11, '\0');
}

QByteArray FirstChunk() {
    return QByteArray::fromHex("0055a3f00100000010") + QByteArray(4096, '\0');
}

int Write(HidApi& api, HidHandle* handle, const QByteArray& report) {
    return api.Write(handle, reinterpret_cast<const quint8*>(report.constData()),
                     static_cast<std::size_t>(report.size()));
}

// An open handle that closes itself.
class Open {
public:
    Open(HidApi& api, const QByteArray& path) : m_api(api), m_handle(api.OpenPath(path)) {}
    ~Open() {
        if (m_handle != nullptr) {
            m_api.Close(m_handle);
        }
    }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;

    int Write(const QByteArray& report) const { return ::Write(m_api, m_handle, report); }
    HidHandle* Handle() const { return m_handle; }

private:
    HidApi& m_api;
    HidHandle* m_handle;
};

}  // namespace

class TestVirtualHidApi : public QObject {
    Q_OBJECT

private slots:
    void listsTheTwoInterfaces() {
        VirtualHidApi screen;
        const std::vector<HidDeviceInfo> devices = screen.Enumerate(0, 0);
        QCOMPARE(devices.size(), std::size_t{2});
        for (std::size_t i = 0; i < 2; ++i) {
            QCOMPARE(devices[i].vendorId, quint16{0x04D9});
            QCOMPARE(devices[i].productId, quint16{0xFD01});
            QCOMPARE(devices[i].usage, quint16{1});
            QCOMPARE(devices[i].interfaceNumber, static_cast<int>(i));
        }
        QCOMPARE(devices[0].usagePage, quint16{0x000C});
        QCOMPARE(devices[1].usagePage, quint16{0xFFA0});
        QCOMPARE(devices[0].path, screen.ControlPath());
        QCOMPARE(devices[1].path, screen.DataPath());
        QVERIFY(devices[0].path != devices[1].path);
    }

    void listsByIds_data() {
        QTest::addColumn<int>("vendorId");
        QTest::addColumn<int>("productId");
        QTest::addColumn<int>("count");
        QTest::newRow("its own") << 0x04D9 << 0xFD01 << 2;
        QTest::newRow("any product") << 0x04D9 << 0 << 2;
        QTest::newRow("any vendor") << 0 << 0xFD01 << 2;
        QTest::newRow("another vendor") << 0x04D8 << 0xFD01 << 0;
        QTest::newRow("another product") << 0x04D9 << 0xFD02 << 0;
    }

    void listsByIds() {
        QFETCH(int, vendorId);
        QFETCH(int, productId);
        VirtualHidApi screen;
        const auto devices =
            screen.Enumerate(static_cast<quint16>(vendorId), static_cast<quint16>(productId));
        QTEST(static_cast<int>(devices.size()), "count");
    }

    void takesReports() {
        VirtualHidApi screen;
        const Open data(screen, screen.DataPath());
        QCOMPARE(data.Write(TimeSync()), 4097);
        QCOMPARE(data.Write(RedPixel()), 4096);
        QCOMPARE(screen.State().clock, std::optional<QTime>(QTime(18, 46, 5)));
        QCOMPARE(screen.State().image.pixel(0, 0), qRgb(255, 0, 0));
    }

    void aPictureThatWasTakenAwayDoesNotChange() {
        VirtualHidApi screen;
        const Open data(screen, screen.DataPath());
        const PanelState before = screen.State();
        data.Write(RedPixel());
        QCOMPARE(before.image.pixel(0, 0), qRgb(0, 0, 0));
    }

    void aWrongReportIsTakenLikeAnyOther() {
        // As a real system does: nothing checks what a report says but the panel.
        VirtualHidApi screen;
        const Open data(screen, screen.DataPath());
        QTest::ignoreMessage(QtWarningMsg, "Report refused, command: 0xa9");
        QCOMPARE(data.Write(QByteArray::fromHex("0055a900")), 4);
        QCOMPARE(screen.State().counts.errors, quint64{1});
    }

    void theControlInterfaceTakesNothing() {
        VirtualHidApi screen;
        const Open control(screen, screen.ControlPath());
        QVERIFY(control.Handle() != nullptr);
        QTest::ignoreMessage(QtWarningMsg, "Report refused, interface: a report for the control interface");
        QCOMPARE(control.Write(TimeSync()), -1);
        QCOMPARE(screen.State().counts.Errors(PanelError::Interface), quint64{1});
        QCOMPARE(screen.State().counts.reports, quint64{0});
    }

    void thereAreNoFeatureReports() {
        VirtualHidApi screen;
        const Open data(screen, screen.DataPath());
        const quint8 byte = 0;
        QCOMPARE(screen.SendFeatureReport(data.Handle(), &byte, 1), -1);
    }

    void opensOnlyItsOwnPaths() {
        VirtualHidApi screen;
        QCOMPARE(screen.OpenPath("/dev/hidraw0"), nullptr);
        QCOMPARE(screen.OpenPath(QByteArray()), nullptr);
        QCOMPARE(screen.OpenHandles(), 0);
    }

    void countsOpenHandles() {
        VirtualHidApi screen;
        {
            const Open first(screen, screen.DataPath());
            const Open second(screen, screen.ControlPath());
            QCOMPARE(screen.OpenHandles(), 2);
        }
        QCOMPARE(screen.OpenHandles(), 0);
    }

    void pulledOutItIsNotThere() {
        VirtualHidApi screen;
        const Open data(screen, screen.DataPath());
        screen.Unplug();
        QVERIFY(!screen.IsPlugged());
        QVERIFY(screen.Enumerate(0, 0).empty());
        QCOMPARE(screen.OpenPath(screen.DataPath()), nullptr);
        QCOMPARE(data.Write(TimeSync()), -1);
    }

    void anOldHandleStaysUseless() {
        VirtualHidApi screen;
        const Open old(screen, screen.DataPath());
        screen.Unplug();
        screen.Plug();
        QCOMPARE(old.Write(TimeSync()), -1);
        const Open fresh(screen, screen.DataPath());
        QCOMPARE(fresh.Write(TimeSync()), 4097);
    }

    void thePictureOutlivesThePull() {
        VirtualHidApi screen;
        {
            const Open data(screen, screen.DataPath());
            data.Write(RedPixel());
        }
        screen.Unplug();
        screen.Plug();
        QCOMPARE(screen.State().image.pixel(0, 0), qRgb(255, 0, 0));
    }

    void mayComeBackUnderNewPaths() {
        VirtualHidApi screen;
        const QByteArray control = screen.ControlPath();
        const QByteArray data = screen.DataPath();
        screen.Unplug();
        screen.Plug(VirtualHidApi::NodeNumbers::New);
        for (const QByteArray& path : {screen.ControlPath(), screen.DataPath()}) {
            QVERIFY(path != control);
            QVERIFY(path != data);
        }
        QCOMPARE(screen.OpenPath(data), nullptr);
    }

    void anOpenNodeSaysWhatItIs() {
        VirtualHidApi screen;
        const Open data(screen, screen.DataPath());
        const Open control(screen, screen.ControlPath());
        const std::vector<HidDeviceInfo> said = screen.Identify(data.Handle());
        QCOMPARE(said.size(), std::size_t{1});
        QCOMPARE(said.front().vendorId, quint16{0x04D9});
        QCOMPARE(said.front().productId, quint16{0xFD01});
        QCOMPARE(said.front().usagePage, quint16{0xFFA0});
        QCOMPARE(said.front().interfaceNumber, 1);
        QVERIFY(said.front().product.isEmpty());
        QCOMPARE(screen.Identify(control.Handle()).front().interfaceNumber, 0);
    }

    void eachPluggingInMakesNewNodes() {
        VirtualHidApi screen;
        const QByteArray stamp = screen.NodeStamp(screen.DataPath());
        QVERIFY(!stamp.isEmpty());
        screen.Unplug();
        QCOMPARE(screen.NodeStamp(screen.DataPath()), QByteArray());
        QCOMPARE(screen.PanelKey(screen.DataPath()), QByteArray());
        screen.Plug();
        QVERIFY(!screen.NodeStamp(screen.DataPath()).isEmpty());
        QVERIFY(screen.NodeStamp(screen.DataPath()) != stamp);
        QCOMPARE(screen.NodeStamp("virtual/other"), QByteArray());
    }

    void mayBeAnotherPanel() {
        VirtualHidApi screen;
        const QByteArray key = screen.PanelKey(screen.DataPath());
        QVERIFY(!key.isEmpty());
        QCOMPARE(screen.PanelKey(screen.ControlPath()), key);
        QCOMPARE(screen.PanelKey("virtual/other"), QByteArray());
        screen.Unplug();
        screen.SetPanelKey("second");
        screen.Plug();
        QCOMPARE(screen.PanelKey(screen.DataPath()), QByteArray("second"));
    }

    void mayComeBackWithItsPathsSwapped() {
        VirtualHidApi screen;
        const QByteArray control = screen.ControlPath();
        const QByteArray data = screen.DataPath();
        screen.Unplug();
        screen.Plug(VirtualHidApi::NodeNumbers::Swapped);
        QCOMPARE(screen.ControlPath(), data);
        QCOMPARE(screen.DataPath(), control);
        const std::vector<HidDeviceInfo> devices = screen.Enumerate(0, 0);
        QCOMPARE(devices[0].path, data);
        QCOMPARE(devices[0].usagePage, quint16{0x000C});
        const Open misled(screen, data);
        QTest::ignoreMessage(QtWarningMsg, "Report refused, interface: a report for the control interface");
        QCOMPARE(misled.Write(TimeSync()), -1);
        const Open right(screen, control);
        QCOMPARE(right.Write(TimeSync()), 4097);
    }

    void aKeyboardMayTakeItsPath() {
        VirtualHidApi screen;
        const QByteArray path = screen.DataPath();
        const QByteArray stamp = screen.NodeStamp(path);
        const Open data(screen, path);
        screen.PutKeyboardAt(path);
        QCOMPARE(data.Write(TimeSync()), -1);
        QVERIFY(screen.NodeStamp(path) != stamp);
        QCOMPARE(screen.PanelKey(path), QByteArray());
        QCOMPARE(screen.Enumerate(0x04D9, 0xFD01).size(), std::size_t{1});
        QCOMPARE(screen.Enumerate(0, 0).size(), std::size_t{2});
        {
            const Open keyboard(screen, path);
            QCOMPARE(screen.Identify(keyboard.Handle()).front().vendorId, quint16{0x046D});
            QTest::ignoreMessage(QtWarningMsg, "Report refused, interface: a report for another device");
            QCOMPARE(keyboard.Write(TimeSync()), -1);
            QCOMPARE(screen.State().counts.Errors(PanelError::Interface), quint64{1});
        }
        screen.PutKeyboardAt(QByteArray());
        QCOMPARE(screen.NodeStamp(path), stamp);
        QCOMPARE(screen.Enumerate(0, 0).size(), std::size_t{2});
    }

    void failsAsTold() {
        VirtualHidApi screen;
        screen.FailInit();
        QCOMPARE(screen.Init(), -1);
        screen.FailOpens();
        QCOMPARE(screen.OpenPath(screen.DataPath()), nullptr);
        QVERIFY(!screen.IsDenied(screen.DataPath()));
        screen.ClearFaults();
        screen.DenyOpens();
        QCOMPARE(screen.OpenPath(screen.DataPath()), nullptr);
        QVERIFY(screen.IsDenied(screen.DataPath()));
        QVERIFY(!screen.IsDenied("virtual/other"));
        screen.ClearFaults();
        QVERIFY(!screen.IsDenied(screen.DataPath()));
        QCOMPARE(screen.Init(), 0);
        const Open data(screen, screen.DataPath());
        screen.FailWritesFrom(2);
        QCOMPARE(data.Write(TimeSync()), 4097);
        QCOMPARE(data.Write(TimeSync()), -1);
        QCOMPARE(data.Write(TimeSync()), -1);
        screen.ClearFaults();
        QCOMPARE(data.Write(TimeSync()), 4097);
        QCOMPARE(screen.State().counts.reports, quint64{2});
    }

    void vanishesAsTold() {
        VirtualHidApi screen;
        const Open data(screen, screen.DataPath());
        screen.VanishAtReport(2);
        QCOMPARE(data.Write(TimeSync()), 4097);
        QCOMPARE(data.Write(TimeSync()), -1);
        QVERIFY(!screen.IsPlugged());
        // Once only.
        screen.Plug();
        const Open again(screen, screen.DataPath());
        QCOMPARE(again.Write(TimeSync()), 4097);
        QVERIFY(screen.IsPlugged());
    }

    void aFrameEndsWithItsHandle() {
        VirtualHidApi screen;
        {
            const Open upload(screen, screen.DataPath());
            upload.Write(FirstChunk());
            const Open other(screen, screen.DataPath());
            other.Write(TimeSync());
        }
        const Open data(screen, screen.DataPath());
        QCOMPARE(data.Write(RedPixel()), 4096);
        QCOMPARE(screen.State().counts.errors, quint64{0});
    }

    void anotherHandlesEndLeavesTheFrame() {
        VirtualHidApi screen;
        const Open upload(screen, screen.DataPath());
        upload.Write(FirstChunk());
        { const Open other(screen, screen.DataPath()); }
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("area in a frame")));
        upload.Write(RedPixel());
        QCOMPARE(screen.State().counts.Errors(PanelError::AreaInFrame), quint64{1});
    }

    void tellsItsListeners() {
        VirtualHidApi screen;
        std::vector<VirtualScreenEvent> events;
        const int id = screen.AddListener([&events](VirtualScreenEvent event) { events.push_back(event); });
        {
            const Open data(screen, screen.DataPath());
            data.Write(TimeSync());
            data.Write(RedPixel());
            screen.Unplug();
            screen.Unplug();
            data.Write(TimeSync());
            screen.Plug();
            screen.Plug();
        }
        const Open data(screen, screen.DataPath());
        screen.VanishAtReport(1);
        data.Write(TimeSync());
        const std::vector<VirtualScreenEvent> expected{
            VirtualScreenEvent::Report, VirtualScreenEvent::Picture, VirtualScreenEvent::Unplugged,
            VirtualScreenEvent::Plugged, VirtualScreenEvent::Unplugged};
        QVERIFY(events == expected);
        screen.RemoveListener(id);
        screen.Plug();
        QVERIFY(events == expected);
    }

    void aListenerMayAskThePanel() {
        VirtualHidApi screen;
        quint64 reports = 0;
        screen.AddListener([&](VirtualScreenEvent /*event*/) { reports = screen.State().counts.reports; });
        const Open data(screen, screen.DataPath());
        data.Write(TimeSync());
        QCOMPARE(reports, quint64{1});
    }

    void listenersComeAndGoWhileReportsArrive() {
        VirtualHidApi screen;
        std::atomic<bool> stop{false};
        std::thread writer([&] {
            const Open data(screen, screen.DataPath());
            while (!stop) {
                data.Write(RedPixel());
            }
        });
        for (int i = 0; i < 200; ++i) {
            // Gone from the stack after its removal: a call that came later would be a fault.
            std::atomic<int> calls{0};
            const int id = screen.AddListener([&calls](VirtualScreenEvent /*event*/) { ++calls; });
            screen.RemoveListener(id);
        }
        stop = true;
        writer.join();
        QCOMPARE(screen.State().counts.errors, quint64{0});
    }
};

KIVO_APPLESS_TEST(TestVirtualHidApi)
#include "tst_virtual_hid_api.moc"
