#include <QtTest>

#include "device/interface_name.h"
#include "device/udev_event.h"
#include "support/test_program.h"

using namespace kivo;

// Events as a kernel and its udev make them, without either.
class TestUdevEvent : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ChangesAreTold_data();
    void ChangesAreTold();
    void OtherEventsAreLeftOut_data();
    void OtherEventsAreLeftOut();
};

namespace {

const QByteArray kUsb = "/devices/pci0000:00/0000:00:14.0/usb1/1-2";

}  // namespace

void TestUdevEvent::ChangesAreTold_data() {
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QByteArray>("path");
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("arrived");
    const auto row = [](const char* tag, const QByteArray& action, const QByteArray& path, const char* name) {
        QTest::newRow(tag) << action << path << QString::fromLatin1(name) << (action != "remove");
    };
    row("data interface arrives", "add", kUsb + "/1-2:1.1/0003:04D9:FD01.0005/hidraw/hidraw3",
        "HID#VID_04D9&PID_FD01&MI_01#/dev/hidraw3");
    row("control interface arrives", "add", kUsb + "/1-2:1.0/0003:04D9:FD01.0004/hidraw/hidraw3",
        "HID#VID_04D9&PID_FD01&MI_00#/dev/hidraw3");
    row("data interface goes", "remove", kUsb + "/1-2:1.1/0003:04D9:FD01.0005/hidraw/hidraw3",
        "HID#VID_04D9&PID_FD01&MI_01#/dev/hidraw3");
    row("control interface goes", "remove", kUsb + "/1-2:1.0/0003:04D9:FD01.0004/hidraw/hidraw3",
        "HID#VID_04D9&PID_FD01&MI_00#/dev/hidraw3");
    row("rights change", "change", kUsb + "/1-2:1.1/0003:04D9:FD01.0005/hidraw/hidraw3",
        "HID#VID_04D9&PID_FD01&MI_01#/dev/hidraw3");
    row("behind two hubs", "add", kUsb + "/1-2.4/1-2.4.1/1-2.4.1:1.1/0003:04D9:FD01.0ABC/hidraw/hidraw12",
        "HID#VID_04D9&PID_FD01&MI_01#/dev/hidraw3");
    row("an interface with two figures", "add", kUsb + "/1-2:1.11/0003:04D9:FD01.0005/hidraw/hidraw3",
        "HID#VID_04D9&PID_FD01&MI_0B#/dev/hidraw3");
    row("after 65536 devices", "add", kUsb + "/1-2:1.1/0003:04D9:FD01.10005/hidraw/hidraw3",
        "HID#VID_04D9&PID_FD01&MI_01#/dev/hidraw3");
    row("another device", "add", kUsb + "/1-2:1.1/0003:046D:C31C.0006/hidraw/hidraw3",
        "HID#VID_046D&PID_C31C&MI_01#/dev/hidraw3");
    row("made by a program", "add", "/devices/virtual/misc/uhid/0003:04D9:FD01.0007/hidraw/hidraw3",
        "HID#VID_04D9&PID_FD01#/dev/hidraw3");
}

void TestUdevEvent::ChangesAreTold() {
    QFETCH(QByteArray, action);
    QFETCH(QByteArray, path);
    const std::optional<DeviceChange> change = InterpretUdevEvent({action, path, "/dev/hidraw3"});
    QVERIFY(change.has_value());
    QTEST(change->name, "name");
    QTEST(change->arrived, "arrived");
}

void TestUdevEvent::OtherEventsAreLeftOut_data() {
    QTest::addColumn<QByteArray>("action");
    QTest::addColumn<QByteArray>("path");
    const QByteArray data = kUsb + "/1-2:1.1/0003:04D9:FD01.0005/hidraw/hidraw3";
    QTest::newRow("bound to a driver") << QByteArray("bind") << data;
    QTest::newRow("no action") << QByteArray() << data;
    QTest::newRow("an action in capitals") << QByteArray("ADD") << data;
    QTest::newRow("no path") << QByteArray("add") << QByteArray();
    QTest::newRow("over Bluetooth") << QByteArray("add")
                                    << QByteArray(
                                           "/devices/virtual/misc/uhid/0005:04D9:FD01.0005/hidraw/hidraw3");
    QTest::newRow("its keys") << QByteArray("add")
                              << kUsb + "/1-2:1.0/0003:04D9:FD01.0004/input/input7/event5";
    QTest::newRow("the HID device itself") << QByteArray("add") << kUsb + "/1-2:1.1/0003:04D9:FD01.0005";
    QTest::newRow("cut short") << QByteArray("remove") << data.chopped(8);
    QTest::newRow("noise") << QByteArray("remove") << QByteArray("\xff\xfe/0003::/hidraw\n");
}

void TestUdevEvent::OtherEventsAreLeftOut() {
    QFETCH(QByteArray, action);
    QFETCH(QByteArray, path);
    QVERIFY(!InterpretUdevEvent({action, path, "/dev/hidraw3"}).has_value());
}

KIVO_GUILESS_TEST(TestUdevEvent)
#include "tst_udev_event.moc"
