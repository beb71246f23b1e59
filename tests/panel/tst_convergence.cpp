// Whatever happens to the program and its panel: once it stops happening, the panel shows what was applied.
//
// Sequences are drawn at random, each from its seed. KIVO_SEED plays one again, KIVO_SEQUENCES says how many
// are played (from KIVO_SEED on). The dev build plays 1 to 500; each other build plays a hundred of its own.

#include <QFile>
#include <QtTest>
#include <limits>

#include "../compose/compose_test_support.h"
#include "random_states.h"
#include "simulated_desk.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kFirstSeed = 1;
constexpr int kSequences = 500;
constexpr int kFewestSteps = 30;
constexpr int kMostSteps = 50;
constexpr int kRoundsToConverge = 240;  // two minutes
constexpr int kQuietRounds = 10;
constexpr int kMostTold = 5;  // of the sequences that differ

enum class Step {
    Rounds,
    Measure,
    MeasureAndBack,
    Apply,
    ApplyAndBack,
    Unplug,
    Plug,
    Replug,
    OtherPanel,
    KeyboardAtNode,
    SleepAndWake,
    PanelRestarts,
    LateNews,
    RefuseChunk,
    RefuseOrientation,
    RefuseClock,
    RefuseTimeShow,
    RefuseArea,
    RefuseAll,
    RefuseOpening,
    Hang,
    EndFaults,
    LosePicture,
    DamagePicture,
    DamageMemory,
    Restart,
    Kill,
    SoftwarePanel,
};

struct WeighedStep {
    Step step;
    int weight;
    const char* name;
};
constexpr std::array<WeighedStep, 28> kSteps{{
    {Step::Rounds, 25, "rounds"},
    {Step::Measure, 8, "other values"},
    {Step::MeasureAndBack, 3, "other values in vain and back"},
    {Step::Apply, 12, "apply"},
    {Step::ApplyAndBack, 3, "apply and back in vain"},
    {Step::Unplug, 4, "unplug"},
    {Step::Plug, 8, "plug"},
    {Step::Replug, 6, "replug"},
    {Step::OtherPanel, 3, "other panel"},
    {Step::KeyboardAtNode, 1, "keyboard at the node"},
    {Step::SleepAndWake, 4, "sleep and wake"},
    {Step::PanelRestarts, 2, "the panel restarts"},
    {Step::LateNews, 4, "late news"},
    {Step::RefuseChunk, 4, "refuse a chunk"},
    {Step::RefuseOrientation, 2, "refuse the orientation"},
    {Step::RefuseClock, 2, "refuse the clock"},
    {Step::RefuseTimeShow, 2, "refuse the time show"},
    {Step::RefuseArea, 3, "refuse an area"},
    {Step::RefuseAll, 1, "refuse everything"},
    {Step::RefuseOpening, 1, "refuse to be opened"},
    {Step::Hang, 2, "hang"},
    {Step::EndFaults, 8, "end the faults"},
    {Step::LosePicture, 1, "delete whole.png"},
    {Step::DamagePicture, 2, "damage whole.png"},
    {Step::DamageMemory, 1, "damage whole.state"},
    {Step::Restart, 3, "restart"},
    {Step::Kill, 4, "kill"},
    {Step::SoftwarePanel, 1, "software panel"},
}};

int TotalWeight() {
    int total = 0;
    for (const WeighedStep& step : kSteps) {
        total += step.weight;
    }
    return total;
}

// One random sequence of steps at a desk of its own.
class Sequence {
public:
    Sequence(quint32 seed, const RandomStates& states)
        : m_random(seed), m_states(states), m_options(DrawOptions()), m_desk(m_options) {}

    // What is wrong at the end; empty for nothing.
    QByteArray Play() {
        for (int left = Below(kFewestSteps, kMostSteps); left > 0; --left) {
            Take(DrawStep());
        }
        // Much is made good by whatever comes after it.
        if (OneIn(4)) {
            MeasureAndBack();
        }
        m_desk.EndAllTrouble();
        const QByteArray wrong = Converge();
        return wrong.isEmpty() ? m_desk.LeftBehind() : wrong;
    }

    QByteArray Steps() const { return m_taken.join(", "); }

private:
    using Moment = FaultyWire::Moment;
    using News = SimulatedDesk::News;
    using Power = SimulatedDesk::Power;
    using NodeNumbers = VirtualHidApi::NodeNumbers;

    int Below(int end) { return m_random.bounded(end); }
    int Below(int first, int end) { return m_random.bounded(first, end); }
    bool OneIn(int chances) { return Below(chances) == 0; }

