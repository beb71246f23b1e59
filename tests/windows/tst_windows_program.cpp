// clang-format off
#include <windows.h>
// clang-format on

#include <QProcess>
#include <QThread>
#include <QtTest>
#include <algorithm>
#include <atomic>
#include <memory>
#include <vector>

#include "../config/forget_mark.h"
#include "support/built_paths.h"
#include "support/test_program.h"
#include "virtualscreen/panel_decoder.h"
#include "windows_desk.h"

using namespace kivo;
using namespace kivo::test;

// The whole program as a person has it: its own folder, real windows, real messages. Only the libraries of
// screen and counters beside it are the tests' own.
class TestWindowsProgram : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void cleanup();
    void FirstStartBringsAFrameAndSetsTheMark();
    void LaterStartLeavesThePanelItsPicture();
    void WrongMarkIsAFirstRun();
    void LoadOfTheCounter_data();
    void LoadOfTheCounter();
    void ScreenThatComesAndGoes();
    void AwakeAgainDrawsTheValuesAnew();
    void SecondCopyBringsTheFirstToTheFront();
    void EndClosesTheHelperWindow();
    void HelperWindowThatDoesNotAnswer();
    void EndOfTheSessionEndsIt();
    void EndOfTheSessionThatIsCalledOff();
    void EndOfTheSessionWhileTheExitIsAskedFor();
    void EndOfTheSessionWhileItStarts();
    void CopiesStartedAtOnceGiveOne();
    void PathsInEveryScript();

private:
    void Start(const QStringList& arguments = {}) { StartIn(m_folder->path(), arguments); }
    void StartIn(const QString& folder, const QStringList& arguments);
    // Another copy beside it; true once that has ended with status 0.
    bool SecondCopyEndsWell() const;
    // True once the program has ended by itself with status 0.
    bool EndsWell();
    // Tells it that the session ends, and waits for the end.
    bool EndsWellWithTheSession();
    HWND Window() const;
    bool IsPutAway() const { return !IsWindowVisible(Window()) || IsIconic(Window()); }
    void SetPlugged(bool isPlugged);
    // What the screen has taken so far.
    PanelState Panel() const;
    QByteArray Reports() const;
    std::vector<PanelReport> DecodedReports(PanelDecoder& decoder) const;
    void Mark(const QByteArray& bytes);
    bool IsMarked() const;

    std::unique_ptr<QTemporaryDir> m_folder;  // with the program in it
    std::unique_ptr<QTemporaryDir> m_screen;
    std::unique_ptr<QProcess> m_process;
    QProcessEnvironment m_environment;
};

namespace {

constexpr int kPatienceMs = 60000;
// Until it is told to end; with a limit it says at the end what it sent.
const QStringList kForLong = {QStringLiteral("--run-for"), QStringLiteral("600")};
constexpr char kMarkKey[] = "Software\\Kivo Tool\\Kivo Config";
constexpr char kMarkName[] = "isInitialized";
constexpr wchar_t kDataName[] =
    L"HID#VID_04D9&PID_FD01&MI_01#7&2b3c4d5e&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";
constexpr wchar_t kControlName[] =
    L"\\\\?\\HID#VID_04D9&PID_FD01&MI_00#7&1a2b3c4d&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";

void CopyTree(const QString& from, const QString& to) {
    QVERIFY(QDir().mkpath(to));
    const QFileInfoList entries = QDir(from).entryInfoList(QDir::Dirs | QDir::Files | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        const QString target = to + QLatin1Char('/') + entry.fileName();
        if (entry.isDir()) {
            CopyTree(entry.filePath(), target);
        } else {
            QVERIFY2(QFile::copy(entry.filePath(), target), qPrintable(target));
        }
    }
}

}  // namespace

void TestWindowsProgram::initTestCase() {
    m_folder = std::make_unique<QTemporaryDir>();
    const QDir source(ProgramFolder());
    for (const char* file :
         {"KivoScreen.exe", "Config.ini", "whole.png", "Default.ini", "DefaultProfile.bin"}) {
        const QString name = QLatin1String(file);
        QVERIFY2(QFile::copy(source.filePath(name), m_folder->filePath(name)), file);
    }
    CopyTree(source.filePath(QStringLiteral("lang")), m_folder->filePath(QStringLiteral("lang")));
    CopyTree(source.filePath(QStringLiteral("skin")), m_folder->filePath(QStringLiteral("skin")));
    for (const char* library : {"pdh.dll", "hidapi.dll"}) {
        const QString name = QLatin1String(library);
        QVERIFY2(QFile::copy(InTestFolder("libraries/") + name, m_folder->filePath(name)), library);
    }
}

