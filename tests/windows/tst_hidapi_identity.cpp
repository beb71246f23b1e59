#include <QTemporaryDir>
#include <QtTest>

#include "device/hid_api_hidapi.h"
#include "support/test_program.h"

using namespace kivo;

// What an open device says of itself, on a screen that the stand-in for hidapi.dll has plugged in.
class TestHidapiIdentity : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void OpenDeviceSaysWhatTheListSays();
    void PanelIsKnownByItsPort();
};

void TestHidapiIdentity::OpenDeviceSaysWhatTheListSays() {
    const QTemporaryDir folder;
    qputenv("KIVO_TEST_SCREEN", QFile::encodeName(folder.path()));
    QFile plugged(folder.filePath(QStringLiteral("plugged")));
    QVERIFY(plugged.open(QIODevice::WriteOnly));
    HidapiHidApi api;
    int opened = 0;
    for (const HidDeviceInfo& listed : api.Enumerate(0, 0)) {
        HidHandle* const handle = api.OpenPath(listed.path);
        if (handle == nullptr) {
            continue;
        }
        ++opened;
        const std::vector<HidDeviceInfo> said = api.Identify(handle);
        api.Close(handle);
        QCOMPARE(said.size(), std::size_t{1});
        QCOMPARE(said.front().path, listed.path);
        QCOMPARE(said.front().vendorId, listed.vendorId);
        QCOMPARE(said.front().productId, listed.productId);
        QCOMPARE(said.front().releaseNumber, listed.releaseNumber);
        QCOMPARE(said.front().usagePage, listed.usagePage);
        QCOMPARE(said.front().usage, listed.usage);
        QCOMPARE(said.front().interfaceNumber, listed.interfaceNumber);
        QCOMPARE(said.front().product, QString());
    }
    QCOMPARE(opened, 2);
}

void TestHidapiIdentity::PanelIsKnownByItsPort() {
    HidapiHidApi api;
    const QByteArray path = R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&2B3C4D5E&0&0000#{4d1e55b2})";
    QCOMPARE(api.PanelKey(path), QByteArray("7&2b3c4d5e&0&0000"));
    QCOMPARE(api.NodeStamp(path), QByteArray());
    QCOMPARE(api.PanelKey("no interface"), QByteArray());
}

KIVO_GUILESS_TEST(TestHidapiIdentity)
#include "tst_hidapi_identity.moc"
