#include <QtTest>

#include <map>

#include "support/test_program.h"
#include "telemetry/source_chooser.h"

using namespace kivo;
using namespace std::chrono_literals;

namespace {

constexpr SourceId kBest = SourceId::PowerCap;
constexpr SourceId kSecond = SourceId::EnergyDriver;
constexpr SourceId kThird = SourceId::CoreTemp;

// Sources that say what the test wants, asked when they are due; every round is a second.
struct Rounds {
    void Round() {
        now += 1s;
        asked.clear();
        for (const auto& [id, reading] : says) {
            if (chooser.IsDue(id, now)) {
                asked.append(int(id));
                chooser.Note(id, reading, load, now);
            }
        }
        shown = chooser.Choose(now);
    }
    void Repeat(int count) {
        for (int i = 0; i < count; ++i) {
            Round();
        }
    }
    void RepeatUntilAsked(SourceId id) {
        do {
            Round();
        } while (!IsAsked(id));
    }
    bool IsAsked(SourceId id) const { return asked.contains(int(id)); }
    void Says(SourceId id, double value) { says[id] = Reading::Of(value, id); }
    // Its value again, and nothing newer.
    void Stands(SourceId id) { says[id].isStanding = true; }
    void IsSilent(SourceId id, ReadingGap gap = ReadingGap::Silent) {
        says[id] = Reading::Without(gap, gap == ReadingGap::NoSource ? SourceId::None : id);
    }

    SourceChooser chooser{{kBest, kSecond, kThird}};
    std::map<SourceId, Reading> says{{kBest, Reading::Without(ReadingGap::NoSource)},
                                     {kSecond, Reading::Without(ReadingGap::NoSource)},
                                     {kThird, Reading::Without(ReadingGap::NoSource)}};
    std::chrono::nanoseconds now{1000s};
    std::optional<int> load = 5;
    QVector<int> asked;
    Reading shown;
};

}  // namespace

