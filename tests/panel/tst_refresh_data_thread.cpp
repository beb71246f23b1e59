#include <QtTest>
#include <mutex>

#include "../config/log_catcher.h"
#include "panel/refresh_data_thread.h"
#include "support/test_program.h"
#include "telemetry/metric_snapshot.h"

using namespace kivo;
using kivo::test::LogCatcher;

namespace {

// What the thread asked of its renderer: "prepare", "begin", or an item with its text.
using Calls = QStringList;

QString Handed(int item, const QString& text) {
    return QString::number(item) + QLatin1Char(' ') + text;
}

// Takes note of each call; stops the thread at a given one.
class Recorder final : public LiveItemRenderer {
public:
    void Prepare() override { Note(QStringLiteral("prepare")); }
    bool BeginRound() override {
        Note(QStringLiteral("begin"));
        return isPanelThere;
    }
    bool RenderLiveItem(const QString& text, int item) override {
        Note(Handed(item, text));
        return isTextOwed;
    }

    Calls Taken() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        // A copy of its own: Qt would share the list, and the sanitizer cannot see how Qt counts its owners.
        Calls taken;
        for (const QString& call : m_calls) {
            taken.append(call);
        }
        return taken;
    }
    int Count(const QString& start) const {
        int count = 0;
        const Calls taken = Taken();
        for (const QString& call : taken) {
            count += call.startsWith(start) ? 1 : 0;
        }
        return count;
    }

    std::atomic<bool> isPanelThere{true};
    std::atomic<bool> isTextOwed{true};
    QString stopAt;
    RefreshDataThread* thread = nullptr;

private:
    void Note(const QString& call) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_calls.append(call);
        if (thread != nullptr && call == stopAt) {
            thread->isStop = 1;
        }
    }

    mutable std::mutex m_mutex;
    Calls m_calls;
};

// A counter that always says the same load.
class SteadyCounter final : public CpuCounter {
public:
    SteadyCounter(double percent, quint32 status) : m_percent(percent), m_status(status) {}
    CpuRawSample Collect() override {
        CpuRawSample sample;
        sample.status = m_status;
        return sample;
    }
    double Calculate(const CpuRawSample&, const CpuRawSample&) override { return m_percent; }

private:
    const double m_percent;
    const quint32 m_status;
};

// Everything a refresh thread needs, with values that stand still. None of them looks like its sample.
struct Bench {
    int memoryLoad = 33;
    double cpuLoad = 42.9;
    quint32 cpuStatus = 0;
    std::chrono::nanoseconds awake{0};
    LocalTime now{QDate(2026, 11, 21), QTime(9, 5)};
    MetricSnapshot snapshot;
    Recorder recorder;
    RefreshDataThread thread;

    explicit Bench(RefreshDataThread::Pauses pauses = {std::chrono::milliseconds(2),
                                                       std::chrono::milliseconds(0)},
                   InterfaceLanguage language = InterfaceLanguage::Chinese)
        : snapshot(language,
                   {[this] { return now; }, [this] { return memoryLoad; }, [this] { return awake; }}),
          thread({recorder, snapshot, language,
                  [this] { return std::make_unique<SteadyCounter>(cpuLoad, cpuStatus); }, pauses}) {
        recorder.thread = &thread;
        snapshot.SetCpuPowClock(20, 60);
    }
    explicit Bench(InterfaceLanguage language)
        : Bench({std::chrono::milliseconds(2), std::chrono::milliseconds(0)}, language) {}

    // The calls of the next round, turned by hand.
    Calls Round() {
        const int before = recorder.Taken().size();
        thread.Round();
        return recorder.Taken().mid(before);
    }
    bool AwaitRounds(int count) {
        return QTest::qWaitFor([&] { return recorder.Count(QStringLiteral("begin")) >= count; }, 5000);
    }
};

const QString kBegin = QStringLiteral("begin");
const QString kTime = Handed(Time, QStringLiteral("09:05"));
const QString kDate = Handed(Date, QStringLiteral("2026.11.21"));

}  // namespace

// The refresh thread's rounds, seen from the renderer it hands everything to.
class TestRefreshDataThread : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void RoundHandsOverEveryValueInItsOrder();
    void SampleLookalikeWaitsForTheSecondRound();
    void TimeAndDateGoOutThoughTheyLookLikeTheirSamples();
    void RussianSamplesAreHeldBackToo();
    void FirstSampleOfTheLoadIsNotShown();
    void KnownLoadIsNotReplacedByTheFirstSample();
    void CounterThatCannotBeReadIsNoLoadInTheEnd();
    void WithoutAPanelTheLoadIsStillSampled();
    void WithoutAPanelTheFirstRoundIsOverToo();

    void PreparesOnceBeforeTheFirstRound();
    void RoundsGoOnUntilStopped();
    void StopInARoundEndsBeforeTheNextValue();
    void StopWhilePreparingBeginsNoRound();
    void StopBeforeTheStartDoesNothing();
    void StopCutsThePauseShort_data();
    void StopCutsThePauseShort();
    void OnlyAnOwedTextIsPausedFor();
    void PausesAreThose();
};

