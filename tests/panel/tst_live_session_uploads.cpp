#include <QtTest>

#include "config/folders.h"
#include "panel/nimb_process_thread.h"
#include "resources/resources.h"
#include "support/built_paths.h"
#include "support/forwarding_hid_api.h"
#include "support/session_start.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;
using namespace kivo::test;

// What a window asks of the session while it runs: apply, stop, start, and what becomes of frames that no
// screen took.
class TestLiveSessionUploads : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void RefreshIsStoppedAndStartedAgain();
    void RefreshAskedForDuringAnUploadStartsAfterIt();
    void StopRefreshTakesThatBack();
    void ApplyBetweenStopAndStart();
    void ApplyWhileRefreshing();
    void FrameThatWasCutOffIsOwedAndNothingIsDrawnOverIt();
    void FrameRefusedAtItsFirstChunkLeavesTheOldOneInUse();
    void FailedFrameIsSentWhenAScreenArrives();
    void RefusedChunkIsTriedAgain();
    void RefusedOrientationIsTriedAgain();
    void ScreenThatArrivesDuringAFailingUpload();
    void TwoUploadsAtOnce();
    void MissingBackgroundIsComposedAgainWithoutSending();
    void BackgroundThatVanishesWhileTheProgramRunsIsWrittenAgain();
    void ForeignBackgroundIsNotBelieved();
    void PowerAndTemperatureOutliveARefreshThread();
    void ArrivedPanelGetsItsValuesInFull();
    void EndWaitsForARefreshThreadThatWasStopped();
    void NothingStartsAfterTheEnd();

private:
    ScreenState m_state;
};

namespace {

const QString kBin = ProgramFolder();
}  // namespace

void TestLiveSessionUploads::initTestCase() {
    InitResources();
    InstallFontSubstitutes();
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestLiveSessionUploads::init() {
    QVERIFY(QDir(SettingsFolder()).removeRecursively());
    QVERIFY(QDir(WorkingFolder()).removeRecursively());
    m_state = LoadState(kBin, InterfaceLanguage::English);
}

void TestLiveSessionUploads::RefreshIsStoppedAndStartedAgain() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, m_state);
    for (int k = 0; k < 20; ++k) {
        session.StartRefresh();
        session.StartRefresh();  // one is enough
        const quint64 areas = panel.State().counts.areas;
        QTRY_VERIFY(panel.State().counts.areas > areas);
        session.StopRefresh();
        session.StopRefresh();
    }
    QVERIFY(session.Stop());
    QCOMPARE(panel.State().counts.errors, quint64(0));
    QCOMPARE(Frames(panel), quint64(1));  // a panel that nothing is known of is owed one
}

void TestLiveSessionUploads::RefreshAskedForDuringAnUploadStartsAfterIt() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    session.StartUpload();
    session.StartRefresh();
    QVERIFY(done.wait(kPatienceMs));
    QTRY_VERIFY(panel.State().counts.areas > 0);
}

void TestLiveSessionUploads::StopRefreshTakesThatBack() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    session.StartUpload();
    session.StartRefresh();
    session.StopRefresh();
    QVERIFY(done.wait(kPatienceMs));
    QVERIFY(session.Stop());
    QCOMPARE(panel.State().counts.areas, quint64(0));
}

void TestLiveSessionUploads::ApplyBetweenStopAndStart() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    StartWithFrame(session, m_state);
    QVERIFY(done.wait(kPatienceMs));
    QTRY_VERIFY(panel.State().counts.areas > 0);

    session.StopRefresh();
    session.SetChosen(InPortrait(m_state));
    QVERIFY(session.Applied() == m_state);
    session.StartUpload();
    QVERIFY(done.wait(kPatienceMs));
    session.StartRefresh();

    QVERIFY(session.Applied() == InPortrait(m_state));
    QCOMPARE(panel.State().orientation, std::optional<int>(2));
    const quint64 areas = panel.State().counts.areas;
    QTRY_VERIFY(panel.State().counts.areas > areas);
    QVERIFY(session.Stop());
    QCOMPARE(panel.State().counts.errors, quint64(0));
    QCOMPARE(Frames(panel), quint64(2));
}

void TestLiveSessionUploads::ApplyWhileRefreshing() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    session.StartRefresh();
    QTRY_COMPARE(Frames(panel), quint64(1));
    for (quint64 k = 2; k <= 6; ++k) {
        const quint64 areas = panel.State().counts.areas;
        QTRY_VERIFY(panel.State().counts.areas > areas);
        session.SetChosen(k % 2 == 0 ? InPortrait(m_state) : m_state);
        session.StartUpload();
        QVERIFY(done.wait(kPatienceMs));
        QVERIFY(!session.Status().isFrameOwed);
        QCOMPARE(Frames(panel), k);
    }
    // No area ever came between the chunks of a frame, and the thread goes on.
    const quint64 areas = panel.State().counts.areas;
    QTRY_VERIFY(panel.State().counts.areas > areas);
    QVERIFY(session.Stop());
    QCOMPARE(panel.State().counts.errors, quint64(0));
}