    SimulatedDesk::Options DrawOptions() {
        SimulatedDesk::Options options;
        options.language = kLanguages[size_t(Below(3))];
        options.start.time = OneIn(5) ? QTime(23, 58, 30) : QTime(Below(24), Below(60), Below(60));
        options.panelsShowParts = OneIn(2);
        options.panelsHaveKeys = !OneIn(5);
        options.nodesHaveStamps = options.panelsHaveKeys || OneIn(2);
        options.settings = m_states.Draw(m_random, options.language);
        return options;
    }

    // Mostly one of a few, as people go back to what they had.
    const ScreenState& DrawState() {
        constexpr std::size_t kFavourites = 4;
        if (m_favourites.size() < kFavourites) {
            m_favourites.push_back(m_states.Draw(m_random, m_options.language));
            return m_favourites.back();
        }
        ScreenState& favourite = m_favourites[std::size_t(Below(kFavourites))];
        if (OneIn(5)) {
            favourite = m_states.Draw(m_random, m_options.language);
        }
        return favourite;
    }

    const WeighedStep& DrawStep() {
        static const int total = TotalWeight();
        int left = Below(total);
        const auto* step = kSteps.begin();
        while (left >= step->weight) {
            left -= step->weight;
            ++step;
        }
        return *step;
    }

    // Where nodes have no stamps, nothing but the news tells of a panel that was gone for a moment.
    News DrawNews() {
        return m_options.nodesHaveStamps && OneIn(4) ? News::Lost : OneIn(4) ? News::Late : News::AtOnce;
    }
    Power DrawPower() { return OneIn(4) ? Power::Kept : Power::Cut; }
    NodeNumbers DrawNumbers() {
        return m_options.nodesHaveStamps && OneIn(5) ? NodeNumbers::Swapped
               : OneIn(5)                            ? NodeNumbers::New
                                                     : NodeNumbers::Same;
    }

    // In the middle of what the program does next; an upload takes some 60 moments, a round some 8.
    void Midway(const std::function<void(Moment)>& act) {
        m_taken.last() += " midway";
        if (OneIn(3)) {  // few moments are those of a command
            const auto kind = OneIn(3) ? PanelReportKind::TimeShow : PanelReportKind::Orientation;
            m_desk.Wire().AfterReportOf(kind, Below(1, 4), act);
            return;
        }
        m_desk.Wire().AtMoment(OneIn(2) ? Below(1, 12) : Below(1, 80), act);
    }
    void NowOrMidway(const std::function<void(Moment)>& act) {
        if (OneIn(2)) {
            Midway(act);
        } else {
            act(Moment::AfterReport);
        }
    }
    // While a node is being opened, the thread that brings the news waits.
    static News At(Moment moment, News news) {
        return moment == Moment::Opening && news == News::AtOnce ? News::Late : news;
    }

    // Some faults are over soon, some stay until they are ended.
    int DrawTimes() { return OneIn(3) ? std::numeric_limits<int>::max() : Below(1, 4); }

    // Some of what the program is told was refused has arrived.
    void Refuse(PanelReportKind kind, int chunk = 0) {
        m_desk.Wire().Refuse({kind, chunk, DrawTimes(), false, OneIn(3)});
    }

    void Overwrite(const char* file, const QByteArray& bytes) const {
        QFile damaged(m_desk.File(file));
        if (!damaged.open(QIODevice::WriteOnly) || damaged.write(bytes) != bytes.size()) {
            qFatal("%s cannot be damaged.", file);
        }
    }
    QByteArray Contents(const char* file) const {
        QFile whole(m_desk.File(file));
        return whole.open(QIODevice::ReadOnly) ? whole.readAll() : QByteArray();
    }

