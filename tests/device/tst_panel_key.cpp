#include <QtTest>

#include "device/panel_key.h"
#include "support/test_program.h"

using namespace kivo;

class TestPanelKey : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void OfUevent_data();
    void OfUevent();
    void OfInterfacePath_data();
    void OfInterfacePath();
};

void TestPanelKey::OfUevent_data() {
    QTest::addColumn<QByteArray>("uevent");
    QTest::addColumn<QByteArray>("key");
    const QByteArray start = "DRIVER=hid-generic\nHID_ID=0003:000004D9:0000FD01\nHID_NAME=Kivo Screen\n";
    const QByteArray end = "MODALIAS=hid:b0003g0001v000004D9p0000FD01\n";
    const QByteArray port = "HID_PHYS=usb-0000:00:14.0-2/input1\n";
    QTest::newRow("serial number") << start + port + "HID_UNIQ=K0042\n" + end << QByteArray("K0042");
    QTest::newRow("serial number first") << "HID_UNIQ=K0042\n" + port << QByteArray("K0042");
    QTest::newRow("no serial number")
        << start + port + "HID_UNIQ=\n" + end << QByteArray("usb-0000:00:14.0-2");
    QTest::newRow("blank serial number") << port + "HID_UNIQ=  \n" << QByteArray("usb-0000:00:14.0-2");
    QTest::newRow("no such line") << start + port << QByteArray("usb-0000:00:14.0-2");
    QTest::newRow("behind a hub") << QByteArray("HID_PHYS=usb-0000:00:14.0-2.4.1/input1\n")
                                  << QByteArray("usb-0000:00:14.0-2.4.1");
    QTest::newRow("port without an interface") << QByteArray("HID_PHYS=bus\n") << QByteArray("bus");
    QTest::newRow("neither") << start + "HID_PHYS=\nHID_UNIQ=\n" << QByteArray();
    QTest::newRow("name within a name") << QByteArray("OLD_HID_UNIQ=1\nHID_UNIQUE=2\n") << QByteArray();
    QTest::newRow("last line cut short") << QByteArray("HID_UNIQ=K0042") << QByteArray("K0042");
    QTest::newRow("empty") << QByteArray() << QByteArray();
}

void TestPanelKey::OfUevent() {
    QFETCH(QByteArray, uevent);
    QTEST(PanelKeyOfUevent(uevent), "key");
}

void TestPanelKey::OfInterfacePath_data() {
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QByteArray>("key");
    const QByteArray key = "7&2a3b4c&0&0000";
    const QByteArray hid = "#{4d1e55b2-f16f-11cf-88cb-001111000030}";
    QTest::newRow("listed") << R"(\\?\hid#vid_04d9&pid_fd01&mi_01#7&2a3b4c&0&0000)" + hid << key;
    QTest::newRow("notified") << R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&2A3B4C&0&0000)" + hid << key;
    QTest::newRow("without the class")
        << QByteArray(R"(\\?\hid#vid_04d9&pid_fd01&mi_01#7&2A3B4C&0&0000)") << key;
    QTest::newRow("no instance") << QByteArray(R"(\\?\hid#vid_04d9&pid_fd01&mi_01)") << QByteArray();
    QTest::newRow("another kind of path") << QByteArray("/dev/hidraw5") << QByteArray();
    QTest::newRow("empty") << QByteArray() << QByteArray();
}

void TestPanelKey::OfInterfacePath() {
    QFETCH(QByteArray, path);
    QTEST(PanelKeyOfInterfacePath(path), "key");
}

KIVO_GUILESS_TEST(TestPanelKey)
#include "tst_panel_key.moc"
