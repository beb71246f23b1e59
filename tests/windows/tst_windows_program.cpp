#include <QtTest>
#include <algorithm>
#include <memory>
#include <vector>

#include "support/test_program.h"
#include "windows_desk.h"
#include "windows_program.h"

using namespace kivo;
using namespace kivo::test;

// From the first start on: values, screen, sleep, further copies, folders in every script.
class TestWindowsProgram : public WindowsProgram {
    Q_OBJECT

private Q_SLOTS:
    void FirstStartBringsAFrameAndSetsTheMark();
    void LaterStartLeavesThePanelItsPicture();
    void WrongMarkIsAFirstRun();
    void LoadOfTheCounter_data();
    void LoadOfTheCounter();
    void ScreenThatComesAndGoes();
    void AwakeAgainDrawsTheValuesAnew();
    void SecondCopyBringsTheFirstToTheFront();
    void CopiesStartedAtOnceGiveOne();
    void PathsInEveryScript();
};

namespace {

constexpr wchar_t kDataName[] =
    L"HID#VID_04D9&PID_FD01&MI_01#7&2b3c4d5e&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";
constexpr wchar_t kControlName[] =
    L"\\\\?\\HID#VID_04D9&PID_FD01&MI_00#7&1a2b3c4d&0&0000#{4d1e55b2-f16f-11cf-88cb-001111000030}";

}  // namespace

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