void TestRefreshDataThread::RoundHandsOverEveryValueInItsOrder() {
    Bench bench;
    // Utilisation is 0 in the first round, which shows as 1. The free texts have no value, as their samples.
    QCOMPARE(
        bench.Round(),
        (Calls{kBegin, Handed(CpuTemperature, QStringLiteral("60℃")), Handed(CpuUsage, QStringLiteral("1%")),
               Handed(MemoryUsage, QStringLiteral("33%")), kTime, Handed(CpuPower, QStringLiteral("20w")),
               kDate, Handed(FanSpeed, QStringLiteral("2000"))}));
    // Unchanged ones too: what is owed is the renderer's business.
    const Calls second = bench.Round();
    QCOMPARE(second.size(), 1 + kLiveValueCount);
    QCOMPARE(second.at(1 + CpuUsage), Handed(CpuUsage, QStringLiteral("42%")));
    QCOMPARE(bench.Round(), second);
}

void TestRefreshDataThread::SampleLookalikeWaitsForTheSecondRound() {
    Bench bench;
    bench.memoryLoad = 20;                  // the memory's sample
    bench.snapshot.SetCpuPowClock(20, 45);  // the temperature's, and a fan of 1000
    const Calls lookalikes{Handed(CpuTemperature, QStringLiteral("45℃")),
                           Handed(MemoryUsage, QStringLiteral("20%")),
                           Handed(FanSpeed, QStringLiteral("1000"))};
    const Calls first = bench.Round();
    const Calls second = bench.Round();
    for (const QString& call : lookalikes) {
        QVERIFY2(!first.contains(call), qUtf8Printable(call));
        QVERIFY2(second.contains(call), qUtf8Printable(call));
    }
    QVERIFY(first.contains(Handed(CpuPower, QStringLiteral("20w"))));
}

void TestRefreshDataThread::TimeAndDateGoOutThoughTheyLookLikeTheirSamples() {
    Bench bench;
    bench.now = {QDate(2019, 12, 21), QTime(18, 46)};
    const Calls first = bench.Round();
    QVERIFY(first.contains(Handed(Time, QStringLiteral("18:46"))));
    QVERIFY(first.contains(Handed(Date, QStringLiteral("2019.12.21"))));
}

void TestRefreshDataThread::RussianSamplesAreHeldBackToo() {
    Bench bench(InterfaceLanguage::Russian);
    bench.snapshot.SetCpuPowClock(15, 60);  // the power's sample
    const Calls first = bench.Round();
    QVERIFY(!first.contains(Handed(CpuPower, QStringLiteral("15Вт"))));
    QVERIFY(first.contains(Handed(Date, QStringLiteral("21.11.2026"))));
    QVERIFY(bench.Round().contains(Handed(CpuPower, QStringLiteral("15Вт"))));
}

void TestRefreshDataThread::FirstSampleOfTheLoadIsNotShown() {
    Bench bench;
    bench.Round();
    QCOMPARE(bench.snapshot.CpuUsed(), 0);
    bench.Round();
    QCOMPARE(bench.snapshot.CpuUsed(), 42);
}

void TestRefreshDataThread::KnownLoadIsNotReplacedByTheFirstSample() {
    Bench bench;
    bench.snapshot.SetCpuUsed(37);
    QVERIFY(bench.Round().contains(Handed(CpuUsage, QStringLiteral("37%"))));
    QVERIFY(bench.Round().contains(Handed(CpuUsage, QStringLiteral("42%"))));
}

void TestRefreshDataThread::CounterThatCannotBeReadIsNoLoadInTheEnd() {
    Bench bench;
    bench.Round();
    bench.Round();
    QCOMPARE(bench.snapshot.GetValueText(CpuUsage), QStringLiteral("42%"));
    bench.cpuStatus = kCpuSampleNoData;
    bench.cpuLoad = 0.0;
    bench.Round();
    QCOMPARE(bench.snapshot.GetValueText(CpuUsage), QStringLiteral("1%"));
    bench.awake += std::chrono::seconds(10);
    bench.Round();
    QCOMPARE(bench.snapshot.GetValueText(CpuUsage), QStringLiteral("--%"));
    bench.cpuStatus = 0;
    bench.cpuLoad = 17.0;
    bench.Round();
    QCOMPARE(bench.snapshot.GetValueText(CpuUsage), QStringLiteral("17%"));
}

void TestRefreshDataThread::WithoutAPanelTheLoadIsStillSampled() {
    Bench bench;
    bench.recorder.isPanelThere = false;
    QCOMPARE(bench.Round(), Calls{kBegin});
    QCOMPARE(bench.Round(), Calls{kBegin});
    QCOMPARE(bench.snapshot.CpuUsed(), 42);
    bench.recorder.isPanelThere = true;
    QCOMPARE(bench.Round().size(), 1 + kLiveValueCount);
}

