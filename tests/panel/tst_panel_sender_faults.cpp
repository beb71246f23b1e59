#include <QtTest>
#include <thread>

#include "../config/log_catcher.h"
#include "panel_desk.h"
#include "support/forwarding_hid_api.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

constexpr quint64 kFrameReports = 27;

// The first report of a round is the clock's, so this is the frame's with that number.
constexpr quint64 OfFrame(quint64 chunk) {
    return 1 + chunk;
}

// Refuses one area report.
class AreaRefusingHidApi final : public ForwardingHidApi {
public:
    using ForwardingHidApi::ForwardingHidApi;
    // number: 1 for the next area report.
    void RefuseArea(int number) { m_areasLeft = number; }
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        constexpr quint8 kArea = 0xA2;
        if (data[2] == kArea && m_areasLeft-- == 1) {
            return -1;
        }
        return ForwardingHidApi::Write(handle, data, length);
    }

private:
    int m_areasLeft = 0;
};

}  // namespace

// What becomes of what a panel does not take: it stays owed, and nothing is drawn over a picture that is not
// there.
class TestPanelSenderFaults : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void FrameRefusedAtOnceLeavesTheFormerOne();
    void GoingBackToTheFormerFrameSendsItAgain();
    void FrameCutOffStopsTheTextsUntilItIsThere_data();
    void FrameCutOffStopsTheTextsUntilItIsThere();
    void FirstFrameOfARunThatFailsIsOwed();
    void UploadWithoutAPanelIsOwed();
    void FrameIsTriedAgainAfterEverLongerPauses();
    void ArrivalTriesAtOnce();
    void OrientationThatWasRefusedIsSentAgain();
    void TimeShowThatWasRefusedIsSentAgain();
    void TextThatWasRefusedIsSentInFull_data();
    void TextThatWasRefusedIsSentInFull();
    void ReportsTakenDuringAnArrivalTellNothing();

    void PanelThatTakesNothingIsToldOfOnceUntilItTakesSomething();
    void PanelThatIsPulledOutIsNotToldOf();
    void DeniedPanelIsNamed();
    void KeyboardInThePanelsPlaceGetsNothing();
    void WithoutAPanelNothingIsSent();
    void StoppedTransfersLeaveTheMemory();
    void UploadAndRoundsTakeTurns();
};

void TestPanelSenderFaults::initTestCase() {
    SetUpDrawing();
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestPanelSenderFaults::FrameRefusedAtOnceLeavesTheFormerOne() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    QVERIFY(desk.run->Round());
    const QImage before = desk.Picture();
    const QByteArray saved = desk.SavedBackground();

    desk.panel.FailWritesFrom(1);
    QVERIFY(!desk.run->Apply(Theme::Scene));
    desk.panel.ClearFaults();
    QCOMPARE(desk.run->AppliedTheme(), Theme::Default);
    QVERIFY(desk.run->sender.Status().isFrameOwed);
    // A later start may not count on it: the chunk may have arrived.
    QVERIFY(!desk.run->memory.Read());
    // The file belongs to the frame that is owed.
    QVERIFY(desk.SavedBackground() != saved);
    // Live values still stand on what the panel shows: drawn again in full, no pixel changes.
    desk.run->sender.NoteArrival();
    const quint64 areas = desk.Counts().areas;
    desk.run->SendTexts();
    QCOMPARE(desk.Counts().areas - areas, quint64(7));
    QCOMPARE(desk.Picture(), before);

    QVERIFY(desk.run->Round());
    QCOMPARE(desk.run->AppliedTheme(), Theme::Scene);
    QVERIFY(desk.DifferenceTo(desk.run->sender.Applied()).isNull());
    QVERIFY(!desk.run->sender.Status().isFrameOwed);
}

