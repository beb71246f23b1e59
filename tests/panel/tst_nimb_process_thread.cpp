#include <QtTest>

#include "../config/log_catcher.h"
#include "resources/resources.h"
#include "support/test_program.h"
#include "upload_bench.h"

using namespace kivo;
using kivo::test::LogCatcher;
using kivo::test::UploadBench;

// The worker that brings one whole frame to the panel.
class TestNimbProcessThread : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void UploadWaitsASecond();
    void UploadTellsOrientationAndTimeWhenTheFrameWasTaken();
    void UploadReportsOnceHoweverItEnds_data();
    void UploadReportsOnceHoweverItEnds();
    void UploadThatFailsIsOwed();
    void StoppedBeforeTheStartItLogsAndNeverReports();
    void StoppedInItsPauseItReportsWithoutAFrame();
    void FrameShowsTheLoadOfThePause();
    void SignalHasItsName();
};

namespace {

constexpr int kPatienceMs = 20000;

// Counts the reports of an upload on its own thread, before the thread ends.
class ReportCounter {
public:
    explicit ReportCounter(const NimbProcessThread& upload) {
        QObject::connect(
            &upload, &NimbProcessThread::DoProcessDlg, &upload, [this] { ++m_count; }, Qt::DirectConnection);
    }
    int Count() const { return m_count; }

private:
    std::atomic<int> m_count{0};
};

// Lets it run to its end; how often it reported.
int Reports(NimbProcessThread& upload) {
    const ReportCounter counter(upload);
    upload.start(QThread::InheritPriority);
    upload.wait();
    return counter.Count();
}

}  // namespace

void TestNimbProcessThread::initTestCase() {
    InitResources();
    InstallFontSubstitutes();
    QLoggingCategory::setFilterRules(QStringLiteral("kivo.*.debug=false"));
}

void TestNimbProcessThread::UploadWaitsASecond() {
    UploadBench bench;
    const NimbProcessThread::Parts parts{bench.sender, bench.snapshot};
    QCOMPARE(int(parts.pause.count()), 1000);
}

void TestNimbProcessThread::UploadTellsOrientationAndTimeWhenTheFrameWasTaken() {
    UploadBench bench;
    bench.sender.SetChosen(UploadBench::StateOf(Orientation::Portrait));
    const auto upload = bench.Upload();
    QVERIFY(!upload->Succeeded());
    QCOMPARE(Reports(*upload), 1);
    QVERIFY(upload->Succeeded());
    const PanelState state = bench.panel.State();
    QCOMPARE(state.counts.frames, quint64(1));
    QCOMPARE(state.counts.commands, quint64(3));  // orientation, orientation, time
    QCOMPARE(state.orientation, std::optional<int>(2));
    QVERIFY(state.shownTime.has_value());
    QCOMPARE(state.counts.errors, quint64(0));
    QVERIFY(bench.sender.Applied() == UploadBench::StateOf(Orientation::Portrait));
}

void TestNimbProcessThread::UploadReportsOnceHoweverItEnds_data() {
    QTest::addColumn<int>("vanishesAt");
    QTest::newRow("taken") << 0;
    QTest::newRow("no screen") << -1;
    QTest::newRow("pulled out at the first chunk") << 1;
    QTest::newRow("pulled out in the middle") << 14;
    QTest::newRow("pulled out at the last chunk") << 27;
    QTest::newRow("pulled out after the frame") << 28;
}

void TestNimbProcessThread::UploadReportsOnceHoweverItEnds() {
    QFETCH(int, vanishesAt);
    UploadBench bench;
    if (vanishesAt < 0) {
        bench.panel.Unplug();
    } else if (vanishesAt > 0) {
        bench.panel.VanishAtReport(quint64(vanishesAt));
    }
    const auto upload = bench.Upload();
    QCOMPARE(Reports(*upload), 1);
    QCOMPARE(upload->Succeeded(), vanishesAt == 0 || vanishesAt > 27);
}

void TestNimbProcessThread::UploadThatFailsIsOwed() {
    UploadBench bench;
    bench.panel.FailWritesFrom(20);
    bench.sender.SetChosen(UploadBench::StateOf(Orientation::Portrait));
    QCOMPARE(Reports(*bench.Upload()), 1);
    QVERIFY(bench.sender.Status().isFrameOwed);
    QCOMPARE(bench.panel.State().counts.commands, quint64(0));
    QVERIFY(bench.sender.ShownTexts()[MemoryUsage].isEmpty());
}

void TestNimbProcessThread::StoppedBeforeTheStartItLogsAndNeverReports() {
    UploadBench bench;
    const auto upload = bench.Upload();
    upload->stop();
    QCOMPARE(int(upload->isStop), 1);
    const LogCatcher log;
    QCOMPARE(Reports(*upload), 0);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("isStop.\n")});
    QCOMPARE(bench.panel.State().counts.reports, quint64(0));
}

void TestNimbProcessThread::StoppedInItsPauseItReportsWithoutAFrame() {
    UploadBench bench;
    const auto upload = bench.Upload(std::chrono::hours(10));
    const ReportCounter reported(*upload);
    upload->start(QThread::InheritPriority);
    QVERIFY(bench.begun.tryAcquire(1, kPatienceMs));
    upload->stop();
    upload->wait();
    QCOMPARE(reported.Count(), 1);
    QVERIFY(!upload->Succeeded());
    QCOMPARE(bench.panel.State().counts.reports, quint64(0));
}

void TestNimbProcessThread::FrameShowsTheLoadOfThePause() {
    UploadBench bench;
    QCOMPARE(Reports(*bench.Upload()), 1);
    QCOMPARE(bench.snapshot.CpuUsed(), 42);
    QCOMPARE(bench.sender.ShownTexts()[CpuUsage], QStringLiteral("42%"));
}

void TestNimbProcessThread::SignalHasItsName() {
    QVERIFY(NimbProcessThread::staticMetaObject.indexOfSignal("DoProcessDlg()") >= 0);
}

KIVO_TEST(TestNimbProcessThread)
#include "tst_nimb_process_thread.moc"
