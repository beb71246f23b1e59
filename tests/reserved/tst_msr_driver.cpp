#include <QtTest>

#include "reserved/msr_driver.h"
#include "support/test_program.h"

using namespace kivo;

// Where no driver lies beside the program: the same on every platform.
class TestMsrDriver : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { msrDriver = MsrDriverState(); }
    void ItStartsClosedAndReady();
    void TheFileLiesBesideTheProgram_data();
    void TheFileLiesBesideTheProgram();
    void APathThatWindowsCannotHoldIsNone();
    void TheRequestIsTheNumber();
    void TheAnswerHasTwoHalves();
    void WithoutTheFileNothingIsOpened_data();
    void WithoutTheFileNothingIsOpened();
    void ReadingWithoutADriverAsksNobody();
    void ReadingBringsBothHalves();
    void ReadingRefusesWhatItCannotDo_data();
    void ReadingRefusesWhatItCannotDo();
    void FilesThatAreNotThere_data();
    void FilesThatAreNotThere();
    void ThisProgramNeedsNoTranslationLayer();
};

namespace {

// A driver that knows one answer, or refuses, and remembers what it was asked.
struct FakeDriver {
    bool refuses = false;
    void* handle = nullptr;
    MsrRequest request{};
    int calls = 0;

    MsrDriverCall Call() {
        return [this](void* driver, const MsrRequest& asked, MsrAnswer* answer) {
            handle = driver;
            request = asked;
            ++calls;
            *answer = {0x01, 0x02, 0x03, 0x84, 0x05, 0x06, 0x07, 0x88};
            return !refuses;
        };
    }
};

}  // namespace

void TestMsrDriver::ItStartsClosedAndReady() {
    QVERIFY(msrDriver.driverHandle == kNoDriver);
    QVERIFY(msrDriver.driverReady);
    QVERIFY(!msrDriver.isWow64);
    QVERIFY(msrDriver.driverPath.isEmpty());
}

void TestMsrDriver::TheFileLiesBesideTheProgram_data() {
    QTest::addColumn<QString>("program");
    QTest::addColumn<bool>("isWow64");
    QTest::addColumn<QString>("driver");
    QTest::newRow("a folder") << QStringLiteral("C:\\Kivo\\KivoScreen.exe") << false
                              << QStringLiteral("C:\\Kivo\\WinRing0.sys");
    QTest::newRow("the 64-bit file") << QStringLiteral("C:\\Kivo\\KivoScreen.exe") << true
                                     << QStringLiteral("C:\\Kivo\\WinRing0x64.sys");
    QTest::newRow("the root") << QStringLiteral("D:\\KivoScreen.exe") << false
                              << QStringLiteral("D:\\WinRing0.sys");
    QTest::newRow("dots and blanks") << QStringLiteral("C:\\A b\\c.d\\KivoScreen.exe") << true
                                     << QStringLiteral("C:\\A b\\c.d\\WinRing0x64.sys");
    QTest::newRow("slashes do not part it")
        << QStringLiteral("C:\\A/b\\c/k.exe") << false << QStringLiteral("C:\\A/b\\WinRing0.sys");
    QTest::newRow("no folder") << QStringLiteral("KivoScreen.exe") << false << QString();
    QTest::newRow("no path") << QString() << true << QString();
}

void TestMsrDriver::TheFileLiesBesideTheProgram() {
    QFETCH(QString, program);
    QFETCH(bool, isWow64);
    QTEST(DriverPath(program, isWow64), "driver");
}

void TestMsrDriver::APathThatWindowsCannotHoldIsNone() {
    const QString name = QStringLiteral("\\WinRing0.sys");
    const QString longest =
        QStringLiteral("C:\\") + QString(kLongestPath - 1 - 3 - name.size(), QLatin1Char('a'));
    QCOMPARE(DriverPath(longest + QStringLiteral("\\k.exe"), false), longest + name);
    QCOMPARE(DriverPath(longest + QStringLiteral("a\\k.exe"), false), QString());
    QCOMPARE(DriverPath(longest + QStringLiteral("\\k.exe"), true), QString());
}