// The first chunk of the other frame may lie over the one that was there, though its write failed.
void TestPanelSenderFaults::GoingBackToTheFormerFrameSendsItAgain() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    QVERIFY(desk.run->Round());
    const quint64 frames = desk.Counts().frames;
    for (const Theme theme : {Theme::Scene, Theme::Default}) {
        desk.panel.FailWritesFrom(1);
        QVERIFY(!desk.run->Apply(theme));
        desk.panel.ClearFaults();
    }
    QVERIFY(desk.run->sender.Status().isFrameOwed);
    desk.run->now = desk.run->now.load() + seconds(1);
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames - frames, quint64(1));
    QVERIFY(!desk.run->sender.Status().isFrameOwed);
}

void TestPanelSenderFaults::FrameCutOffStopsTheTextsUntilItIsThere_data() {
    QTest::addColumn<quint64>("report");
    QTest::addColumn<bool>("vanishes");
    for (const quint64 report : {quint64(2), quint64(14), kFrameReports}) {
        QTest::addRow("refused at chunk %d", int(report)) << report << false;
        QTest::addRow("pulled out at chunk %d", int(report)) << report << true;
    }
}

void TestPanelSenderFaults::FrameCutOffStopsTheTextsUntilItIsThere() {
    QFETCH(quint64, report);
    QFETCH(bool, vanishes);
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    QVERIFY(desk.run->Round());
    const quint64 areas = desk.Counts().areas;
    if (vanishes) {
        desk.panel.VanishAtReport(report);
    } else {
        desk.panel.FailWritesFrom(report);
    }
    QVERIFY(!desk.run->Apply(Theme::Scene));
    desk.panel.ClearFaults();
    desk.panel.Plug();
    // Half of it may lie over the former picture: no text belongs on that.
    desk.run->SendTexts();
    QCOMPARE(desk.Counts().areas, areas);
    QVERIFY(desk.run->sender.ShownTexts()[Time].isEmpty());
    QVERIFY(!desk.run->memory.Read());
    QVERIFY(desk.run->sender.Status().isFrameOwed);
    QCOMPARE(desk.run->AppliedTheme(), Theme::Scene);

    desk.run->now = desk.run->now.load() + seconds(1);
    QVERIFY(desk.run->Round());
    QVERIFY(desk.DifferenceTo(desk.run->sender.Applied()).isNull());
    QCOMPARE(desk.run->sender.ShownTexts()[Time], desk.texts[Time]);
    QVERIFY(desk.run->memory.Read().has_value());
    QCOMPARE(desk.Counts().frames, quint64(2));
    QCOMPARE(desk.Counts().errors, quint64(0));
}

void TestPanelSenderFaults::FirstFrameOfARunThatFailsIsOwed() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    QVERIFY(desk.run->Round());
    const QImage before = desk.Picture();
    desk.StartRun();
    // Before anything was prepared; of two that fail the last one counts.
    desk.panel.FailWritesFrom(1);
    for (const Theme theme : {Theme::Scene, Theme::Tdp}) {
        QVERIFY(!desk.run->Apply(theme));
    }
    desk.panel.ClearFaults();
    desk.run->sender.Prepare();
    const quint64 areas = desk.Counts().areas;
    desk.run->SendTexts();
    QCOMPARE(desk.Counts().areas, areas);
    QCOMPARE(desk.Picture(), before);
    desk.run->now = desk.run->now.load() + seconds(1);
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.run->AppliedTheme(), Theme::Tdp);
    QVERIFY(desk.DifferenceTo(desk.run->sender.Applied()).isNull());
}

void TestPanelSenderFaults::UploadWithoutAPanelIsOwed() {
    Desk desk;
    desk.panel.Unplug();
    QVERIFY(!desk.run->Apply(Theme::Time));
    QVERIFY(!desk.run->Round());
    QCOMPARE(desk.run->Condition(), PanelCondition::NoScreen);
    QVERIFY(desk.run->sender.Status().isFrameOwed);
    // A program that ends here starts with the same thing owed.
    desk.StartRun(Memory::Kept, Theme::Time);
    desk.run->sender.Prepare();
    desk.panel.Plug();
    desk.run->session.EnumerateScreens();
    // The texts of the moment it is taken, not of the one it was composed in.
    desk.texts[Time] = QStringLiteral("18:59");
    QVERIFY(desk.run->Round());
    QCOMPARE(desk.Counts().frames, quint64(1));
    QVERIFY(desk.DifferenceTo(ThemeScreen(Theme::Time, Orientation::Landscape)).isNull());
}