    void Take(const WeighedStep& drawn) {
        m_taken.append(drawn.name);
        switch (drawn.step) {
            case Step::Rounds:
                return m_desk.Rounds(OneIn(20) ? Below(60, 150) : Below(1, 6));
            case Step::Measure:
                return Measure();
            case Step::MeasureAndBack:
                return MeasureAndBack();
            case Step::Apply:
                return Apply();
            case Step::ApplyAndBack:
                return ApplyAndBack();
            case Step::Unplug:
                return NowOrMidway([this, power = DrawPower(), news = DrawNews()](Moment moment) {
                    m_desk.Unplug(power, At(moment, news));
                });
            case Step::Plug:
                return m_desk.Plug(DrawNumbers(), DrawNews());
            case Step::Replug:
                return NowOrMidway(
                    [this, power = DrawPower(), news = DrawNews(), numbers = DrawNumbers()](Moment moment) {
                        m_desk.Unplug(power, At(moment, news));
                        m_desk.Plug(numbers, At(moment, news));
                    });
            case Step::OtherPanel:
                return NowOrMidway(
                    [this, power = DrawPower(), news = DrawNews(), numbers = DrawNumbers()](Moment moment) {
                        m_desk.SwapPanels(power, numbers, At(moment, news));
                    });
            case Step::KeyboardAtNode:
                return m_desk.GiveNodeToKeyboard();
            case Step::SleepAndWake:
                return Sleep();
            case Step::PanelRestarts:
                return m_desk.RestartPanel(Below(1, 20));
            case Step::LateNews:
                return m_desk.TellLateNews();
            case Step::RefuseChunk:
                return Refuse(PanelReportKind::Chunk, Below(1, kChunkCount + 1));
            case Step::RefuseOrientation:
                return Refuse(PanelReportKind::Orientation);
            case Step::RefuseClock:
                return Refuse(PanelReportKind::TimeSync);
            case Step::RefuseTimeShow:
                return Refuse(PanelReportKind::TimeShow);
            case Step::RefuseArea:
                return Refuse(PanelReportKind::Area);
            case Step::RefuseAll:
                return Refuse(PanelReportKind::Invalid);
            case Step::RefuseOpening:
                return OneIn(2) ? m_desk.FailOpenings() : m_desk.DenyOpenings();
            case Step::Hang:
                return m_desk.Wire().Refuse({PanelReportKind::Invalid, 0, Below(1, 3), true, OneIn(2)});
            case Step::EndFaults:
                return m_desk.ClearFaults();
            case Step::LosePicture:
                QFile::remove(m_desk.File("whole.png"));
                return;
            case Step::DamagePicture:
                return DamagePicture();
            case Step::DamageMemory:
                return Overwrite("whole.state", OneIn(2) ? QByteArray("KivoPanel 1\npanel ")
                                                         : Contents("whole.state").left(Below(60)));
            case Step::Restart:
                return m_desk.Restart(SimulatedDesk::ProgramEnd::Quit);
            case Step::Kill:
                return OneIn(2) ? m_desk.Restart(SimulatedDesk::ProgramEnd::Killed)
                                : Midway([](Moment) { SimulatedDesk::KillNow(); });
            case Step::SoftwarePanel:
                return m_desk.UseSoftwarePanel(OneIn(2) ? std::optional(DrawState()) : std::nullopt,
                                               Below(4));
        }
    }

    void Measure() { m_desk.measured = {Below(110), Below(200), Below(101), double(Below(-5, 150))}; }

    // Values that the panel may have taken or not, and then those of before again.
    void MeasureAndBack() {
        const Measured former = m_desk.measured;
        m_desk.Wire().Refuse({PanelReportKind::Area, 0, Below(1, 8), false, OneIn(2)});
        Measure();
        m_desk.Rounds(1);
        m_desk.measured = former;
    }

    // Somebody wants another picture, sees nothing of it, and takes back the one that is there, which some of
    // the other may lie over by now.
    void ApplyAndBack() {
        const ScreenState former = m_desk.Settings();
        const int chunk = OneIn(3) ? 1 : Below(2, kChunkCount + 1);
        m_desk.Wire().Refuse({PanelReportKind::Chunk, chunk, 1, false, OneIn(2)});
        Refuse(PanelReportKind::Chunk, chunk);
        m_desk.Apply(DrawState(), {});
        m_desk.Apply(former, {});
        if (OneIn(2)) {
            m_desk.Restart(OneIn(2) ? SimulatedDesk::ProgramEnd::Quit : SimulatedDesk::ProgramEnd::Killed);
        }
    }

    // Sometimes the same once more, as people do who see no change.
    void Apply() {
        SimulatedDesk::ApplyPlan plan;
        if (OneIn(10)) {
            plan.killedAfter = SimulatedDesk::ApplyPart(Below(4));
        }
        if (OneIn(5)) {
            plan.lateItem = Below(kLiveValueCount);
        }
        m_desk.Apply(OneIn(4) ? m_desk.Settings() : DrawState(), plan);
    }

    // A panel that loses its power in the middle of a frame, at a node that stays, takes the rest of it and
    // shows none of it. Only the wake-up tells, so there it is told at once.
    void Sleep() {
        const std::chrono::minutes time(Below(1, 600));
        const Power power = DrawPower();
        if (OneIn(2)) {
            m_desk.SleepAndWake(time, power, OneIn(3) ? News::Late : News::AtOnce);
            return;
        }
        Midway([this, time, power](Moment) { m_desk.SleepAndWake(time, power, News::AtOnce); });
    }

    // The last kind is a picture of the right size, even with the right mark, and still not the one.
    void DamagePicture() {
        const QByteArray bytes = Contents("whole.png");
        QImage image = QImage::fromData(bytes);
        if (image.isNull() || OneIn(4)) {
            Overwrite("whole.png", "no picture");
        } else if (OneIn(2)) {
            Overwrite("whole.png", bytes.left(bytes.size() / 2));
        } else {
            const QPoint at(Below(image.width()), Below(image.height()));
            image.setPixelColor(at, image.pixelColor(at) == Qt::red ? Qt::blue : Qt::red);
            image.save(m_desk.File("whole.png"), "PNG");
        }
    }