void TestWindowsProgram::init() {
    m_screen = std::make_unique<QTemporaryDir>();
    SetPlugged(true);
    m_environment = QProcessEnvironment::systemEnvironment();
    m_environment.insert(QStringLiteral("KIVO_TEST_SCREEN"), m_screen->path());
    m_environment.insert(QStringLiteral("KIVO_TEST_UTILISATIONS"), QStringLiteral("37.99"));
    test::ForgetMark();
    const QString roaming =
        QFileInfo(QStandardPaths::writableLocation(QStandardPaths::AppDataLocation)).path();
    QVERIFY(QDir(roaming + QStringLiteral("/Kivo Tool")).removeRecursively());
}

void TestWindowsProgram::cleanup() {
    m_process.reset();  // kills what still runs
}

void TestWindowsProgram::StartIn(const QString& folder, const QStringList& arguments) {
    m_process = std::make_unique<QProcess>();
    m_process->setProcessEnvironment(m_environment);
    m_process->start(folder + QStringLiteral("/KivoScreen.exe"), arguments);
    QVERIFY(m_process->waitForStarted(kPatienceMs));
}

bool TestWindowsProgram::SecondCopyEndsWell() const {
    QProcess second;
    second.setProcessEnvironment(m_environment);
    second.start(m_folder->filePath(QStringLiteral("KivoScreen.exe")), QStringList());
    return second.waitForFinished(kPatienceMs) && second.exitStatus() == QProcess::NormalExit &&
           second.exitCode() == 0;
}

bool TestWindowsProgram::EndsWell() {
    return m_process->waitForFinished(kPatienceMs) && m_process->exitStatus() == QProcess::NormalExit &&
           m_process->exitCode() == 0;
}

bool TestWindowsProgram::EndsWellWithTheSession() {
    SendMessageW(Window(), WM_ENDSESSION, TRUE, 0);
    return EndsWell();
}

HWND TestWindowsProgram::Window() const {
    return FindWindowW(nullptr, L"Kivo Screen");
}

void TestWindowsProgram::SetPlugged(bool isPlugged) {
    QFile file(m_screen->filePath(QStringLiteral("plugged")));
    if (isPlugged) {
        QVERIFY(file.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(file.remove());
    }
}

QByteArray TestWindowsProgram::Reports() const {
    QFile file(m_screen->filePath(QStringLiteral("reports")));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

std::vector<PanelReport> TestWindowsProgram::DecodedReports(PanelDecoder& decoder) const {
    const QByteArray reports = Reports();
    std::vector<PanelReport> decoded;
    int at = 0;
    while (at + 4 <= reports.size()) {
        quint32 length = 0;
        for (int place = 0; place < 4; ++place) {
            length |= quint32(quint8(reports[at + place])) << (8 * place);
        }
        at += 4;
        if (at + int(length) > reports.size()) {
            break;  // it is just being written
        }
        decoded.push_back(decoder.Decode(reinterpret_cast<const quint8*>(reports.constData()) + at, length));
        at += int(length);
    }
    return decoded;
}

PanelState TestWindowsProgram::Panel() const {
    PanelDecoder decoder;
    DecodedReports(decoder);
    return decoder.State();
}

void TestWindowsProgram::Mark(const QByteArray& bytes) {
    HKEY key = nullptr;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, kMarkKey, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
             LSTATUS(ERROR_SUCCESS));
    RegSetValueExA(key, kMarkName, 0, REG_SZ, reinterpret_cast<const BYTE*>(bytes.constData()),
                   static_cast<DWORD>(bytes.size()));
    RegCloseKey(key);
}

bool TestWindowsProgram::IsMarked() const {
    char bytes[16] = {};
    DWORD size = sizeof(bytes);
    return RegGetValueA(HKEY_CURRENT_USER, kMarkKey, kMarkName, RRF_RT_REG_SZ, nullptr, bytes, &size) ==
               ERROR_SUCCESS &&
           QByteArray(bytes, static_cast<int>(size)) == QByteArray("true\0", 5);
}

void TestWindowsProgram::FirstStartBringsAFrameAndSetsTheMark() {
    Start(kForLong);
    QTRY_COMPARE_WITH_TIMEOUT(Panel().counts.frames, quint64(1), kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 12, kPatienceMs);  // past the first rounds
    QVERIFY(EndsWellWithTheSession());
    QVERIFY(IsMarked());
    QCOMPARE(Panel().counts.errors, quint64(0));
    QVERIFY2(m_process->readAllStandardOutput().contains("37%"), "the load of the counter");
}

void TestWindowsProgram::LaterStartLeavesThePanelItsPicture() {
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 5, kPatienceMs);
    QVERIFY(EndsWellWithTheSession());
    QCOMPARE(Panel().counts.frames, quint64(1));
    QVERIFY(QFile::remove(m_screen->filePath(QStringLiteral("reports"))));
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 5, kPatienceMs);
    QVERIFY(EndsWellWithTheSession());
    QCOMPARE(Panel().counts.frames, quint64(0));
}