void TestRefreshDataThread::WithoutAPanelTheFirstRoundIsOverToo() {
    Bench bench;
    bench.memoryLoad = 20;  // the memory's sample
    bench.recorder.isPanelThere = false;
    bench.Round();
    bench.recorder.isPanelThere = true;
    QVERIFY(bench.Round().contains(Handed(MemoryUsage, QStringLiteral("20%"))));
}

void TestRefreshDataThread::PreparesOnceBeforeTheFirstRound() {
    Bench bench;
    bench.thread.start();
    QVERIFY(bench.AwaitRounds(3));
    bench.thread.stop();
    QVERIFY(bench.thread.wait(5000));
    QCOMPARE(bench.recorder.Taken().first(), QStringLiteral("prepare"));
    QCOMPARE(bench.recorder.Count(QStringLiteral("prepare")), 1);
}

void TestRefreshDataThread::RoundsGoOnUntilStopped() {
    Bench bench;
    bench.recorder.isPanelThere = false;
    bench.thread.start();
    QVERIFY(bench.AwaitRounds(5));
    QCOMPARE(bench.recorder.Count(kTime), 0);
    // A panel that comes gets its texts with the next round.
    bench.recorder.isPanelThere = true;
    QTRY_VERIFY(bench.recorder.Count(kTime) >= 3);
    bench.recorder.isPanelThere = false;
    QVERIFY(bench.AwaitRounds(bench.recorder.Count(kBegin) + 2));
    const int count = bench.recorder.Count(kTime);
    QVERIFY(bench.AwaitRounds(bench.recorder.Count(kBegin) + 3));
    QCOMPARE(bench.recorder.Count(kTime), count);
}

void TestRefreshDataThread::StopInARoundEndsBeforeTheNextValue() {
    Bench bench;
    bench.recorder.stopAt = Handed(MemoryUsage, QStringLiteral("33%"));
    const LogCatcher log;
    bench.thread.start();
    QVERIFY(bench.thread.wait(5000));
    QCOMPARE(log.lines(), QStringList{QStringLiteral("isStop.\n")});
    QCOMPARE(bench.recorder.Taken().last(), bench.recorder.stopAt);
    QCOMPARE(bench.recorder.Count(kBegin), 1);
}

void TestRefreshDataThread::StopWhilePreparingBeginsNoRound() {
    Bench bench;
    bench.recorder.stopAt = QStringLiteral("prepare");
    const LogCatcher log;
    bench.thread.start();
    QVERIFY(bench.thread.wait(5000));
    QCOMPARE(bench.recorder.Taken(), Calls{QStringLiteral("prepare")});
}

void TestRefreshDataThread::StopBeforeTheStartDoesNothing() {
    Bench bench;
    const LogCatcher log;
    bench.thread.stop();
    bench.thread.start();
    QVERIFY(bench.thread.wait(5000));
    QVERIFY(bench.recorder.Taken().isEmpty());
    QCOMPARE(log.lines(), QStringList{QStringLiteral("isStop.\n")});
}

void TestRefreshDataThread::StopCutsThePauseShort_data() {
    QTest::addColumn<bool>("afterValue");
    QTest::newRow("after a value") << true;
    QTest::newRow("after a round") << false;
}

void TestRefreshDataThread::StopCutsThePauseShort() {
    QFETCH(bool, afterValue);
    constexpr std::chrono::hours kLong{1};
    constexpr std::chrono::hours kNone{0};
    Bench bench({afterValue ? kNone : kLong, afterValue ? kLong : kNone});
    const QString last =
        afterValue ? Handed(CpuTemperature, QStringLiteral("60℃")) : Handed(FanSpeed, QStringLiteral("2000"));
    bench.thread.start();
    QTRY_COMPARE(bench.recorder.Count(last), 1);
    bench.thread.stop();
    QVERIFY(bench.thread.wait(5000));
    QCOMPARE(bench.recorder.Taken().last(), last);
}

void TestRefreshDataThread::OnlyAnOwedTextIsPausedFor() {
    Bench bench({std::chrono::milliseconds(1), std::chrono::hours(1)});
    bench.recorder.isTextOwed = false;
    bench.thread.start();
    QVERIFY(bench.AwaitRounds(3));
    bench.thread.stop();
    QVERIFY(bench.thread.wait(5000));
}

void TestRefreshDataThread::PausesAreThose() {
    const RefreshDataThread::Pauses pauses;
    QCOMPARE(int(pauses.afterRound.count()), 500);
    QCOMPARE(int(pauses.afterValue.count()), 10);
}

KIVO_GUILESS_TEST(TestRefreshDataThread)
#include "tst_refresh_data_thread.moc"