    // Looks after 1, 2, 4, ... rounds, so that most sequences need not take their two minutes.
    QByteArray Converge() {
        QByteArray wrong;
        int rounds = 0;
        for (int until = 1; rounds < kRoundsToConverge; until = std::min(2 * until, kRoundsToConverge)) {
            m_desk.Rounds(std::max(until - rounds, 0));
            rounds = std::max(until, rounds);
            wrong = m_desk.Difference();
            if (wrong.isEmpty()) {
                wrong = StayQuiet();
                rounds += kQuietRounds;
            }
            if (wrong.isEmpty()) {
                return {};
            }
        }
        return wrong;
    }

    // Nothing is sent that a round in which nothing happens does not need.
    QByteArray StayQuiet() {
        QByteArray wrong;
        for (int round = 0; round < kQuietRounds; ++round) {
            m_desk.Wire().StartRecording();
            m_desk.Rounds(1);
            for (const PanelReport& report : m_desk.Wire().StopRecording()) {
                if (!m_desk.IsRoutine(report)) {
                    wrong =
                        "a report of kind " + QByteArray::number(int(report.kind)) + " is sent for nothing";
                }
            }
        }
        const QByteArray difference = m_desk.Difference();
        return difference.isEmpty() ? wrong : difference + " after quiet rounds";
    }

    QRandomGenerator m_random;
    const RandomStates& m_states;
    const SimulatedDesk::Options m_options;
    SimulatedDesk m_desk;
    std::vector<ScreenState> m_favourites{m_options.settings};
    QByteArrayList m_taken;
};

int NumberFrom(const char* variable, int otherwise) {
    return qEnvironmentVariableIsSet(variable) ? qEnvironmentVariableIntValue(variable) : otherwise;
}

}  // namespace

class ConvergenceTest : public QObject {
    Q_OBJECT

public:
    // Qt's own limit is meant for short tests; the time limit of the test program holds.
    static void initMain() { qputenv("QTEST_FUNCTION_TIMEOUT", "86400000"); }

private Q_SLOTS:
    void initTestCase() {
        SetUpDrawing();
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    }

    // Somebody changes their mind while the panel takes no frame. It shows the right one all along, but part
    // of the other may lie over it: the program says that it tries again until it did, a minute later at
    // most.
    void frameInDoubtIsToldOfUntilItIsTakenOnceMore() {
        constexpr int kRoundsAMinute = 120;
        SimulatedDesk::Options options;
        options.settings = ThemeScreen(Theme::Default, Orientation::Landscape);
        SimulatedDesk desk(options);
        desk.Rounds(2);
        QCOMPARE(desk.Difference(), QByteArray());

        desk.Wire().Refuse({PanelReportKind::Chunk, 1, std::numeric_limits<int>::max()});
        desk.Apply(ThemeScreen(Theme::Time, Orientation::Landscape), {});
        desk.Apply(options.settings, {});
        desk.Rounds(kRoundsAMinute / 2);
        desk.EndAllTrouble();
        desk.Rounds(kRoundsAMinute / 4);
        QCOMPARE(desk.Difference(),
                 "the status tells of trouble, " + QByteArray::number(int(PanelCondition::TryingAgain)));

        desk.Rounds(kRoundsAMinute * 3 / 4);
        QCOMPARE(desk.Difference(), QByteArray());
        QCOMPARE(desk.LeftBehind(), QByteArray());
    }

    void panelShowsWhatWasAppliedOnceTheTroubleIsOver() {
        const int first = NumberFrom("KIVO_SEED", kFirstSeed);
        const int count =
            NumberFrom("KIVO_SEQUENCES", qEnvironmentVariableIsSet("KIVO_SEED") ? 1 : kSequences);
        const RandomStates states;
        const LogLines quiet;
        int differing = 0;
        QByteArray differences;
        for (int seed = first; seed < first + count; ++seed) {
            LogLines::Lines().clear();
            Sequence sequence(quint32(seed), states);
            const QByteArray wrong = sequence.Play();
            if (!wrong.isEmpty() && ++differing <= kMostTold) {
                differences +=
                    "\nKIVO_SEED=" + QByteArray::number(seed) + ": " + wrong + ", after " + sequence.Steps();
            }
        }
        const QByteArray summary =
            QByteArray::number(differing) + " of " + QByteArray::number(count) + " sequences differ.";
        fprintf(stdout, "%s%s\n", summary.constData(), differences.constData());
        QVERIFY2(differing == 0, summary.constData());
    }
};

KIVO_TEST(ConvergenceTest)
#include "tst_convergence.moc"