void TestWindowsProgram::WrongMarkIsAFirstRun() {
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 5, kPatienceMs);
    QVERIFY(EndsWellWithTheSession());
    QVERIFY(QFile::remove(m_screen->filePath(QStringLiteral("reports"))));
    Mark(QByteArray("TRUE\0", 5));
    Start();
    QTRY_COMPARE_WITH_TIMEOUT(Panel().counts.frames, quint64(1), kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 5, kPatienceMs);
    QVERIFY(EndsWellWithTheSession());
    QVERIFY(IsMarked());
}

void TestWindowsProgram::LoadOfTheCounter_data() {
    QTest::addColumn<QString>("utilisations");
    QTest::addColumn<QByteArray>("shown");
    QTest::newRow("cut") << QStringLiteral("37.99") << QByteArray(" 37%");
    QTest::newRow("over a hundred") << QStringLiteral("112.4") << QByteArray(" 100%");
    QTest::newRow("none") << QStringLiteral("0") << QByteArray(" 1%");
}

void TestWindowsProgram::LoadOfTheCounter() {
    QFETCH(QString, utilisations);
    QFETCH(QByteArray, shown);
    m_environment.insert(QStringLiteral("KIVO_TEST_UTILISATIONS"), utilisations);
    Mark(QByteArray("true\0", 5));
    Start(kForLong);
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 12, kPatienceMs);  // past the first rounds
    QVERIFY(EndsWellWithTheSession());
    const QByteArray said = m_process->readAllStandardOutput();
    QVERIFY2(said.contains(shown), said.constData());
}

void TestWindowsProgram::ScreenThatComesAndGoes() {
    SetPlugged(false);
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Window() != nullptr, kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(IsMarked(), kPatienceMs);
    // The window is there for the first upload, which finds no screen.
    QTRY_VERIFY_WITH_TIMEOUT(IsWindowVisible(Window()), kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(IsPutAway(), kPatienceMs);
    QCOMPARE(Reports().size(), 0);

    // The control interface comes first and opens nothing yet. The data interface brings the frame that is
    // pending.
    SetPlugged(true);
    SendDeviceChange(Window(), DBT_DEVICEARRIVAL, kControlName);
    QTest::qWait(500);
    QCOMPARE(Panel().counts.frames, quint64(0));
    SendDeviceChange(Window(), DBT_DEVICEARRIVAL, kDataName);
    QTRY_COMPARE_WITH_TIMEOUT(Panel().counts.frames, quint64(1), kPatienceMs);
    const quint64 areas = Panel().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > areas + 5, kPatienceMs);

    SetPlugged(false);
    SendDeviceChange(Window(), DBT_DEVICEREMOVECOMPLETE, kDataName);
    SendDeviceChange(Window(), DBT_DEVICEREMOVECOMPLETE, kControlName);
    // Once the report that was being written is.
    const QString reports = m_screen->filePath(QStringLiteral("reports"));
    QTRY_VERIFY_WITH_TIMEOUT(QFile::remove(reports) || !QFile::exists(reports), kPatienceMs);

    // Back again, under a whole path and in other letters: every value is drawn anew.
    SetPlugged(true);
    SendDeviceChange(Window(), DBT_DEVICEARRIVAL, kControlName);
    const QString path = QStringLiteral(R"(\\?\)") + QString::fromWCharArray(kDataName).toLower();
    SendDeviceChange(Window(), DBT_DEVICEARRIVAL, path.toStdWString().c_str());
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas >= 7, kPatienceMs);
    QCOMPARE(Panel().counts.errors, quint64(0));
}

