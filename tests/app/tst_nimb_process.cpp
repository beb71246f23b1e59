#include <QDialog>
#include <QLabel>
#include <QMetaMethod>
#include <QMovie>
#include <QSemaphore>
#include <QtTest>
#include <memory>

#include "../config/log_catcher.h"
#include "app/nimb_process_dialog.h"
#include "app/nimb_process_thread.h"
#include "compose/background_store.h"
#include "compose/live_screen.h"
#include "device/screen_session.h"
#include "device/transfers.h"
#include "resources/resources.h"
#include "support/test_program.h"
#include "telemetry/metric_snapshot.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;
using kivo::test::LogCatcher;

// The upload behind its busy dialog.
class TestNimbProcess : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();

    void UploadWaitsASecond();
    void UploadTellsOrientationAndTimeWhenTheFrameWasTaken();
    void UploadReportsOnceHoweverItEnds_data();
    void UploadReportsOnceHoweverItEnds();
    void UploadThatFailsAppliesNothing();
    void StoppedBeforeTheStartItLogsAndNeverReports();
    void StoppedInItsPauseItReportsWithoutAFrame();
    void FrameShowsTheLoadOfThePause();

    void DialogIsCentredOverTheWindow_data();
    void DialogIsCentredOverTheWindow();
    void DialogIsASmallFramelessWindow();
    void DialogTakesItsShapeFromTheMask();
    void DialogClosesWithTheReport_data();
    void DialogClosesWithTheReport();
    void DialogIgnoresEscapeAndCloseUntilThen();
    void DialogStaysOpenWhenTheThreadWasStoppedBeforeItsStart();
    void TimerDoneCountsToAHundred();
    void SlotsHaveTheirOrder();
};

namespace {

constexpr int kPatienceMs = 20000;
constexpr std::chrono::milliseconds kShort{20};

// A counter that always says the same load.
class SteadyCounter final : public CpuCounter {
public:
    CpuRawSample Collect() override { return {}; }
    double Calculate(const CpuRawSample&, const CpuRawSample&) override { return 42.9; }
};

// All that an upload needs.
struct Bench {
    VirtualHidApi panel;
    ScreenSession session{panel};
    Transfers transfers{session};
    MetricSnapshot snapshot{InterfaceLanguage::English};
    QTemporaryDir folder;
    BackgroundStore backgrounds{folder.filePath(QStringLiteral("whole.png"))};
    QSemaphore begun;  // by an upload that goes on to its pause
    LiveScreen screen{transfers, backgrounds, [this](int item) { return snapshot.GetValueText(item); }};