void TestMsrDriver::TheRequestIsTheNumber() {
    QCOMPARE(kReadMsrControlCode, 0x9C402084U);
    QVERIFY(MakeMsrRequest(0x19C) == (MsrRequest{0x9C, 0x01, 0x00, 0x00}));
    QVERIFY(MakeMsrRequest(0xC0010063) == (MsrRequest{0x63, 0x00, 0x01, 0xC0}));
}

void TestMsrDriver::TheAnswerHasTwoHalves() {
    const MsrAnswer answer = {0x01, 0x02, 0x03, 0x84, 0x05, 0x06, 0x07, 0x88};
    QCOMPARE(LowHalf(answer), 0x84030201U);
    QCOMPARE(HighHalf(answer), 0x88070605U);
}

void TestMsrDriver::WithoutTheFileNothingIsOpened_data() {
    QTest::addColumn<bool>("isWow64");
    QTest::newRow("the 32-bit file") << false;
    QTest::newRow("the 64-bit file") << true;
}

void TestMsrDriver::WithoutTheFileNothingIsOpened() {
    QFETCH(bool, isWow64);
    msrDriver.isWow64 = isWow64;
    QVERIFY(!InitDriver());
    QVERIFY(!OpenDriver());
    QVERIFY(msrDriver.driverHandle == kNoDriver);
    // Nothing but these two is its business.
    QVERIFY(msrDriver.driverReady);
    QCOMPARE(msrDriver.isWow64, isWow64);
}

void TestMsrDriver::ReadingWithoutADriverAsksNobody() {
    FakeDriver driver;
    quint32 low = 7;
    quint32 high = 8;
    QVERIFY(!ReadMsr(0x19C, &low, &high));
    QVERIFY(!ReadMsr(0x19C, &low, &high, driver.Call()));
    QCOMPARE(driver.calls, 0);
    QCOMPARE(low, 7U);
    QCOMPARE(high, 8U);
}

void TestMsrDriver::ReadingBringsBothHalves() {
    FakeDriver driver;
    msrDriver.driverHandle = this;
    quint32 low = 7;
    quint32 high = 8;
    QVERIFY(ReadMsr(0x19C, &low, &high, driver.Call()));
    QVERIFY(driver.handle == this);
    QVERIFY(driver.request == MakeMsrRequest(0x19C));
    QCOMPARE(low, 0x84030201U);
    QCOMPARE(high, 0x88070605U);
}

void TestMsrDriver::ReadingRefusesWhatItCannotDo_data() {
    QTest::addColumn<bool>("ready");
    QTest::addColumn<bool>("hasLow");
    QTest::addColumn<bool>("hasHigh");
    QTest::addColumn<int>("calls");
    QTest::newRow("nowhere for the low half") << true << false << true << 0;
    QTest::newRow("nowhere for the high half") << true << true << false << 0;
    QTest::newRow("not ready") << false << true << true << 0;
    QTest::newRow("the driver refuses") << true << true << true << 1;
}

void TestMsrDriver::ReadingRefusesWhatItCannotDo() {
    QFETCH(bool, ready);
    QFETCH(bool, hasLow);
    QFETCH(bool, hasHigh);
    FakeDriver driver;
    driver.refuses = true;
    msrDriver.driverHandle = this;
    msrDriver.driverReady = ready;
    quint32 low = 7;
    quint32 high = 8;
    QVERIFY(!ReadMsr(0x19C, hasLow ? &low : nullptr, hasHigh ? &high : nullptr, driver.Call()));
    QTEST(driver.calls, "calls");
    QCOMPARE(low, 7U);
    QCOMPARE(high, 8U);
}

void TestMsrDriver::FilesThatAreNotThere_data() {
    QTest::addColumn<QString>("path");
    QTest::newRow("nothing") << QString();
    QTest::newRow("a folder that is not there") << QStringLiteral("C:\\nowhere at all\\WinRing0.sys");
    QTest::newRow("a path no system takes") << QStringLiteral("|<>:");
}

void TestMsrDriver::FilesThatAreNotThere() {
    QFETCH(QString, path);
    QVERIFY(!FileExists(path));
}

void TestMsrDriver::ThisProgramNeedsNoTranslationLayer() {
    QVERIFY(!IsWow64());
    QVERIFY(!msrDriver.isWow64);
}

KIVO_GUILESS_TEST(TestMsrDriver)
#include "tst_msr_driver.moc"