void TestPanelSenderFaults::FrameIsTriedAgainAfterEverLongerPauses() {
    Desk desk;
    desk.run->sender.Prepare();
    const milliseconds start = desk.run->now;
    // Refused at its second chunk each time, so that each try leaves a report.
    const auto triesAt = [&desk](milliseconds now) {
        desk.run->now = now;
        desk.panel.FailWritesFrom(OfFrame(2));
        const PanelCounts before = desk.Counts();
        desk.run->sender.BeginRound();
        desk.panel.ClearFaults();
        const PanelCounts after = desk.Counts();
        const quint64 chunks = (after.reports - after.commands) - (before.reports - before.commands);
        return chunks == 1 && desk.run->sender.Status().isFrameOwed;
    };
    QVERIFY(triesAt(start));
    QCOMPARE(desk.run->Condition(), PanelCondition::TryingAgain);
    milliseconds now = start;
    for (const int wait : {1, 2, 5, 15, 60, 60}) {
        QVERIFY2(!triesAt(now + seconds(wait) - milliseconds(1)), QByteArray::number(wait));
        now += seconds(wait);
        QVERIFY2(triesAt(now), QByteArray::number(wait));
    }
    // Taken, it begins anew.
    desk.run->now = now + seconds(60);
    QVERIFY(desk.run->Round());
    QVERIFY(!desk.run->sender.Status().isFrameOwed);
    desk.panel.FailWritesFrom(2);
    QVERIFY(!desk.run->Apply(Theme::Tdp));
    QVERIFY(!triesAt(desk.run->now));
    QVERIFY(triesAt(desk.run->now.load() + seconds(1)));
}

void TestPanelSenderFaults::ArrivalTriesAtOnce() {
    Desk desk;
    desk.run->sender.Prepare();
    for (int k = 0; k < 4; ++k) {
        desk.panel.FailWritesFrom(OfFrame(1));
        desk.run->now = desk.run->now.load() + seconds(60);
        desk.run->sender.BeginRound();
        desk.panel.ClearFaults();
    }
    QVERIFY(desk.run->sender.BeginRound());
    QCOMPARE(desk.Counts().frames, quint64(0));
    desk.run->sender.NoteArrival();
    QVERIFY(desk.run->sender.BeginRound());
    QCOMPARE(desk.Counts().frames, quint64(1));
}

void TestPanelSenderFaults::OrientationThatWasRefusedIsSentAgain() {
    Desk desk;
    desk.panel.FailWritesFrom(kFrameReports + 1);
    QVERIFY(desk.run->Apply(Theme::Default, Orientation::Portrait));
    desk.panel.ClearFaults();
    QVERIFY(!desk.panel.State().orientation.has_value());
    desk.run->now = desk.run->now.load() + seconds(1);
    QVERIFY(desk.run->sender.BeginRound());
    QCOMPARE(desk.panel.State().orientation, std::optional<int>(2));
    QVERIFY(desk.panel.State().shownTime.has_value());
    QCOMPARE(desk.Counts().frames, quint64(1));
    QCOMPARE(desk.Counts().commands, quint64(3));
}

void TestPanelSenderFaults::TimeShowThatWasRefusedIsSentAgain() {
    Desk desk;
    desk.panel.FailWritesFrom(kFrameReports + 3);
    QVERIFY(desk.run->Apply(Theme::Default));
    desk.panel.ClearFaults();
    QVERIFY(!desk.panel.State().shownTime.has_value());
    QVERIFY(desk.run->sender.BeginRound());
    QVERIFY(desk.panel.State().shownTime.has_value());
    const quint64 commands = desk.Counts().commands;
    QVERIFY(desk.run->sender.BeginRound());
    QCOMPARE(desk.Counts().commands - commands, quint64(1));
}