    Bench() {
        ScreenState state;
        state.language = InterfaceLanguage::English;
        state.layout = FactoryThemeLayout(state.theme, state.orientation, state.language);
        screen.SetLoaded(state);
        session.InitDeviceTable();
        session.EnumerateScreens();
    }
    std::unique_ptr<NimbProcessThread> Upload(std::chrono::milliseconds pause = kShort) {
        return std::make_unique<NimbProcessThread>(
            NimbProcessThread::Parts{screen, transfers, snapshot, pause, [this] {
                                         begun.release();
                                         return std::unique_ptr<CpuCounter>(new SteadyCounter);
                                     }});
    }
    ScreenState Portrait() const {
        ScreenState state = screen.Chosen();
        state.orientation = Orientation::Portrait;
        state.layout = FactoryThemeLayout(state.theme, state.orientation, state.language);
        return state;
    }
};

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

void TestNimbProcess::initTestCase() {
    InitResources();
    InstallFontSubstitutes();
    QLoggingCategory::setFilterRules(QStringLiteral("kivo.*.debug=false"));
}

void TestNimbProcess::UploadWaitsASecond() {
    Bench bench;
    const NimbProcessThread::Parts parts{bench.screen, bench.transfers, bench.snapshot};
    QCOMPARE(int(parts.pause.count()), 1000);
}

void TestNimbProcess::UploadTellsOrientationAndTimeWhenTheFrameWasTaken() {
    Bench bench;
    bench.screen.SetChosen(bench.Portrait());
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
    QVERIFY(bench.screen.Applied() == bench.Portrait());
}

void TestNimbProcess::UploadReportsOnceHoweverItEnds_data() {
    QTest::addColumn<int>("vanishesAt");
    QTest::newRow("taken") << 0;
    QTest::newRow("no screen") << -1;
    QTest::newRow("pulled out at the first chunk") << 1;
    QTest::newRow("pulled out in the middle") << 14;
    QTest::newRow("pulled out at the last chunk") << 27;
    QTest::newRow("pulled out after the frame") << 28;
}

void TestNimbProcess::UploadReportsOnceHoweverItEnds() {
    QFETCH(int, vanishesAt);
    Bench bench;
    if (vanishesAt < 0) {
        bench.panel.Unplug();
    } else if (vanishesAt > 0) {
        bench.panel.VanishAtReport(quint64(vanishesAt));
    }
    const auto upload = bench.Upload();
    QCOMPARE(Reports(*upload), 1);
    QCOMPARE(upload->Succeeded(), vanishesAt == 0 || vanishesAt > 27);
}

void TestNimbProcess::UploadThatFailsAppliesNothing() {
    Bench bench;
    const ScreenState applied = bench.screen.Applied();
    bench.panel.FailWritesFrom(20);
    bench.screen.SetChosen(bench.Portrait());
    QCOMPARE(Reports(*bench.Upload()), 1);
    QVERIFY(bench.screen.Applied() == applied);
    QCOMPARE(bench.panel.State().counts.commands, quint64(0));
    QVERIFY(bench.screen.ShownTexts()[MemoryUsage].isEmpty());
}

void TestNimbProcess::StoppedBeforeTheStartItLogsAndNeverReports() {
    Bench bench;
    const auto upload = bench.Upload();
    upload->stop();
    QCOMPARE(int(upload->isStop), 1);
    const LogCatcher log;
    QCOMPARE(Reports(*upload), 0);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("isStop.\n")});
    QCOMPARE(bench.panel.State().counts.reports, quint64(0));
}

