#include <QRegularExpression>
#include <QtTest>
#include <mutex>

#include "app/refresh_data_thread.h"
#include "device/screen_session.h"
#include "device/transfers.h"
#include "support/test_program.h"
#include "telemetry/metric_snapshot.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

namespace {

using Handed = QPair<int, QString>;

// Takes note of what it is handed; may stop the thread at a given item.
class Recorder final : public LiveItemRenderer {
public:
    void RenderLiveItem(const QString& text, int item) override {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_handed.append({item, text});
        if (item == stopAt && thread != nullptr) {
            thread->isStop = 1;
        }
    }
    QVector<Handed> Taken() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // A copy of its own: Qt would share the vector, and the sanitizer cannot see how Qt counts its
        // owners.
        QVector<Handed> taken;
        for (const Handed& handed : m_handed) {
            taken.append(handed);
        }
        return taken;
    }
    int Count(int item) const {
        int count = 0;
        for (const Handed& handed : Taken()) {
            count += handed.first == item ? 1 : 0;
        }
        return count;
    }
    int stopAt = -1;
    RefreshDataThread* thread = nullptr;

private:
    mutable std::mutex m_mutex;
    QVector<Handed> m_handed;
};

// A counter that always says the same load.
class SteadyCounter final : public CpuCounter {
public:
    explicit SteadyCounter(double percent) : m_percent(percent) {}
    CpuRawSample Collect() override { return {}; }
    double Calculate(const CpuRawSample&, const CpuRawSample&) override { return m_percent; }

private:
    const double m_percent;
};

std::atomic<int> stopLines{0};
void CountStopLines(QtMsgType /*type*/, const QMessageLogContext& /*context*/, const QString& text) {
    stopLines += text == QLatin1String("isStop.\n") ? 1 : 0;
}

// Everything a refresh thread needs, with values that stand still.
struct Bench {
    VirtualHidApi panel;
    ScreenSession session{panel};
    Transfers transfers{session};
    int memoryLoad = 33;
    double cpuLoad = 42.9;
    LocalTime now{QDate(2026, 11, 21), QTime(9, 5)};
    InterfaceLanguage language;
    MetricSnapshot snapshot;
    Recorder recorder;
    std::atomic<LiveItemRenderer*> renderer{&recorder};
    std::unique_ptr<RefreshDataThread> thread;

    explicit Bench(InterfaceLanguage spoken = InterfaceLanguage::Chinese)
        : language(spoken), snapshot(spoken, {[this] { return now; }, [this] { return memoryLoad; }}) {
        session.InitDeviceTable();
        session.EnumerateScreens();
    }
    ~Bench() { End(); }
    void Begin() {
        thread = std::make_unique<RefreshDataThread>(
            RefreshDataThread::Parts{transfers,
                                     snapshot,
                                     renderer,
                                     language,
                                     [this] { return std::make_unique<SteadyCounter>(cpuLoad); },
                                     {std::chrono::milliseconds(2), std::chrono::milliseconds(0)}});
        recorder.thread = thread.get();
        thread->start();
    }
    void End() {
        if (thread) {
            thread->stop();
            thread->wait();
        }
    }
    quint64 Rounds() const { return panel.State().counts.commands; }
    bool AwaitRounds(quint64 count) {
        return QTest::qWaitFor([&] { return Rounds() >= count; }, 5000);
    }
};

}  // namespace

class TestRefreshDataThread : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void FirstRoundHandsOverWhatDiffersFromItsSample();
    void SampleLookalikeWaitsForTheSecondRound();
    void TimeAndDateGoOutThoughTheyLookLikeTheirSamples();
    void RussianSamplesAreHeldBackToo();
    void KnownLoadIsNotReplacedByTheFirstSample();
    void UnchangedValuesAreNotHandedOverAgain();
    void TimeAndDateGoOutInEveryRound();
    void EveryRoundSetsTheClock();
    void StopInARoundEndsBeforeTheNextValue();
    void StopCutsThePauseShort();
    void WithoutARendererTextsAreStillFollowed();
    void RendererMayComeAndGo();
    void ForgottenTextsAreSentAgain();
    void WithoutAScreenTheLoopCarriesOn();
};