void TestPanelSenderFaults::TextThatWasRefusedIsSentInFull_data() {
    QTest::addColumn<int>("report");
    QTest::newRow("its first report") << 1;
    QTest::newRow("its second report") << 2;
}

void TestPanelSenderFaults::TextThatWasRefusedIsSentInFull() {
    QFETCH(int, report);
    Desk desk;
    AreaRefusingHidApi wire(desk.panel);
    const auto runEndsFirst = qScopeGuard([&desk] { desk.run.reset(); });
    desk.run = std::make_unique<Run>(wire, desk.folder.path(), Memory::Kept, desk.texts);
    PanelSender& sender = desk.run->sender;
    QVERIFY(desk.run->Apply(Theme::Time));  // its time goes in two reports
    QVERIFY(desk.run->Round());
    desk.texts[Time] = QStringLiteral("20:58");
    wire.RefuseArea(report);
    QVERIFY(sender.RenderLiveItem(desk.texts[Time], Time));
    QVERIFY(sender.ShownTexts()[Time].isEmpty());
    QVERIFY(!desk.DifferenceTo(sender.Applied()).isNull());
    desk.run->SendTexts();
    QVERIFY(desk.DifferenceTo(sender.Applied()).isNull());
    QCOMPARE(sender.ShownTexts()[Time], desk.texts[Time]);
}

void TestPanelSenderFaults::ReportsTakenDuringAnArrivalTellNothing() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    QVERIFY(desk.run->Round());
    // The window hears of an arrival while the panel takes a text.
    const int listener =
        desk.panel.AddListener([&desk](VirtualScreenEvent) { desk.run->sender.NoteArrival(); });
    desk.texts[CpuUsage] = QStringLiteral("38%");
    QVERIFY(desk.run->sender.RenderLiveItem(desk.texts[CpuUsage], CpuUsage));
    desk.panel.RemoveListener(listener);
    QVERIFY(desk.run->sender.ShownTexts()[CpuUsage].isEmpty());
    QVERIFY(desk.run->sender.RenderLiveItem(desk.texts[CpuUsage], CpuUsage));
    QVERIFY(!desk.run->sender.RenderLiveItem(desk.texts[CpuUsage], CpuUsage));
}

void TestPanelSenderFaults::PanelThatTakesNothingIsToldOfOnceUntilItTakesSomething() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    const LogCatcher log;
    for (int time = 1; time <= 2; ++time) {
        desk.panel.FailWritesFrom(1);
        for (int round = 1; round <= 8; ++round) {
            QVERIFY(desk.run->Round());
            const bool isTold = round >= kRefusedRoundsBeforeTold;
            QCOMPARE(log.lines().size(), isTold ? time : time - 1);
            QCOMPARE(desk.run->Condition(), isTold ? PanelCondition::Refusing : PanelCondition::TryingAgain);
        }
        QVERIFY(log.lines().constLast().contains(QLatin1String("another program")));
        desk.panel.ClearFaults();
        // All it may have missed is sent again.
        const PanelCounts before = desk.Counts();
        QVERIFY(desk.run->Round());
        QCOMPARE(desk.Counts().areas - before.areas, quint64(7));
        QCOMPARE(desk.Counts().commands - before.commands, quint64(3));
        QVERIFY(desk.run->Condition() != PanelCondition::Refusing);
    }
}

void TestPanelSenderFaults::PanelThatIsPulledOutIsNotToldOf() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    const LogCatcher log;
    desk.panel.VanishAtReport(1);
    for (int round = 0; round < 5; ++round) {
        desk.run->Round();
    }
    QVERIFY(log.lines().isEmpty());
    QCOMPARE(desk.run->Condition(), PanelCondition::NoScreen);
}