void TestLiveSessionUploads::FrameThatWasCutOffIsOwedAndNothingIsDrawnOverIt() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    session.StartUpload();
    QVERIFY(done.wait(kPatienceMs));
    QVERIFY(done.takeFirst().first().toBool());
    QVERIFY(!session.ShownTexts()[MemoryUsage].isEmpty());

    panel.FailWritesFrom(14);
    session.SetChosen(InPortrait(m_state));
    session.StartUpload();
    QVERIFY(done.wait(kPatienceMs));
    QVERIFY(!done.takeFirst().first().toBool());
    QVERIFY(session.Status().isFrameOwed);
    QVERIFY(session.ShownTexts()[MemoryUsage].isEmpty());
}

void TestLiveSessionUploads::FrameRefusedAtItsFirstChunkLeavesTheOldOneInUse() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    session.StartUpload();
    QVERIFY(done.wait(kPatienceMs));
    const ItemTexts shown = session.ShownTexts();

    panel.FailWritesFrom(1);
    session.SetChosen(InPortrait(m_state));
    session.StartUpload();
    QVERIFY(done.wait(kPatienceMs));
    QVERIFY(session.Status().isFrameOwed);
    QVERIFY(session.Applied() == m_state);
    QVERIFY(session.ShownTexts() == shown);
}

void TestLiveSessionUploads::FailedFrameIsSentWhenAScreenArrives() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    panel.VanishAtReport(14);
    session.SetChosen(InPortrait(m_state));
    session.StartUpload();
    session.StartRefresh();
    QVERIFY(done.wait(kPatienceMs));
    QVERIFY(session.Status().isFrameOwed);

    // What is being edited when it comes back is not what was applied.
    ScreenState edited = InPortrait(m_state);
    edited.layout.shown.fill(false);
    session.SetChosen(edited);
    panel.ClearFaults();
    panel.Plug();
    session.NoteArrival();
    QTRY_VERIFY(!session.Status().isFrameOwed);
    QVERIFY(session.Applied() == InPortrait(m_state));
    QCOMPARE(Frames(panel), quint64(1));
    const quint64 areas = panel.State().counts.areas;
    QTRY_VERIFY(panel.State().counts.areas > areas);
    QVERIFY(session.Stop());
    QCOMPARE(panel.State().counts.errors, quint64(0));
}

void TestLiveSessionUploads::RefusedChunkIsTriedAgain() {
    VirtualHidApi panel;
    RefusingHidApi hid(panel);
    LiveSession session(hid, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    hid.RefuseOnce(PanelReportKind::Chunk, 5);
    session.StartUpload();
    QVERIFY(done.wait(kPatienceMs));
    QVERIFY(!done.first().first().toBool());
    QVERIFY(session.Status().isFrameOwed);
    session.StartRefresh();
    QTRY_COMPARE(Frames(panel), quint64(1));
    QTRY_VERIFY(!session.Status().isFrameOwed);
    QVERIFY(session.Stop());
    QCOMPARE(panel.State().counts.errors, quint64(0));
}

void TestLiveSessionUploads::RefusedOrientationIsTriedAgain() {
    VirtualHidApi panel;
    RefusingHidApi hid(panel);
    LiveSession session(hid, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, InPortrait(m_state));
    hid.RefuseOnce(PanelReportKind::Orientation);
    hid.RefuseOnce(PanelReportKind::Orientation);
    session.StartUpload();
    QVERIFY(done.wait(kPatienceMs));
    QVERIFY(done.first().first().toBool());
    QVERIFY(!panel.State().orientation);
    session.StartRefresh();
    QTRY_COMPARE(panel.State().orientation, std::optional<int>(2));
    QCOMPARE(Frames(panel), quint64(1));
}

void TestLiveSessionUploads::ScreenThatArrivesDuringAFailingUpload() {
    VirtualHidApi panel;
    HangingHidApi hid(panel);
    LiveSession session(hid, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    QTRY_VERIFY(panel.State().clock.has_value());
    hid.hang = true;
    session.StartUpload();
    QVERIFY(hid.entered.tryAcquire(1, kPatienceMs));
    // In the middle of a chunk it is pulled out and put back.
    panel.Unplug();
    panel.Plug();
    session.NoteArrival();
    QCOMPARE(Frames(panel), quint64(0));
    hid.hang = false;
    hid.letGo.release();
    QVERIFY(done.wait(kPatienceMs));
    QCOMPARE(done.count(), 1);
    QVERIFY(!done.first().first().toBool());
    session.StartRefresh();
    QTRY_COMPARE(Frames(panel), quint64(1));
}

void TestLiveSessionUploads::TwoUploadsAtOnce() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    Open(session, m_state);
    int reports = 0;
    const auto count = [this, &reports](NimbProcessThread& upload) {
        connect(&upload, &NimbProcessThread::DoProcessDlg, this, [&reports] { ++reports; });
    };
    QVERIFY(session.StartUpload(count) != nullptr);
    session.SetChosen(InPortrait(m_state));
    QVERIFY(session.StartUpload(count) != nullptr);
    QVERIFY(done.wait(kPatienceMs));
    QCOMPARE(done.count(), 1);
    QVERIFY(done.first().first().toBool());
    // Each was whole and closed its dialog; the newest choice is what is shown.
    QTRY_COMPARE(reports, 2);
    QCOMPARE(Frames(panel), quint64(2));
    QCOMPARE(panel.State().counts.errors, quint64(0));
    QVERIFY(session.Applied() == InPortrait(m_state));
}

void TestLiveSessionUploads::MissingBackgroundIsComposedAgainWithoutSending() {
    const QString whole = WorkingFolder() + QStringLiteral("/whole.png");
    QVERIFY(!QFile::exists(whole));
    VirtualHidApi panel;
    panel.Unplug();
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, m_state);
    session.StartRefresh();
    QTRY_VERIFY(QFile::exists(whole));
    QVERIFY(session.Stop());
    QCOMPARE(QImage(whole).size(), CanvasSize(m_state.orientation));
    QVERIFY(!session.IsUploading());
    QCOMPARE(panel.State().counts.commands, quint64(0));
}