void TestNimbProcess::StoppedInItsPauseItReportsWithoutAFrame() {
    Bench bench;
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

void TestNimbProcess::FrameShowsTheLoadOfThePause() {
    Bench bench;
    QCOMPARE(Reports(*bench.Upload()), 1);
    QCOMPARE(bench.snapshot.CpuUsed(), 42);
    QCOMPARE(bench.screen.ShownTexts()[CpuUsage], QStringLiteral("42%"));
}

void TestNimbProcess::DialogIsCentredOverTheWindow_data() {
    QTest::addColumn<QRect>("window");
    QTest::addColumn<QPoint>("corner");
    QTest::newRow("main window") << QRect(100, 50, 960, 588) << QPoint(516, 280);
    QTest::newRow("odd size") << QRect(10, 20, 301, 203) << QPoint(96, 57);
    QTest::newRow("smaller than the dialog") << QRect(200, 200, 101, 61) << QPoint(186, 166);
    QTest::newRow("left of the first screen") << QRect(-1000, 30, 960, 588) << QPoint(-584, 260);
}

void TestNimbProcess::DialogIsCentredOverTheWindow() {
    QFETCH(QRect, window);
    QFETCH(QPoint, corner);
    QWidget main(nullptr, Qt::FramelessWindowHint);
    main.setGeometry(window);
    const NimbProcessDialog dialog(&main);
    QCOMPARE(dialog.pos(), corner);
    QCOMPARE(dialog.size(), QSize(128, 128));
}

void TestNimbProcess::DialogIsASmallFramelessWindow() {
    const NimbProcessDialog dialog(nullptr);
    QCOMPARE(dialog.minimumSize(), QSize(128, 128));
    QCOMPARE(dialog.maximumSize(), QSize(128, 128));
    QVERIFY(dialog.windowFlags().testFlag(Qt::FramelessWindowHint));
    QVERIFY(dialog.testAttribute(Qt::WA_TranslucentBackground));
    const auto* label = dialog.findChild<QLabel*>();
    QCOMPARE(label->geometry(), QRect(0, 0, 128, 128));
    const auto* movie = dialog.findChild<QMovie*>();
    QCOMPARE(movie->state() == QMovie::Running, QFile::exists(QStringLiteral("://skins/loading.gif")));
}

void TestNimbProcess::DialogTakesItsShapeFromTheMask() {
    const QString path = QCoreApplication::applicationDirPath() + QStringLiteral("/skin/process.png");
    QVERIFY(!QFile::exists(path));
    QVERIFY(NimbProcessDialog(nullptr).mask().isEmpty());

    QVERIFY(QDir().mkpath(QFileInfo(path).path()));
    QImage shape(128, 128, QImage::Format_ARGB32);
    shape.fill(Qt::transparent);
    for (int y = 32; y < 96; ++y) {
        for (int x = 16; x < 112; ++x) {
            shape.setPixelColor(x, y, Qt::white);
        }
    }
    QVERIFY(shape.save(path));
    const QRegion mask = NimbProcessDialog(nullptr).mask();
    QVERIFY(QDir(QFileInfo(path).path()).removeRecursively());
    QCOMPARE(mask, QRegion(16, 32, 96, 64));
}

void TestNimbProcess::DialogClosesWithTheReport_data() {
    QTest::addColumn<bool>("hasScreen");
    QTest::newRow("taken") << true;
    QTest::newRow("no screen") << false;
}

void TestNimbProcess::DialogClosesWithTheReport() {
    QFETCH(bool, hasScreen);
    Bench bench;
    if (!hasScreen) {
        bench.panel.Unplug();
    }
    const auto upload = bench.Upload();
    NimbProcessDialog dialog(nullptr);
    connect(upload.get(), &NimbProcessThread::DoProcessDlg, &dialog, &NimbProcessDialog::slotProcessDlg);
    upload->start(QThread::InheritPriority);
    QCOMPARE(dialog.exec(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
    QCOMPARE(upload->Succeeded(), hasScreen);
}

void TestNimbProcess::DialogIgnoresEscapeAndCloseUntilThen() {
    NimbProcessDialog dialog(nullptr);
    QSignalSpy finished(&dialog, &QDialog::finished);
    dialog.open();
    QVERIFY(QTest::qWaitForWindowExposed(&dialog));
    QTest::keyClick(&dialog, Qt::Key_Escape);
    QVERIFY(!dialog.close());
    dialog.reject();
    QVERIFY(dialog.isVisible());
    QCOMPARE(finished.count(), 0);
    dialog.slotProcessDlg();
    QVERIFY(dialog.isVisible());  // closes from its own event loop
    QVERIFY(finished.wait(kPatienceMs));
    QCOMPARE(finished.first().first().toInt(), int(QDialog::Accepted));
    QVERIFY(!dialog.isVisible());
}

void TestNimbProcess::DialogStaysOpenWhenTheThreadWasStoppedBeforeItsStart() {
    Bench bench;
    const auto upload = bench.Upload();
    NimbProcessDialog dialog(nullptr);
    connect(upload.get(), &NimbProcessThread::DoProcessDlg, &dialog, &NimbProcessDialog::slotProcessDlg);
    dialog.open();
    const LogCatcher log;
    upload->stop();
    upload->start(QThread::InheritPriority);
    upload->wait();
    QCoreApplication::processEvents();
    QVERIFY(dialog.isVisible());
}

void TestNimbProcess::TimerDoneCountsToAHundred() {
    NimbProcessDialog dialog(nullptr);
    NimbProcessDialog another(nullptr);
    const LogCatcher log;
    for (int k = 0; k < 50; ++k) {
        dialog.timerDone();
        another.timerDone();  // the counter is the process's
    }
    dialog.timerDone();
    QStringList expected;
    for (int number = 1; number <= 100; ++number) {
        expected.append(QString::number(number));
    }
    expected.append(QStringLiteral("1"));
    QCOMPARE(log.lines(), expected);
}

void TestNimbProcess::SlotsHaveTheirOrder() {
    const QMetaObject& meta = NimbProcessDialog::staticMetaObject;
    QStringList slotNames;
    for (int k = meta.methodOffset(); k < meta.methodCount(); ++k) {
        slotNames.append(QString::fromLatin1(meta.method(k).methodSignature()));
    }
    QCOMPARE(slotNames, (QStringList{QStringLiteral("slotProcessDlg()"), QStringLiteral("updateProgress()"),
                                     QStringLiteral("timerDone()")}));
    QVERIFY(NimbProcessThread::staticMetaObject.indexOfSignal("DoProcessDlg()") >= 0);
}

KIVO_TEST(TestNimbProcess)
#include "tst_nimb_process.moc"