void TestWindowsProgram::AwakeAgainDrawsTheValuesAnew() {
    Mark(QByteArray("true\0", 5));
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 12, kPatienceMs);  // past the first rounds
    const auto areasFrom = [this](std::size_t first) {
        PanelDecoder decoder;
        const std::vector<PanelReport> reports = DecodedReports(decoder);
        QVector<QRect> areas;
        for (std::size_t k = first; k < reports.size(); ++k) {
            if (reports[k].kind == PanelReportKind::Area && !areas.contains(reports[k].area)) {
                areas.append(reports[k].area);
            }
        }
        return areas;
    };
    const auto count = [this] {
        PanelDecoder decoder;
        return DecodedReports(decoder).size();
    };
    // Time and date go out in every round; load, power and fan stand still.
    const std::size_t before = count();
    QTRY_VERIFY_WITH_TIMEOUT(count() > before + 20, kPatienceMs);
    const QVector<QRect> always = areasFrom(before);
    const std::size_t asleep = count();
    const auto others = [&] {
        int number = 0;
        const QVector<QRect> areas = areasFrom(asleep);
        for (const QRect& area : areas) {
            number += always.contains(area) ? 0 : 1;
        }
        return number;
    };
    SendMessageW(Window(), WM_POWERBROADCAST, PBT_APMSUSPEND, 0);
    QTRY_VERIFY_WITH_TIMEOUT(count() > asleep + 10, kPatienceMs);
    QVERIFY(others() < 3);  // the memory's load may change
    SendMessageW(Window(), WM_POWERBROADCAST, PBT_APMRESUMEAUTOMATIC, 0);
    QTRY_VERIFY_WITH_TIMEOUT(others() >= 3, kPatienceMs);
}

void TestWindowsProgram::SecondCopyBringsTheFirstToTheFront() {
    Mark(QByteArray("true\0", 5));
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Reports().size() > 0, kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 0, kPatienceMs);  // past a first frame, if one was due
    QTRY_VERIFY_WITH_TIMEOUT(Window() != nullptr && IsPutAway(), kPatienceMs);

    // A further start does it again: the request was taken.
    for (int start = 0; start < 2; ++start) {
        QVERIFY(SecondCopyEndsWell());
        QTRY_VERIFY_WITH_TIMEOUT(!IsPutAway(), kPatienceMs);
        QTRY_VERIFY_WITH_TIMEOUT(GetForegroundWindow() == Window(), kPatienceMs);
        QCOMPARE(int(m_process->state()), int(QProcess::Running));
        SendMessageW(Window(), WM_CLOSE, 0, 0);
        QTRY_VERIFY_WITH_TIMEOUT(IsPutAway(), kPatienceMs);
        QTest::qWait(1500);  // nothing asks for it any more
        QVERIFY(IsPutAway());
    }
}

void TestWindowsProgram::EndClosesTheHelperWindow() {
    const HelperWindow helper;
    QVERIFY(helper.window != nullptr);
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Reports().size() > 0, kPatienceMs);
    // A second copy never had a window of its own, and closes nobody's.
    std::atomic<bool> endedWell{false};
    const std::unique_ptr<QThread> starter(QThread::create([&] { endedWell = SecondCopyEndsWell(); }));
    starter->start();
    QTRY_VERIFY_WITH_TIMEOUT(starter->isFinished(), kPatienceMs);
    QVERIFY(endedWell);
    QCOMPARE(int(m_process->state()), int(QProcess::Running));
    QCOMPARE(helperCloseMessages, 0);
    SendMessageW(Window(), WM_ENDSESSION, TRUE, 0);
    QTRY_COMPARE_WITH_TIMEOUT(int(m_process->state()), int(QProcess::NotRunning), kPatienceMs);
    QCOMPARE(helperCloseMessages, 1);
}

void TestWindowsProgram::HelperWindowThatDoesNotAnswer() {
    const HelperWindow helper;
    QVERIFY(helper.window != nullptr);
    Start({QStringLiteral("--run-for"), QStringLiteral("3")});
    // Nobody looks at this window's messages meanwhile.
    QVERIFY(EndsWell());
    QCOMPARE(helperCloseMessages, 0);
}

void TestWindowsProgram::EndOfTheSessionEndsIt() {
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Window() != nullptr && IsMarked(), kPatienceMs);
    // An ordinary close only hides it.
    SendMessageW(Window(), WM_CLOSE, 0, 0);
    QTest::qWait(1000);
    QCOMPARE(int(m_process->state()), int(QProcess::Running));
    QVERIFY(SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0) != 0);
    QVERIFY(EndsWellWithTheSession());
}

void TestWindowsProgram::EndOfTheSessionThatIsCalledOff() {
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Window() != nullptr && IsMarked(), kPatienceMs);
    QVERIFY(SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0) != 0);
    SendMessageW(Window(), WM_ENDSESSION, FALSE, 0);
    const quint64 areas = Panel().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > areas + 5, kPatienceMs);
    QCOMPARE(int(m_process->state()), int(QProcess::Running));
    // It is as before: a close only hides it, and an end that comes does end it.
    SendMessageW(Window(), WM_CLOSE, 0, 0);
    QTest::qWait(1000);
    QCOMPARE(int(m_process->state()), int(QProcess::Running));
    QVERIFY(SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0) != 0);
    QVERIFY(EndsWellWithTheSession());
}