void TestPanelSenderFaults::DeniedPanelIsNamed() {
    Desk desk;
    desk.panel.DenyOpens();
    desk.run->session.DoubtNode();
    QVERIFY(!desk.run->sender.SendTimeSync());
    QVERIFY(!desk.run->Round());
    QCOMPARE(desk.run->Condition(), PanelCondition::Denied);
    QCOMPARE(desk.run->sender.Status().node, desk.panel.DataPath());
    desk.panel.ClearFaults();
    QVERIFY(desk.run->Round());
    QVERIFY(desk.run->Condition() != PanelCondition::Denied);
    QVERIFY(desk.run->sender.Status().node.isEmpty());
}

void TestPanelSenderFaults::KeyboardInThePanelsPlaceGetsNothing() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    QVERIFY(desk.run->Round());
    const quint64 reports = desk.Counts().reports;
    const QByteArray path = desk.panel.DataPath();
    desk.panel.Unplug();
    desk.panel.PutKeyboardAt(path);
    QVERIFY(!desk.run->Round());
    QVERIFY(!desk.run->Apply(Theme::Time));
    desk.run->SendTexts();
    QCOMPARE(desk.Counts().reports, reports);
    QCOMPARE(desk.Counts().errors, quint64(0));
    QCOMPARE(desk.run->Condition(), PanelCondition::NoScreen);
}

void TestPanelSenderFaults::WithoutAPanelNothingIsSent() {
    Desk desk;
    desk.panel.Unplug();
    QVERIFY(!desk.run->sender.SendTimeSync());
    desk.run->sender.Prepare();
    QVERIFY(!desk.run->Round());
    desk.run->SendTexts();
    QCOMPARE(desk.Counts().reports, quint64(0));
    QCOMPARE(desk.run->Condition(), PanelCondition::NoScreen);
    // The frame keeps its file all the same.
    QVERIFY(QFile::remove(desk.BackgroundPath()));
    desk.run->now = desk.run->now.load() + std::chrono::seconds(2);
    QVERIFY(!desk.run->Round());
    QVERIFY(QFile::exists(desk.BackgroundPath()));
}

// The program ends: what was not sent is no reason to send the frame once more at the next start.
void TestPanelSenderFaults::StoppedTransfersLeaveTheMemory() {
    Desk desk;
    QVERIFY(desk.run->Apply(Theme::Default));
    const QByteArray remembered = desk.run->memory.Read()->frameId;
    desk.run->transfers.StopTransfers();
    QVERIFY(!desk.run->Round());
    QVERIFY(!desk.run->Apply(Theme::Time));
    QCOMPARE(desk.run->memory.Read()->frameId, remembered);
    QCOMPARE(desk.run->AppliedTheme(), Theme::Default);
    QVERIFY(desk.run->Condition() != PanelCondition::Refusing);
}

void TestPanelSenderFaults::UploadAndRoundsTakeTurns() {
    Desk desk;
    constexpr int kRounds = 20;
    std::thread refreshing([&desk] {
        desk.run->sender.Prepare();
        for (int round = 0; round < 5 * kRounds; ++round) {
            desk.run->Round();
        }
    });
    std::thread uploading([&desk] {
        for (int round = 0; round < kRounds; ++round) {
            desk.run->Apply(round % 2 == 0 ? Theme::Time : Theme::Tdp);
        }
    });
    for (int k = 0; k < 5 * kRounds; ++k) {
        desk.run->sender.NoteArrival();
        static_cast<void>(desk.run->sender.ShownTexts());
        static_cast<void>(desk.run->sender.Status());
    }
    refreshing.join();
    uploading.join();
    QCOMPARE(desk.Counts().errors, quint64(0));
    QVERIFY(desk.run->Round());
    QVERIFY(desk.DifferenceTo(desk.run->sender.Applied()).isNull());
}

KIVO_TEST(TestPanelSenderFaults)
#include "tst_panel_sender_faults.moc"
