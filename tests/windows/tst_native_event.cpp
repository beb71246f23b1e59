// clang-format off
#include <windows.h>
#include <dbt.h>
// clang-format on

#include <QtTest>
#include <cstring>

#include "support/test_program.h"
#include "support/window_test_support.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr char kMessageType[] = "windows_generic_MSG";
const QString kData = QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&1)");

// What the system hands over with a change of a device interface.
QByteArray InterfaceHeader(const QString& name) {
    const int nameBytes = (name.size() + 1) * int(sizeof(wchar_t));
    QByteArray bytes(int(sizeof(DEV_BROADCAST_DEVICEINTERFACE_W)) + nameBytes, '\0');
    auto* header = reinterpret_cast<DEV_BROADCAST_DEVICEINTERFACE_W*>(bytes.data());
    header->dbcc_size = DWORD(bytes.size());
    header->dbcc_devicetype = DBT_DEVTYP_DEVICEINTERFACE;
    std::memcpy(header->dbcc_name, name.utf16(), size_t(nameBytes));
    return bytes;
}

QByteArray VolumeHeader() {
    DEV_BROADCAST_VOLUME volume = {};
    volume.dbcv_size = sizeof(volume);
    volume.dbcv_devicetype = DBT_DEVTYP_VOLUME;
    volume.dbcv_unitmask = 0x10;
    return QByteArray(reinterpret_cast<const char*>(&volume), int(sizeof(volume)));
}

class OpenWindow : public MainWindow {
public:
    using MainWindow::MainWindow;
    using MainWindow::nativeEvent;

    // As Qt hands a message over; true where it was taken away from Qt, or an answer given.
    bool IsTaken(UINT message, WPARAM wParam, const QByteArray& header) {
        MSG received = {};
        received.message = message;
        received.wParam = wParam;
        received.lParam = header.isEmpty() ? 0 : reinterpret_cast<LPARAM>(header.constData());
        long result = 4711;
        return nativeEvent(kMessageType, &received, &result) || result != 4711;
    }
};

MainWindow::Parts PartsFor(HidApi& hid) {
    MainWindow::Parts parts{hid,
                            nullptr,
                            kBin,
                            LiveSession::PanelKind::Real,
                            QLocale(QStringLiteral("en_US")),
                            [] { return true; }};
    parts.makeHotplug = &MakeSystemHotplug;
    return parts;
}

}  // namespace

// The window's own messages: what is read from them, and that none is ever taken away from Qt.
class TestNativeEvent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init() { SetUpProfile(); }

    void Read_data() {
        QTest::addColumn<int>("message");
        QTest::addColumn<int>("wParam");
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<int>("kind");
        QTest::addColumn<QString>("name");
        const QByteArray header = InterfaceHeader(kData);
        const int other = int(NativeEventKind::Other);
        QTest::newRow("arrival") << WM_DEVICECHANGE << DBT_DEVICEARRIVAL << header
                                 << int(NativeEventKind::Arrival) << kData;
        QTest::newRow("removal") << WM_DEVICECHANGE << DBT_DEVICEREMOVECOMPLETE << header
                                 << int(NativeEventKind::Removal) << kData;
        QTest::newRow("arrival of a volume") << WM_DEVICECHANGE << DBT_DEVICEARRIVAL << VolumeHeader()
                                             << int(NativeEventKind::Arrival) << QString();
        QTest::newRow("removal of a volume") << WM_DEVICECHANGE << DBT_DEVICEREMOVECOMPLETE << VolumeHeader()
                                             << int(NativeEventKind::Removal) << QString();
        QTest::newRow("arrival of nothing") << WM_DEVICECHANGE << DBT_DEVICEARRIVAL << QByteArray()
                                            << int(NativeEventKind::Arrival) << QString();
        QTest::newRow("something changed")
            << WM_DEVICECHANGE << DBT_DEVNODES_CHANGED << QByteArray() << other << QString();
        QTest::newRow("a removal that is only asked for")
            << WM_DEVICECHANGE << DBT_DEVICEQUERYREMOVE << header << other << QString();
        QTest::newRow("another message with the same numbers")
            << WM_USER << DBT_DEVICEARRIVAL << QByteArray(1, '\xff') << other << QString();
        QTest::newRow("awake again") << WM_POWERBROADCAST << PBT_APMRESUMEAUTOMATIC << QByteArray()
                                     << int(NativeEventKind::Resume) << QString();
        QTest::newRow("going to sleep")
            << WM_POWERBROADCAST << PBT_APMSUSPEND << QByteArray() << other << QString();
        QTest::newRow("plugged into the wall")
            << WM_POWERBROADCAST << PBT_APMPOWERSTATUSCHANGE << QByteArray() << other << QString();
    }

    void Read() {
        QFETCH(int, message);
        QFETCH(int, wParam);
        QFETCH(QByteArray, header);
        MSG received = {};
        received.message = UINT(message);
        received.wParam = WPARAM(wParam);
        received.lParam = header.isEmpty() ? 0 : reinterpret_cast<LPARAM>(header.constData());
        const NativeEvent event = ReadNativeEvent(kMessageType, &received);
        QTEST(int(event.kind), "kind");
        QTEST(event.interfaceName, "name");
        QCOMPARE(int(ReadNativeEvent("windows_dispatcher_MSG", &received).kind), int(NativeEventKind::Other));
    }

    void ArrivalAndRemovalAreNotTakenAway() {
        VirtualHidApi panel;
        OpenWindow window(PartsFor(panel));
        const ScreenSession& screen = window.Session().Screen();
        QVERIFY(!window.IsTaken(WM_DEVICECHANGE, DBT_DEVICEARRIVAL, InterfaceHeader(kData)));
        QTRY_COMPARE(TextOf(screen.Entry(0).dataPath), kData.toLatin1());
        QCOMPARE(screen.Entry(0).dataFound, 1U);
        panel.Unplug();
        QVERIFY(!window.IsTaken(WM_DEVICECHANGE, DBT_DEVICEREMOVECOMPLETE, InterfaceHeader(kData)));
        QTRY_COMPARE(screen.Entry(0).dataFound, 0U);
        QVERIFY(!window.IsTaken(WM_DEVICECHANGE, DBT_DEVICEARRIVAL, VolumeHeader()));
        QVERIFY(!window.IsTaken(WM_DEVICECHANGE, DBT_DEVNODES_CHANGED, QByteArray()));
        QCOMPARE(screen.Entry(0).dataFound, 0U);
        QVERIFY(!window.IsTaken(WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, QByteArray()));
        QVERIFY(window.Stop());
    }

    // The system takes the registrations of a true window, for devices and for the end of a sleep.
    void TheSystemRegistersAWindow() {
        QWidget window;
        const std::unique_ptr<Hotplug> hotplug = MakeSystemHotplug();
        QVERIFY(hotplug->Register([&window] { return quintptr(window.winId()); }, {}));
        QCOMPARE(int(hotplug->PathOfArrival()), int(ArrivalPath::Name));
    }
};

KIVO_TEST(TestNativeEvent)
#include "tst_native_event.moc"