void TestWindowsProgram::EndOfTheSessionWhileTheExitIsAskedFor() {
    Mark(QByteArray("true\0", 5));
    Start();
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 12, kPatienceMs);
    QVERIFY(SecondCopyEndsWell());
    QTRY_VERIFY_WITH_TIMEOUT(IsWindowVisible(Window()) && GetForegroundWindow() == Window(), kPatienceMs);
    // The exit button, by hand; the box that asks disables the window.
    RECT place = {};
    QVERIFY(GetWindowRect(Window(), &place) != 0);
    QTRY_VERIFY_WITH_TIMEOUT((ClickAt(place.left + 918, place.top + 19), !IsWindowEnabled(Window())),
                             kPatienceMs);
    QVERIFY(SendMessageW(Window(), WM_QUERYENDSESSION, 0, 0) != 0);
    QVERIFY(EndsWellWithTheSession());
}

// Told once, as soon as there is a window: before the event loop runs, or just after.
void TestWindowsProgram::EndOfTheSessionWhileItStarts() {
    Mark(QByteArray("true\0", 5));
    for (int time = 0; time < 3; ++time) {
        Start();
        QElapsedTimer timer;
        timer.start();
        while (Window() == nullptr && timer.elapsed() < kPatienceMs) {
            Sleep(0);
        }
        SendMessageW(Window(), WM_ENDSESSION, TRUE, 0);
        QVERIFY(EndsWell());
    }
}

void TestWindowsProgram::CopiesStartedAtOnceGiveOne() {
    Mark(QByteArray("true\0", 5));
    std::vector<std::unique_ptr<QProcess>> copies;
    for (int copy = 0; copy < 4; ++copy) {
        copies.push_back(std::make_unique<QProcess>());
        copies.back()->setProcessEnvironment(m_environment);
        copies.back()->start(m_folder->filePath(QStringLiteral("KivoScreen.exe")), kForLong);
    }
    const auto running = [&copies] {
        return int(std::count_if(copies.begin(), copies.end(),
                                 [](const auto& copy) { return copy->state() != QProcess::NotRunning; }));
    };
    QTRY_COMPARE_WITH_TIMEOUT(running(), 1, kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 0, kPatienceMs);
    SendMessageW(Window(), WM_ENDSESSION, TRUE, 0);
    QTRY_COMPARE_WITH_TIMEOUT(running(), 0, kPatienceMs);
    int sessions = 0;
    for (const auto& copy : copies) {
        QCOMPARE(copy->exitStatus(), QProcess::NormalExit);
        QCOMPARE(copy->exitCode(), 0);
        sessions += copy->readAllStandardOutput().contains("Live values sent last") ? 1 : 0;
    }
    QCOMPARE(sessions, 1);
}

void TestWindowsProgram::PathsInEveryScript() {
    const QTemporaryDir place;
    const QString home = place.filePath(QString::fromUtf8("用户 Ж"));
    const QString program = home + QString::fromUtf8("/程序 Ы");
    const QString roaming = home + QStringLiteral("/Roaming");
    QVERIFY(QDir().mkpath(roaming));
    CopyTree(m_folder->path(), program);
    m_environment.insert(QStringLiteral("APPDATA"), QDir::toNativeSeparators(roaming));
    m_environment.insert(QStringLiteral("USERPROFILE"), QDir::toNativeSeparators(home));
    const MovedFolder movedRoaming(L"AppData", roaming);
    StartIn(program, {});
    QTRY_COMPARE_WITH_TIMEOUT(Panel().counts.frames, quint64(1), kPatienceMs);
    QTRY_VERIFY_WITH_TIMEOUT(Panel().counts.areas > 5, kPatienceMs);
    QVERIFY(EndsWellWithTheSession());
    QVERIFY(IsMarked());
    QVERIFY(QFile::exists(roaming + QStringLiteral("/Kivo Tool/Config.ini")));
    QVERIFY(QFile::exists(roaming + QStringLiteral("/Kivo Tool/whole.png")));
    // Where the profile itself lies can only be told by the account.
    QVERIFY(QFile::exists(QDir::homePath() + QStringLiteral("/Kivo Tool/whole.png")) ||
            QFile::exists(home + QStringLiteral("/Kivo Tool/whole.png")));
    QCOMPARE(Panel().counts.errors, quint64(0));
}

KIVO_GUILESS_TEST(TestWindowsProgram)
#include "tst_windows_program.moc"