void TestRefreshDataThread::FirstRoundHandsOverWhatDiffersFromItsSample() {
    Bench bench;
    bench.recorder.stopAt = FanSpeed;
    bench.snapshot.SetCpuPowClock(20, 60);
    bench.Begin();
    QVERIFY(bench.thread->wait(5000));
    // Utilisation is 0 in the first round, which shows as 1.
    const QVector<Handed> expected{
        {CpuTemperature, QStringLiteral("60℃")}, {CpuUsage, QStringLiteral("1%")},
        {MemoryUsage, QStringLiteral("33%")},    {Time, QStringLiteral("09:05")},
        {CpuPower, QStringLiteral("20w")},       {Date, QStringLiteral("2026.11.21")},
        {FanSpeed, QStringLiteral("2000")}};
    QCOMPARE(bench.recorder.Taken(), expected);
}

void TestRefreshDataThread::SampleLookalikeWaitsForTheSecondRound() {
    Bench bench;
    bench.memoryLoad = 20;                  // the memory's sample
    bench.snapshot.SetCpuPowClock(20, 45);  // the temperature's, and a fan of 1000
    bench.Begin();
    QVERIFY(bench.AwaitRounds(5));
    bench.End();
    for (const int item : {int(CpuTemperature), int(MemoryUsage), int(FanSpeed)}) {
        QCOMPARE(bench.recorder.Count(item), 1);
    }
    // The first round went by without them: time and date came before.
    const QVector<Handed> taken = bench.recorder.Taken();
    QVERIFY(taken.indexOf({FanSpeed, QStringLiteral("1000")}) >
            taken.indexOf({Date, QStringLiteral("2026.11.21")}));
    QVERIFY(taken.indexOf({CpuTemperature, QStringLiteral("45℃")}) >
            taken.indexOf({Date, QStringLiteral("2026.11.21")}));
}

void TestRefreshDataThread::TimeAndDateGoOutThoughTheyLookLikeTheirSamples() {
    Bench bench;
    bench.now = {QDate(2019, 12, 21), QTime(18, 46)};
    bench.recorder.stopAt = Date;
    bench.Begin();
    QVERIFY(bench.thread->wait(5000));
    QVERIFY(bench.recorder.Taken().contains({Time, QStringLiteral("18:46")}));
    QVERIFY(bench.recorder.Taken().contains({Date, QStringLiteral("2019.12.21")}));
}

void TestRefreshDataThread::RussianSamplesAreHeldBackToo() {
    Bench bench(InterfaceLanguage::Russian);
    bench.snapshot.SetCpuPowClock(15, 60);  // the power's sample
    bench.recorder.stopAt = FanSpeed;
    bench.Begin();
    QVERIFY(bench.thread->wait(5000));
    QCOMPARE(bench.recorder.Count(CpuPower), 0);
    QVERIFY(bench.recorder.Taken().contains({Date, QStringLiteral("21.11.2026")}));
}

void TestRefreshDataThread::KnownLoadIsNotReplacedByTheFirstSample() {
    Bench bench;
    bench.snapshot.SetCpuUsed(37);
    bench.recorder.stopAt = FanSpeed;
    bench.Begin();
    QVERIFY(bench.thread->wait(5000));
    QVERIFY(bench.recorder.Taken().contains({CpuUsage, QStringLiteral("37%")}));
}

void TestRefreshDataThread::UnchangedValuesAreNotHandedOverAgain() {
    Bench bench;
    bench.Begin();
    QVERIFY(bench.AwaitRounds(8));
    bench.End();
    QCOMPARE(bench.recorder.Count(MemoryUsage), 1);
    QCOMPARE(bench.recorder.Count(CpuPower), 1);
    // 1% of the first round, then 42% once.
    QCOMPARE(bench.recorder.Count(CpuUsage), 2);
    QVERIFY(bench.recorder.Taken().contains({CpuUsage, QStringLiteral("42%")}));
}

void TestRefreshDataThread::TimeAndDateGoOutInEveryRound() {
    Bench bench;
    bench.Begin();
    QVERIFY(bench.AwaitRounds(6));
    bench.End();
    // The last round may have been left before its time or its date.
    const int rounds = int(bench.Rounds());
    QVERIFY(bench.recorder.Count(Time) >= rounds - 1 && bench.recorder.Count(Time) <= rounds);
    QVERIFY(bench.recorder.Count(Date) >= rounds - 1 && bench.recorder.Count(Date) <= rounds);
}

