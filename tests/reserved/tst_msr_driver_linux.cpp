#include <QtTest>

#include "reserved/msr_driver_platform.h"
#include "support/test_program.h"

using namespace kivo;

// Where there is no such driver, everything says no and nothing is touched.
class TestMsrDriverLinux : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ThereIsNone();
};

void TestMsrDriverLinux::ThereIsNone() {
    msrDriver = MsrDriverState();
    QVERIFY(!IsWow64());
    QVERIFY(!OpenDriver());
    InstallDriverService();
    UninstallDriver();
    QVERIFY(!StopDriverService(nullptr, QStringLiteral("a driver")));
    QVERIFY(!RemoveDriverService(nullptr, QStringLiteral("a driver")));
    QVERIFY(OwnProgramPath().isEmpty());
    MsrAnswer answer{};
    QVERIFY(!AskDriver(nullptr, MsrRequest{}, &answer));
    QCOMPARE(answer, MsrAnswer{});
    QVERIFY(msrDriver.driverHandle == kNoDriver);
}

KIVO_TEST(TestMsrDriverLinux)
#include "tst_msr_driver_linux.moc"