void TestLiveSessionUploads::BackgroundThatVanishesWhileTheProgramRunsIsWrittenAgain() {
    const QString whole = WorkingFolder() + QStringLiteral("/whole.png");
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, m_state);
    session.StartRefresh();
    QTRY_VERIFY(panel.State().counts.areas > 0);
    const QImage background(whole);
    QVERIFY(!background.isNull());
    QVERIFY(QFile::remove(whole));
    const quint64 areas = panel.State().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(whole), 20000);
    QCOMPARE(QImage(whole), background);
    QTRY_VERIFY(panel.State().counts.areas > areas);
    QVERIFY(session.Stop());
    QCOMPARE(Frames(panel), quint64(1));
    // Beside the hour the panel still has the background: nothing turned black.
    const QPoint corner(5, 5);
    QCOMPARE(panel.State().image.pixel(corner),
             background.convertToFormat(QImage::Format_RGB16).pixel(corner));
}

void TestLiveSessionUploads::ForeignBackgroundIsNotBelieved() {
    const QString whole = WorkingFolder() + QStringLiteral("/whole.png");
    QImage foreign(CanvasSize(m_state.orientation), QImage::Format_RGB16);
    foreign.fill(Qt::darkMagenta);
    QVERIFY(foreign.save(whole));
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, m_state);
    session.StartRefresh();
    QTRY_VERIFY(panel.State().counts.areas > 0);
    QVERIFY(session.Stop());
    QVERIFY(QImage(whole).convertToFormat(QImage::Format_RGB16) != foreign);
}

void TestLiveSessionUploads::PowerAndTemperatureOutliveARefreshThread() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, m_state);
    session.StartRefresh();
    session.SetCpuPowClock(83, 61);
    session.StopRefresh();
    session.StartRefresh();
    QCOMPARE(session.LiveText(CpuPower), QStringLiteral("83w"));
    QTRY_COMPARE(session.ShownTexts()[CpuTemperature], QStringLiteral("61℃"));
    QCOMPARE(session.LiveText(OtherText), QString());
}

void TestLiveSessionUploads::ArrivedPanelGetsItsValuesInFull() {
    VirtualHidApi panel;
    QVERIFY(HasPlace(m_state, CpuTemperature));
    AreaCountingHidApi hid(panel, m_state.layout.textRect[CpuTemperature].center());
    LiveSession session(hid, InterfaceLanguage::English, kShortPauses);
    session.SetCpuPowClock(83, 61);
    Open(session, m_state);
    session.StartRefresh();
    QTRY_VERIFY(hid.count == 1);
    // A value that stands still is not sent again, however many rounds go by...
    const quint64 commands = panel.State().counts.commands;
    QTRY_VERIFY(panel.State().counts.commands >= commands + 3);
    QCOMPARE(hid.count.load(), 1);
    // ... but for a screen that came back.
    session.NoteArrival();
    QTRY_COMPARE(hid.count.load(), 2);
}

void TestLiveSessionUploads::EndWaitsForARefreshThreadThatWasStopped() {
    VirtualHidApi panel;
    HangingHidApi hid(panel);
    LiveSession session(hid, InterfaceLanguage::English, kShortPauses);
    Open(session, m_state);
    hid.hang = true;
    session.StartRefresh();
    QVERIFY(hid.entered.tryAcquire(1, kPatienceMs));
    session.StopRefresh();  // comes back although the thread cannot
    QVERIFY(!session.Stop());
    hid.hang = false;
    hid.letGo.release();
    QTRY_VERIFY(session.Stop());
}

void TestLiveSessionUploads::NothingStartsAfterTheEnd() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, m_state);
    QVERIFY(session.Stop());
    const quint64 commands = panel.State().counts.commands;
    session.SendTimeSync();
    session.StartRefresh();
    QVERIFY(session.StartUpload() == nullptr);
    QVERIFY(session.Stop());
    QCOMPARE(panel.State().counts.commands, commands);
}

KIVO_TEST(TestLiveSessionUploads)
#include "tst_live_session_uploads.moc"
