#include <QtTest>

#include "device/interface_name.h"
#include "support/test_program.h"

using namespace kivo;

class TestInterfaceName : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void NamesAreRead_data();
    void NamesAreRead();
    void NoiseIsRead();
    void MadeNamesAreReadBack_data();
    void MadeNamesAreReadBack();
    void PathHasThePrefixOnce_data();
    void PathHasThePrefixOnce();
};

void TestInterfaceName::NamesAreRead_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("matched");
    QTest::addColumn<quint32>("vendorId");
    QTest::addColumn<quint32>("productId");
    const auto row = [](const char* tag, const char* name, bool matched, quint32 vendor, quint32 product) {
        QTest::newRow(tag) << QString::fromLatin1(name) << matched << vendor << product;
    };
    row("as Windows tells it",
        R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&2f3d7a2c&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030})", true,
        0x04D9, 0xFD01);
    row("without the prefix", "HID#VID_04D9&PID_FD01&MI_01#7&2f3d7a2c&0&0000", true, 0x04D9, 0xFD01);
    row("small letters", R"(\\?\hid#vid_04d9&pid_fd01&mi_01#7&2f3d7a2c)", true, 0x04D9, 0xFD01);
    row("mixed letters", R"(\\?\Hid#Vid_04d9&pId_Fd01&Mi_01#7)", true, 0x04D9, 0xFD01);
    row("a collection of the interface", R"(\\?\HID#VID_04D9&PID_FD01&MI_01&Col02#7)", true, 0x04D9, 0xFD01);
    row("the other interface", R"(\\?\HID#VID_04D9&PID_FD01&MI_00#7)", false, 0x04D9, 0xFD01);
    row("a device with one interface", R"(\\?\HID#VID_04D9&PID_FD01#7)", false, 0x04D9, 0xFD01);
    row("interface 1 of another device", R"(\\?\HID#VID_046D&PID_C31C&MI_01#8)", true, 0x046D, 0xC31C);
    row("another device", R"(\\?\HID#VID_046D&PID_C31C&MI_00#8)", false, 0x046D, 0xC31C);
    row("a revision between product and interface", R"(\\?\HID#VID_04D9&PID_FD01&REV_0107&MI_01#7)", false,
        0x04D9, 0xFD01);
    row("the USB device itself", R"(\\?\USB#VID_04D9&PID_FD01&MI_01#7)", false, 0, 0);
    row("no hexadecimal numbers", R"(\\?\HID#VID_04XY&PID_FD0_&MI_01#7)", true, 0, 0);
    row("one number too short", R"(\\?\HID#VID_4D9&PID_FD01&MI_01#7)", false, 0, 0);
    row("over Bluetooth", R"(\\?\HID#{00001124-0000-1000-8000-00805f9b34fb}_VID&000204d9_PID&fd01&Col01#8)",
        false, 0, 0);
    row("a volume", R"(\\?\STORAGE#Volume#{7f108a28-9833-4b3b-b780-2c6b5fa5c062}#0000)", false, 0, 0);
    row("empty", "", false, 0, 0);
}

void TestInterfaceName::NamesAreRead() {
    QFETCH(QString, name);
    const InterfaceName read = ParseInterfaceName(name);
    QTEST(read.matched, "matched");
    QTEST(read.vendorId, "vendorId");
    QTEST(read.productId, "productId");
}

void TestInterfaceName::NoiseIsRead() {
    QRandomGenerator generator(2611);
    for (int round = 0; round < 2000; ++round) {
        QString name;
        for (int k = 0; k < 60; ++k) {
            name.append(QChar(generator.bounded(0x10000)));
        }
        QVERIFY(!ParseInterfaceName(name).matched);
        QVERIFY(InterfacePath(name).startsWith(R"(\\?\)"));
    }
}

void TestInterfaceName::MadeNamesAreReadBack_data() {
    QTest::addColumn<int>("number");
    QTest::addColumn<QString>("made");
    QTest::addColumn<bool>("matched");
    QTest::newRow("interface 0") << 0 << QStringLiteral("HID#VID_04D9&PID_FD01&MI_00#/dev/hidraw3") << false;
    QTest::newRow("interface 1") << 1 << QStringLiteral("HID#VID_04D9&PID_FD01&MI_01#/dev/hidraw3") << true;
    QTest::newRow("interface 16") << 16 << QStringLiteral("HID#VID_04D9&PID_FD01&MI_10#/dev/hidraw3")
                                  << false;
    QTest::newRow("none") << -1 << QStringLiteral("HID#VID_04D9&PID_FD01#/dev/hidraw3") << false;
}

void TestInterfaceName::MadeNamesAreReadBack() {
    QFETCH(int, number);
    const QString name = MakeInterfaceName(0x04D9, 0xFD01, number, QStringLiteral("/dev/hidraw3"));
    QTEST(name, "made");
    const InterfaceName read = ParseInterfaceName(name);
    QTEST(read.matched, "matched");
    QCOMPARE(read.vendorId, 0x04D9U);
    QCOMPARE(read.productId, 0xFD01U);
}

void TestInterfaceName::PathHasThePrefixOnce_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("without") << QStringLiteral("HID#VID_04D9") << QByteArray(R"(\\?\HID#VID_04D9)");
    QTest::newRow("with") << QStringLiteral(R"(\\?\HID#VID_04D9)") << QByteArray(R"(\\?\HID#VID_04D9)");
    QTest::newRow("inside only") << QStringLiteral(R"(HID\\?\)") << QByteArray(R"(\\?\HID\\?\)");
    QTest::newRow("not Latin-1") << QStringLiteral("HID#ü€") << QByteArray("\\\\?\\HID#\xfc?");
}

void TestInterfaceName::PathHasThePrefixOnce() {
    QFETCH(QString, name);
    QTEST(InterfacePath(name), "path");
}

KIVO_GUILESS_TEST(TestInterfaceName)
#include "tst_interface_name.moc"
