// A program that runs for days: with a fault an hour it takes no more of the system than after its first
// hour, and every fault is made good. KIVO_ROUNDS=172800 is a whole day.

#include <QThreadPool>
#include <QtTest>

#include "../compose/compose_test_support.h"
#include "process_use.h"
#include "random_states.h"
#include "simulated_desk.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kRoundsAnHour = 7200;
constexpr int kRounds = 3 * kRoundsAnHour;
constexpr qint64 kMostGrowth = 1024 * 1024;  // what caches still learn

using News = SimulatedDesk::News;
using Power = SimulatedDesk::Power;
using NodeNumbers = VirtualHidApi::NodeNumbers;

class Day {
public:
    // Every screen has been shown before the first hour: what pictures and letters leave in caches is no
    // growth.
    Day() : m_random(1), m_desk(Options()) {
        for (std::size_t k = 0; k < m_screens.size(); ++k) {
            Apply();
            Turn(1);
        }
    }

    // An hour with this fault in it; what is wrong at its end, empty for nothing.
    QByteArray Hour(int fault) {
        Apply();
        Turn(kRoundsAnHour / 3);
        Begin(fault);
        Turn(kRoundsAnHour / 3);
        m_desk.EndAllTrouble();
        Turn(kRoundsAnHour / 3);
        const QByteArray difference = m_desk.Difference();
        return difference.isEmpty() ? m_desk.LeftBehind() : difference;
    }

    // A theme's skin and its glass take a megabyte or a quarter of it, in the program and in what it is held
    // against, and stay while a custom layout is shown: what is measured has the same one in both.
    QByteArray ShowDefaultTheme() {
        m_desk.Apply(ThemeScreen(Theme::Default, Orientation::Landscape), {});
        Turn(kRoundsAnHour / 60);
        return m_desk.Difference();
    }

private:
    SimulatedDesk::Options Options() {
        SimulatedDesk::Options options;
        for (ScreenState& screen : m_screens) {
            screen = m_states.Draw(m_random, options.language);
        }
        options.settings = m_screens.front();
        return options;
    }

    // Values move as they do on a computer in use.
    void Turn(int rounds) {
        for (int k = 0; k < rounds; ++k) {
            m_desk.measured = {40 + m_random.bounded(20), 10 + m_random.bounded(30), 50 + m_random.bounded(3),
                               double(m_random.bounded(100))};
            m_desk.Rounds(1);
        }
    }

    // One screen after the other.
    void Apply() { m_desk.Apply(m_screens[m_applied++ % m_screens.size()], {}); }

    void Begin(int fault) {
        constexpr int kForAWhile = 100;
        switch (fault % 8) {
            case 0:
                m_desk.Unplug(Power::Cut, News::AtOnce);
                return m_desk.Plug(NodeNumbers::New, News::AtOnce);
            case 1:
                m_desk.Wire().Refuse({PanelReportKind::Chunk, 14, 4, false});
                return Apply();
            case 2:
                return m_desk.Wire().Refuse({PanelReportKind::Invalid, 0, kForAWhile, true});
            case 3:
                return m_desk.SleepAndWake(std::chrono::hours(8), Power::Cut, News::AtOnce);
            case 4:
                QFile::remove(m_desk.File("whole.png"));
                return;
            case 5:
                return m_desk.SwapPanels(Power::Cut, NodeNumbers::Swapped, News::AtOnce);
            case 6:
                return m_desk.Wire().Refuse({PanelReportKind::Area, 0, kForAWhile, false});
            default:
                return m_desk.Unplug(Power::Cut, News::Lost);
        }
    }

    QRandomGenerator m_random;
    const RandomStates m_states;
    std::array<ScreenState, 6> m_screens;
    std::size_t m_applied = 0;
    SimulatedDesk m_desk;
};

// Without the threads of Qt's own pool, which help with large pictures and end when they had nothing to do
// for half a minute.
ProcessUse Measure() {
    QThreadPool::globalInstance()->waitForDone();
    return MeasureProcess();
}

QByteArray Describe(const ProcessUse& use) {
    return QByteArray::number(use.memoryBytes / 1024) + " KB, " + QByteArray::number(use.handles) +
           " handles, " + QByteArray::number(use.threads) + " threads";
}

}  // namespace

class DayOfRoundsTest : public QObject {
    Q_OBJECT

public:
    // Qt's own limit is meant for short tests; the time limit of the test program holds.
    static void initMain() { qputenv("QTEST_FUNCTION_TIMEOUT", "86400000"); }

private Q_SLOTS:
    void initTestCase() {
        SetUpDrawing();
        QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    }

    void takesNoMoreThanAfterTheFirstHour() {
        const int rounds =
            qEnvironmentVariableIsSet("KIVO_ROUNDS") ? qEnvironmentVariableIntValue("KIVO_ROUNDS") : kRounds;
        Day day;
        ProcessUse first;
        for (int hour = 0; hour * kRoundsAnHour < rounds; ++hour) {
            const QByteArray wrong = day.Hour(hour);
            QVERIFY2(wrong.isEmpty(), wrong.constData());
            if (hour == 0) {
                QCOMPARE(day.ShowDefaultTheme(), QByteArray());
                first = Measure();
            }
        }
        QCOMPARE(day.ShowDefaultTheme(), QByteArray());
        const ProcessUse last = Measure();
        const QByteArray told =
            "after the first hour: " + Describe(first) + "; at the end: " + Describe(last);
        fprintf(stdout, "%d rounds, %s\n", rounds, told.constData());
        QVERIFY2(last.memoryBytes - first.memoryBytes <= kMostGrowth, told.constData());
        QVERIFY2(last.handles == first.handles, told.constData());
        // A thread that Qt has done with may be on its way out of the system still.
        QTRY_VERIFY2(Measure().threads <= first.threads, told.constData());
    }
};

KIVO_TEST(DayOfRoundsTest)
#include "tst_day_of_rounds.moc"
