// clang-format off
#include <windows.h>
#include <dbt.h>
// clang-format on

#include <QAbstractEventDispatcher>
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

// As Qt hands a message over before any window gets it; true where it was taken away, or an answer given.
bool IsTaken(const QWidget& window, UINT message, WPARAM wParam, const QByteArray& header,
             const QByteArray& type = kMessageType) {
    MSG received = {};
    received.hwnd = reinterpret_cast<HWND>(window.winId());
    received.message = message;
    received.wParam = wParam;
    received.lParam = header.isEmpty() ? 0 : reinterpret_cast<LPARAM>(header.constData());
    long result = 4711;
    return QAbstractEventDispatcher::instance()->filterNativeEvent(type, &received, &result) ||
           result != 4711;
}

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

// The messages to the window: what is read from them, and that none is ever taken away from Qt.
class TestNativeEvent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { PrepareApplication(); }
    void init() { SetUpProfile(); }

    void Read_data() {
        QTest::addColumn<int>("message");
        QTest::addColumn<int>("wParam");
        QTest::addColumn<QByteArray>("header");
        QTest::addColumn<QStringList>("told");
        const QByteArray header = InterfaceHeader(kData);
        const QStringList nothing;
        QTest::newRow("arrival") << WM_DEVICECHANGE << DBT_DEVICEARRIVAL << header
                                 << QStringList{QStringLiteral("arrived ") + kData};
        QTest::newRow("removal") << WM_DEVICECHANGE << DBT_DEVICEREMOVECOMPLETE << header
                                 << QStringList{QStringLiteral("went ") + kData};
        QTest::newRow("arrival of a volume") << WM_DEVICECHANGE << DBT_DEVICEARRIVAL << VolumeHeader()
                                             << QStringList{QStringLiteral("arrived ")};
        QTest::newRow("removal of a volume") << WM_DEVICECHANGE << DBT_DEVICEREMOVECOMPLETE << VolumeHeader()
                                             << QStringList{QStringLiteral("went ")};
        QTest::newRow("arrival of nothing") << WM_DEVICECHANGE << DBT_DEVICEARRIVAL << QByteArray()
                                            << QStringList{QStringLiteral("arrived ")};
        QTest::newRow("something changed")
            << WM_DEVICECHANGE << DBT_DEVNODES_CHANGED << QByteArray() << nothing;
        QTest::newRow("a removal that is only asked for")
            << WM_DEVICECHANGE << DBT_DEVICEQUERYREMOVE << header << nothing;
        QTest::newRow("another message with the same numbers")
            << WM_USER << DBT_DEVICEARRIVAL << QByteArray(1, '\xff') << nothing;
        QTest::newRow("awake again") << WM_POWERBROADCAST << PBT_APMRESUMEAUTOMATIC << QByteArray()
                                     << QStringList{QStringLiteral("awake")};
        QTest::newRow("going to sleep") << WM_POWERBROADCAST << PBT_APMSUSPEND << QByteArray() << nothing;
        QTest::newRow("plugged into the wall")
            << WM_POWERBROADCAST << PBT_APMPOWERSTATUSCHANGE << QByteArray() << nothing;
    }

    // Once, though each of the program's windows may get it, and whatever becomes of it elsewhere.
    void Read() {
        QFETCH(int, message);
        QFETCH(int, wParam);
        QFETCH(QByteArray, header);
        QFETCH(QStringList, told);
        const QWidget window;
        const QWidget another;
        QStringList heard;
        {
            const std::unique_ptr<Hotplug> hotplug = MakeSystemHotplug();
            QVERIFY(hotplug->Register(
                [&window] { return quintptr(window.winId()); },
                [&heard](const DeviceChange& change) {
                    heard.append((change.arrived ? QStringLiteral("arrived ") : QStringLiteral("went ")) +
                                 change.name);
                },
                [&heard] { heard.append(QStringLiteral("awake")); }));
            QVERIFY(!IsTaken(window, UINT(message), WPARAM(wParam), header));
            QCOMPARE(heard, told);
            QVERIFY(!IsTaken(another, UINT(message), WPARAM(wParam), header));
            QVERIFY(!IsTaken(window, UINT(message), WPARAM(wParam), header, "windows_dispatcher_MSG"));
            QCOMPARE(heard, told);
        }
        QVERIFY(!IsTaken(window, UINT(message), WPARAM(wParam), header));
        QCOMPARE(heard, told);  // nobody listens any more
    }

    // Sent by the system's own way, through the window's procedure.
    void ArrivalAndRemovalReachTheSession() {
        VirtualHidApi panel;
        MainWindow window(PartsFor(panel));
        const ScreenSession& screen = window.Session().Screen();
        const QByteArray header = InterfaceHeader(kData);
        const auto send = [&window, &header](WPARAM what) {
            SendMessageW(reinterpret_cast<HWND>(window.winId()), WM_DEVICECHANGE, what,
                         reinterpret_cast<LPARAM>(header.constData()));
        };
        send(DBT_DEVICEARRIVAL);
        QTRY_COMPARE(TextOf(screen.Entry(0).dataPath), kData.toLatin1());
        QCOMPARE(screen.Entry(0).dataFound, 1U);
        panel.Unplug();
        send(DBT_DEVICEREMOVECOMPLETE);
        QTRY_COMPARE(screen.Entry(0).dataFound, 0U);
        QVERIFY(!IsTaken(window, WM_DEVICECHANGE, DBT_DEVICEARRIVAL, VolumeHeader()));
        QVERIFY(!IsTaken(window, WM_DEVICECHANGE, DBT_DEVNODES_CHANGED, QByteArray()));
        QCOMPARE(screen.Entry(0).dataFound, 0U);
        QVERIFY(!IsTaken(window, WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, QByteArray()));
        QVERIFY(window.Stop());
    }

    // The system takes the registrations of a true window, for devices and for the end of a sleep.
    void TheSystemRegistersAWindow() {
        QWidget window;
        const std::unique_ptr<Hotplug> hotplug = MakeSystemHotplug();
        QVERIFY(hotplug->Register([&window] { return quintptr(window.winId()); }, {}, {}));
        QCOMPARE(int(hotplug->PathOfArrival()), int(ArrivalPath::Name));
    }
};

KIVO_TEST(TestNativeEvent)
#include "tst_native_event.moc"