class TestSourceChooser : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void BestThatAnswersSpeaksAtOnce() {
        Rounds rounds;
        rounds.Says(kThird, 30);
        rounds.Says(kSecond, 20);
        rounds.Round();
        QVERIFY(rounds.shown == Reading::Of(20, kSecond));
        QVERIFY(rounds.chooser.Speaker() == kSecond);
    }

    void WhoeverAnswersFirstSpeaks() {
        Rounds rounds;
        rounds.IsSilent(kBest, ReadingGap::NotRead);
        rounds.Says(kThird, 30);
        rounds.Round();
        QVERIFY(rounds.shown == Reading::Of(30, kThird));
    }

    void BetterSourceTakesOverAfterThreeSeconds() {
        Rounds rounds;
        rounds.Says(kSecond, 20);
        rounds.Round();
        rounds.Says(kBest, 10);
        rounds.RepeatUntilAsked(kBest);
        rounds.Repeat(2);
        QVERIFY(rounds.shown.source == kSecond);
        rounds.Round();
        QVERIFY(rounds.shown.source == kBest);
    }

    void BetterSourceThatFaltersBeginsAnew() {
        Rounds rounds;
        rounds.Says(kSecond, 20);
        rounds.Round();
        rounds.Says(kBest, 10);
        rounds.RepeatUntilAsked(kBest);
        rounds.Repeat(2);
        rounds.IsSilent(kBest);
        rounds.Round();
        rounds.Says(kBest, 10);
        rounds.RepeatUntilAsked(kBest);
        rounds.Repeat(2);
        QVERIFY(rounds.shown.source == kSecond);
        rounds.Round();
        QVERIFY(rounds.shown.source == kBest);
    }

    void WorseSourceTakesOverAfterTenSeconds() {
        Rounds rounds;
        rounds.Says(kBest, 10);
        rounds.Says(kThird, 30);
        rounds.Round();
        rounds.IsSilent(kBest);
        // Its last value stands meanwhile.
        for (int second = 1; second < 10; ++second) {
            rounds.Round();
            QVERIFY(rounds.shown == Reading::Of(10, kBest));
        }
        rounds.Round();
        QVERIFY(rounds.shown == Reading::Of(30, kThird));
    }

    void SpeakerThatComesBackGoesOn() {
        Rounds rounds;
        rounds.Says(kBest, 10);
        rounds.Says(kSecond, 20);
        rounds.Round();
        for (int again = 0; again < 5; ++again) {
            rounds.IsSilent(kBest);
            rounds.Repeat(9);
            rounds.Says(kBest, 10 + again);
            rounds.Round();
            QVERIFY(rounds.shown == Reading::Of(10 + again, kBest));
        }
    }

    void SpeakerWithoutNewsIsSilentAfterTenSeconds() {
        Rounds rounds;
        rounds.Says(kBest, 10);
        rounds.Says(kThird, 30);
        rounds.Repeat(2);
        rounds.Stands(kBest);
        for (int second = 1; second < 10; ++second) {
            rounds.Round();
            QVERIFY(rounds.shown == Reading::Of(10, kBest));
            QCOMPARE(rounds.IsAsked(kThird), second >= 3);
        }
        rounds.Round();
        QVERIFY(rounds.shown == Reading::Of(30, kThird));
        // It goes on saying so.
        rounds.Repeat(20);
        QVERIFY(rounds.shown == Reading::Of(30, kThird));
    }

    void SpeakerAloneWithoutNewsIsSilent() {
        Rounds rounds;
        rounds.Says(kBest, 10);
        rounds.Round();
        rounds.Stands(kBest);
        rounds.Repeat(10);
        QVERIFY(rounds.shown == Reading::Without(ReadingGap::Silent, kBest));
        rounds.Says(kBest, 11);
        rounds.RepeatUntilAsked(kBest);
        QVERIFY(rounds.shown == Reading::Of(11, kBest));
    }

    // A better source renews its value every other second.
    void StandingNowAndThenIsNoBreak() {
        Rounds rounds;
        rounds.Says(kSecond, 20);
        rounds.Round();
        rounds.Says(kBest, 10);
        rounds.RepeatUntilAsked(kBest);
        rounds.Stands(kBest);
        rounds.Round();
        rounds.Says(kBest, 11);
        rounds.Round();
        QVERIFY(rounds.shown.source == kSecond);
        rounds.Stands(kBest);
        rounds.Round();
        QVERIFY(rounds.shown == Reading::Of(11, kBest));
    }

    void ValueThatOnlyEverStoodIsNone() {
        Rounds rounds;
        rounds.Says(kBest, 10);
        rounds.Stands(kBest);
        rounds.Round();
        QVERIFY(rounds.shown == Reading::Without(ReadingGap::Silent, kBest));
    }

    void OnlyTheSpeakerIsAskedEachSecond() {
        Rounds rounds;
        rounds.Says(kSecond, 20);
        rounds.Says(kThird, 30);
        rounds.Round();
        QVERIFY(rounds.IsAsked(kBest) && rounds.IsAsked(kSecond) && rounds.IsAsked(kThird));
        int probes = 0;
        for (int second = 0; second < 100; ++second) {
            rounds.Round();
            QVERIFY(rounds.IsAsked(kSecond));
            QVERIFY(!rounds.IsAsked(kThird));
            probes += rounds.IsAsked(kBest) ? 1 : 0;
        }
        QCOMPARE(probes, 10);
    }

    void WorseSourcesAreAskedWhileTheSpeakerIsSilent() {
        Rounds rounds;
        rounds.Says(kBest, 10);
        rounds.Round();
        rounds.Round();
        QVERIFY(!rounds.IsAsked(kSecond));
        rounds.IsSilent(kBest);
        rounds.Repeat(2);
        QVERIFY(rounds.IsAsked(kSecond) && rounds.IsAsked(kThird));
        rounds.Says(kBest, 10);
        rounds.Repeat(2);
        QVERIFY(!rounds.IsAsked(kSecond));
    }

    void WhoeverAnswersLaterIsFound() {
        Rounds rounds;
        rounds.Repeat(100);
        int asked = 0;
        for (int second = 0; second < 100; ++second) {
            rounds.Round();
            asked += rounds.asked.size();
        }
        QCOMPARE(asked, 30);
        rounds.Says(kThird, 30);
        rounds.Repeat(10);
        QVERIFY(rounds.shown == Reading::Of(30, kThird));
    }

    void SearchBeginsAnewWhenTheSpeakerIsLost() {
        Rounds rounds;
        rounds.Repeat(30);
        rounds.Says(kBest, 10);
        rounds.RepeatUntilAsked(kBest);
        rounds.Repeat(30);
        rounds.IsSilent(kBest);
        rounds.Repeat(12);
        QVERIFY(rounds.chooser.Speaker() == SourceId::None);
        rounds.Says(kThird, 30);
        rounds.Round();
        QVERIFY(rounds.shown == Reading::Of(30, kThird));
    }

    // It measures between two samples; asked every ten seconds only it would tell the average of ten.
    void SourceThatNeedsAnotherSampleIsAskedAgain() {
        Rounds rounds;
        rounds.Repeat(100);
        rounds.IsSilent(kBest, ReadingGap::NotRead);
        rounds.RepeatUntilAsked(kBest);
        rounds.Round();
        QVERIFY(rounds.IsAsked(kBest));
    }

    void ReasonIsThatOfTheNearest_data() {
        QTest::addColumn<int>("best");
        QTest::addColumn<int>("second");
        QTest::addColumn<int>("reason");
        QTest::addColumn<int>("source");
        const auto row = [](const char* name, ReadingGap best, ReadingGap second, ReadingGap reason,
                            SourceId source) {
            QTest::newRow(name) << int(best) << int(second) << int(reason) << int(source);
        };
        row("nothing there", ReadingGap::NoSource, ReadingGap::NoSource, ReadingGap::NoSource,
            SourceId::None);
        row("no right", ReadingGap::NoRight, ReadingGap::NoSource, ReadingGap::NoRight, kBest);
        row("no right beside what does not run", ReadingGap::NotRunning, ReadingGap::NoRight,
            ReadingGap::NoRight, kSecond);
        row("it runs and hands nothing on", ReadingGap::NotRunning, ReadingGap::NotHandedOn,
            ReadingGap::NotHandedOn, kSecond);
        row("both do not run: the better one", ReadingGap::NotRunning, ReadingGap::NotRunning,
            ReadingGap::NotRunning, kBest);
        row("it cannot be", ReadingGap::NoRight, ReadingGap::Unbelievable, ReadingGap::Unbelievable, kSecond);
        row("not read yet", ReadingGap::NotRead, ReadingGap::NoSource, ReadingGap::NotRead, kBest);
    }
    void ReasonIsThatOfTheNearest() {
        QFETCH(int, best);
        QFETCH(int, second);
        QFETCH(int, reason);
        QFETCH(int, source);
        Rounds rounds;
        rounds.IsSilent(kBest, ReadingGap(best));
        rounds.IsSilent(kSecond, ReadingGap(second));
        rounds.Round();
        QCOMPARE(int(rounds.shown.gap), reason);
        QCOMPARE(int(rounds.shown.source), source);
        QVERIFY(!rounds.shown.value);
    }

    void SourceThatIsGoneHasFallenSilent() {
        Rounds rounds;
        rounds.Says(kBest, 10);
        rounds.Round();
        rounds.IsSilent(kBest, ReadingGap::NoSource);
        rounds.Repeat(10);
        QVERIFY(rounds.shown == Reading::Without(ReadingGap::Silent, kBest));
        QVERIFY(rounds.chooser.Speaker() == SourceId::None);
        rounds.Says(kBest, 11);
        rounds.Repeat(10);
        QVERIFY(rounds.shown == Reading::Of(11, kBest));
    }

    void StrangersAreNotHeard() {
        Rounds rounds;
        QVERIFY(!rounds.chooser.IsDue(SourceId::HwInfo, rounds.now));
        rounds.chooser.Note(SourceId::HwInfo, Reading::Of(1, SourceId::HwInfo), 5, rounds.now);
        rounds.Round();
        QVERIFY(!rounds.shown.value);
    }

    void NobodyIsListed() {
        SourceChooser chooser{{}};
        QVERIFY(chooser.Choose(1s) == Reading::Without(ReadingGap::NoSource));
    }

    void NobodyHasBeenAsked() {
        SourceChooser chooser({kBest});
        QVERIFY(chooser.Choose(1s) == Reading::Without(ReadingGap::NotRead));
    }

    void StuckAfterTenMinutes_data() {
        QTest::addColumn<int>("loadChange");
        QTest::addColumn<int>("seconds");
        QTest::addColumn<bool>("isStuck");
        QTest::newRow("the load changed") << 30 << 600 << true;
        QTest::newRow("not long enough") << 30 << 599 << false;
        QTest::newRow("the load did not change") << 29 << 10000 << false;
    }
    void StuckAfterTenMinutes() {
        QFETCH(int, loadChange);
        QFETCH(int, seconds);
        QFETCH(bool, isStuck);
        Rounds rounds;
        rounds.Says(kBest, 27.8);
        rounds.Round();
        rounds.load = 5 + loadChange;
        rounds.Round();
        rounds.load = 5;
        rounds.Repeat(seconds - 1);
        QCOMPARE(rounds.shown.isStuck, isStuck);
        rounds.Says(kBest, 27.9);
        rounds.Round();
        QVERIFY(!rounds.shown.isStuck);
    }

    void UnknownLoadTellsNothing() {
        StuckWatch watch;
        watch.Note(27.8, std::nullopt, 0s);
        watch.Note(27.8, 50, 1s);
        watch.Note(27.8, std::nullopt, 2s);
        watch.Note(27.8, 50, 700s);
        QVERIFY(!watch.IsStuck());
        watch.Note(27.8, 90, 701s);
        QVERIFY(watch.IsStuck());
    }
};

KIVO_APPLESS_TEST(TestSourceChooser)
#include "tst_source_chooser.moc"
