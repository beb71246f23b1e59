#include <QtTest>

#include "device/hid_api_hidapi.h"
#include "support/test_program.h"

using namespace kivo;

// hidapi itself, as far as a machine without the screen can show it.
class TestHidapiHidApi : public QObject {
    Q_OBJECT

private slots:
    void initialisesMoreThanOnce() {
        HidapiHidApi api;
        QCOMPARE(api.Init(), 0);
        QCOMPARE(api.Init(), 0);
        QCOMPARE(api.Exit(), 0);
        QCOMPARE(api.Init(), 0);
    }

    void listsDevicesWithPaths() {
        HidapiHidApi api;
        QCOMPARE(api.Init(), 0);
        for (const HidDeviceInfo& device : api.Enumerate(0, 0)) {
            QVERIFY(!device.path.isEmpty());
        }
        QCOMPARE(api.Exit(), 0);
    }

    void listsNoDeviceOfAnUnusedId() {
        HidapiHidApi api;
        QVERIFY(api.Enumerate(0xFFFE, 0xFFFE).empty());
    }

    void cannotOpen_data() {
        QTest::addColumn<QByteArray>("path");
        QTest::newRow("no path") << QByteArray();
        QTest::newRow("a node that does not exist") << QByteArray("/dev/hidraw-none");
        QTest::newRow("a folder") << QByteArray("/");
    }

    void cannotOpen() {
        QFETCH(QByteArray, path);
        HidapiHidApi api;
        QCOMPARE(api.Init(), 0);
        QCOMPARE(api.OpenPath(path), nullptr);
    }
};

KIVO_APPLESS_TEST(TestHidapiHidApi)
#include "tst_hid_api_hidapi.moc"