void TestRefreshDataThread::EveryRoundSetsTheClock() {
    Bench bench;
    QTime before = QTime::currentTime();
    bench.Begin();
    QVERIFY(bench.AwaitRounds(3));
    bench.End();
    const PanelState state = bench.panel.State();
    QCOMPARE(state.counts.errors, quint64(0));
    QVERIFY(state.clock.has_value());
    QVERIFY(qAbs(before.secsTo(*state.clock)) < 60 || qAbs(before.secsTo(*state.clock)) > 86300);
}

void TestRefreshDataThread::StopInARoundEndsBeforeTheNextValue() {
    Bench bench;
    bench.recorder.stopAt = MemoryUsage;
    stopLines = 0;
    const QtMessageHandler former = qInstallMessageHandler(CountStopLines);
    bench.Begin();
    const bool ended = bench.thread->wait(5000);
    qInstallMessageHandler(former);
    QVERIFY(ended);
    QCOMPARE(stopLines.load(), 1);
    QCOMPARE(bench.recorder.Taken().last().first, int(MemoryUsage));
    QCOMPARE(bench.Rounds(), quint64(1));
}

void TestRefreshDataThread::StopCutsThePauseShort() {
    Bench bench;
    bench.thread = std::make_unique<RefreshDataThread>(
        RefreshDataThread::Parts{bench.transfers,
                                 bench.snapshot,
                                 bench.renderer,
                                 InterfaceLanguage::Chinese,
                                 MakeCpuCounter,
                                 {std::chrono::hours(1), std::chrono::milliseconds(0)}});
    bench.thread->start();
    QTRY_VERIFY(bench.recorder.Count(FanSpeed) + bench.recorder.Count(Date) >= 1);
    bench.thread->stop();
    QVERIFY(bench.thread->wait(5000));
}

void TestRefreshDataThread::WithoutARendererTextsAreStillFollowed() {
    Bench bench;
    bench.renderer = nullptr;
    bench.Begin();
    QVERIFY(bench.AwaitRounds(3));
    bench.End();
    QCOMPARE(bench.thread->lastText()[MemoryUsage], QStringLiteral("33%"));
    QCOMPARE(bench.thread->lastText()[Time], QStringLiteral("09:05"));
    QCOMPARE(bench.panel.State().counts.areas, quint64(0));
    QVERIFY(bench.recorder.Taken().isEmpty());
}

void TestRefreshDataThread::RendererMayComeAndGo() {
    Bench bench;
    bench.renderer = nullptr;
    bench.Begin();
    QVERIFY(bench.AwaitRounds(2));
    bench.renderer = &bench.recorder;
    QTRY_VERIFY(bench.recorder.Count(Time) > 0);
    bench.renderer = nullptr;
    QVERIFY(bench.AwaitRounds(bench.Rounds() + 3));
    const int count = bench.recorder.Count(Time);
    QVERIFY(bench.AwaitRounds(bench.Rounds() + 3));
    QCOMPARE(bench.recorder.Count(Time), count);
}

void TestRefreshDataThread::ForgottenTextsAreSentAgain() {
    Bench bench;
    bench.Begin();
    QVERIFY(bench.AwaitRounds(4));
    QCOMPARE(bench.recorder.Count(MemoryUsage), 1);
    bench.thread->ForgetSentTexts();
    QTRY_COMPARE(bench.recorder.Count(MemoryUsage), 2);
    QVERIFY(bench.AwaitRounds(bench.Rounds() + 3));
    QCOMPARE(bench.recorder.Count(MemoryUsage), 2);
}

void TestRefreshDataThread::WithoutAScreenTheLoopCarriesOn() {
    Bench bench;
    bench.panel.Unplug();
    bench.Begin();
    QTRY_VERIFY(bench.recorder.Count(Time) >= 5);
    QCOMPARE(bench.Rounds(), quint64(0));
    bench.panel.Plug();
    QVERIFY(bench.AwaitRounds(2));
}

KIVO_GUILESS_TEST(TestRefreshDataThread)
#include "tst_refresh_data_thread.moc"
