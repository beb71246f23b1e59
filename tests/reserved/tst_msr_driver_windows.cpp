#include <windows.h>

#include <QtTest>

#include "reserved/msr_driver.h"
#include "support/test_program.h"

using namespace kivo;

// The driver's service, with a file that is no driver: it is registered and removed, and never starts. Needs
// an administrator's rights.
class TestMsrDriverWindows : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void AbsentFileTouchesNoService();
    void AFileGetsItsServiceOnce();
    void AnOpenDriverNeedsNoService();
    void AServiceThatIsThereKeepsItsFile();
    void TheServiceIsTheDrivers();
    void StoppingWhatIsNotThereFailsRemovingSucceeds();
    void StoppingWhatDoesNotRunFails();
    void WithoutAManagerNothingIsStopped();
    void TheSixtyFourBitFileIsAnother();
    void FilesAndFoldersAreThere();
    void AnOpenDeviceStaysOpen();
    void AHandleThatIsNoDriverGivesNoValue();

private:
    static QString Beside(QLatin1String name) {
        return QCoreApplication::applicationDirPath() + QLatin1Char('/') + name;
    }
    static void PutFile(QLatin1String name) {
        QFile file(Beside(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
        QCOMPARE(file.write("no driver"), qint64(9));
    }
    bool ServiceExists() const;
    // Of the service, as Windows has noted it; Windows may put its own "\??\" before the path.
    struct Registered {
        DWORD type = 0;
        DWORD start = 0;
        DWORD errorControl = 0;
        QString displayName;
        QString path;
    };
    Registered Service() const;

    SC_HANDLE m_scm = nullptr;
};

void TestMsrDriverWindows::init() {
    msrDriver = MsrDriverState();
    m_scm = OpenSCManagerW(nullptr, nullptr, SC_MANAGER_ALL_ACCESS);
    QVERIFY(m_scm != nullptr);
    QVERIFY(!ServiceExists());
}

void TestMsrDriverWindows::cleanup() {
    UninstallDriver();
    for (const QLatin1String name : {kDriverFile32, kDriverFile64}) {
        QFile::remove(Beside(name));
    }
    if (m_scm != nullptr) {
        CloseServiceHandle(m_scm);
    }
}

bool TestMsrDriverWindows::ServiceExists() const {
    const SC_HANDLE service =
        OpenServiceW(m_scm, QString(kDriverService).toStdWString().c_str(), SERVICE_QUERY_STATUS);
    if (service != nullptr) {
        CloseServiceHandle(service);
    }
    return service != nullptr;
}

void TestMsrDriverWindows::AbsentFileTouchesNoService() {
    QVERIFY(!InitDriver());
    QCOMPARE(msrDriver.driverPath, QDir::toNativeSeparators(Beside(kDriverFile32)));
    QVERIFY(!ServiceExists());
}

void TestMsrDriverWindows::AFileGetsItsServiceOnce() {
    PutFile(kDriverFile32);
    for (int time = 0; time < 2; ++time) {
        QVERIFY(!InitDriver());
        QVERIFY(ServiceExists());
        QVERIFY(msrDriver.driverHandle == kNoDriver);
    }
    UninstallDriver();
    QVERIFY(!ServiceExists());
    UninstallDriver();
    QVERIFY(!ServiceExists());
}

void TestMsrDriverWindows::AnOpenDriverNeedsNoService() {
    PutFile(kDriverFile32);
    int device = 0;
    msrDriver.driverHandle = &device;
    QVERIFY(InitDriver());
    QVERIFY(msrDriver.driverHandle == &device);
    QCOMPARE(msrDriver.driverPath, QDir::toNativeSeparators(Beside(kDriverFile32)));
    QVERIFY(!ServiceExists());
}

void TestMsrDriverWindows::AServiceThatIsThereKeepsItsFile() {
    const QString elsewhere = QStringLiteral("C:\\elsewhere\\WinRing0.sys");
    msrDriver.driverPath = elsewhere;
    InstallDriverService();
    QVERIFY(Service().path.endsWith(elsewhere));
    PutFile(kDriverFile32);
    QVERIFY(!InitDriver());
    QVERIFY(msrDriver.driverPath != elsewhere);
    QVERIFY(Service().path.endsWith(elsewhere));
}

TestMsrDriverWindows::Registered TestMsrDriverWindows::Service() const {
    const SC_HANDLE service =
        OpenServiceW(m_scm, QString(kDriverService).toStdWString().c_str(), SERVICE_QUERY_CONFIG);
    alignas(QUERY_SERVICE_CONFIGW) std::array<BYTE, 8192> room{};
    DWORD needed = 0;
    auto* const config = reinterpret_cast<QUERY_SERVICE_CONFIGW*>(room.data());
    const BOOL asked = QueryServiceConfigW(service, config, DWORD(room.size()), &needed);
    CloseServiceHandle(service);
    return asked == FALSE ? Registered{}
                          : Registered{config->dwServiceType, config->dwStartType, config->dwErrorControl,
                                       QString::fromWCharArray(config->lpDisplayName),
                                       QString::fromWCharArray(config->lpBinaryPathName)};
}

void TestMsrDriverWindows::TheServiceIsTheDrivers() {
    msrDriver.driverPath = QDir::toNativeSeparators(Beside(kDriverFile32));
    InstallDriverService();
    const Registered service = Service();
    QCOMPARE(service.type, DWORD(1));
    QCOMPARE(service.start, DWORD(3));
    QCOMPARE(service.errorControl, DWORD(1));
    QCOMPARE(service.displayName, QStringLiteral("MyWinRing0"));
    QVERIFY(service.path.endsWith(msrDriver.driverPath));
}

void TestMsrDriverWindows::StoppingWhatIsNotThereFailsRemovingSucceeds() {
    QVERIFY(!StopDriverService(m_scm, kDriverService));
    QVERIFY(RemoveDriverService(m_scm, kDriverService));
}

void TestMsrDriverWindows::StoppingWhatDoesNotRunFails() {
    msrDriver.driverPath = QDir::toNativeSeparators(Beside(kDriverFile32));
    InstallDriverService();
    QVERIFY(ServiceExists());
    QVERIFY(!StopDriverService(m_scm, kDriverService));
    QVERIFY(RemoveDriverService(m_scm, kDriverService));
    QVERIFY(!ServiceExists());
}

void TestMsrDriverWindows::WithoutAManagerNothingIsStopped() {
    QVERIFY(!StopDriverService(nullptr, kDriverService));
    QVERIFY(RemoveDriverService(nullptr, kDriverService));
}

void TestMsrDriverWindows::TheSixtyFourBitFileIsAnother() {
    PutFile(kDriverFile64);
    QVERIFY(!InitDriver());
    QVERIFY(!ServiceExists());
    msrDriver.isWow64 = true;
    QVERIFY(!InitDriver());
    QVERIFY(ServiceExists());
    QCOMPARE(msrDriver.driverPath, QDir::toNativeSeparators(Beside(kDriverFile64)));
}

void TestMsrDriverWindows::FilesAndFoldersAreThere() {
    PutFile(kDriverFile32);
    const QString path = QDir::toNativeSeparators(Beside(kDriverFile32));
    QVERIFY(FileExists(path));
    QVERIFY(FileExists(QDir::toNativeSeparators(QCoreApplication::applicationDirPath())));
    QVERIFY(QFile::remove(path));
    QVERIFY(!FileExists(path));
}

void TestMsrDriverWindows::AnOpenDeviceStaysOpen() {
    int device = 0;
    msrDriver.driverHandle = &device;
    QVERIFY(OpenDriver());
    QVERIFY(msrDriver.driverHandle == &device);
}

void TestMsrDriverWindows::AHandleThatIsNoDriverGivesNoValue() {
    PutFile(kDriverFile32);
    const HANDLE file = CreateFileW(Beside(kDriverFile32).toStdWString().c_str(), GENERIC_READ,
                                    FILE_SHARE_READ, nullptr, OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr);
    QVERIFY(file != INVALID_HANDLE_VALUE);
    msrDriver.driverHandle = file;
    quint32 low = 7;
    quint32 high = 8;
    const bool read = ReadMsr(0x19C, &low, &high);
    CloseHandle(file);
    QVERIFY(!read);
    QCOMPARE(low, 7U);
    QCOMPARE(high, 8U);
}

KIVO_GUILESS_TEST(TestMsrDriverWindows)
#include "tst_msr_driver_windows.moc"
