#include <QtTest>
#include <functional>

#include "record_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;
using std::chrono::milliseconds;
using std::chrono::seconds;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

// What a panel is owed, in words: "frame orientation clock texts". "texts" means that each item is unknown,
// "redraw" that each is drawn by itself once more over the room it is known to have.
QString Owed(const PanelRecord& record) {
    const OwedReports owed = WhatIsOwed(record);
    QStringList words;
    if (owed.frame) {
        words.append(QStringLiteral("frame"));
    }
    if (owed.orientation) {
        words.append(QStringLiteral("orientation"));
    }
    if (owed.clock) {
        words.append(QStringLiteral("clock"));
    }
    int unknown = 0;
    int redrawn = 0;
    for (const int item : kLiveItems) {
        const AcknowledgedText& shown = record.acknowledged.texts[size_t(item)];
        unknown += shown.text.isNull() ? 1 : 0;
        redrawn += !shown.text.isNull() && !shown.isDrawnByItself ? 1 : 0;
    }
    constexpr int kAll = FanSpeed + 1;
    if (unknown == kAll) {
        words.append(QStringLiteral("texts"));
    } else if (redrawn == kAll) {
        words.append(QStringLiteral("redraw"));
    } else if (unknown + redrawn != 0) {
        words.append(QStringLiteral("%1 text").arg(unknown + redrawn));
    }
    return words.join(QLatin1Char(' '));
}

using Event = std::function<void(PanelRecord&)>;

}  // namespace

Q_DECLARE_METATYPE(Event)
Q_DECLARE_METATYPE(PanelRecord)
Q_DECLARE_METATYPE(PanelCondition)

// One panel as a value: what each event makes unknown, and what is owed then.
class TestPanelRecord : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }

    void ANewRecordOwesWhatItIsTold();
    void EqualFramesAreOneFrame();
    void EventLeavesOwed_data();
    void EventLeavesOwed();
    void EventTriesAtOnce_data();
    void EventTriesAtOnce();
    void EpochCountsWhatMadeTextsUnknown_data();
    void EpochCountsWhatMadeTextsUnknown();
    void ReportBegunBeforeAnArrivalTellsNothing();
    void FirstKeyThatIsKnownIsThePanels();

    void StatusSays_data();
    void StatusSays();
    void SentIsToldForFourSeconds();
};

void TestPanelRecord::ANewRecordOwesWhatItIsTold() {
    PanelRecord record;
    QCOMPARE(Owed(record), QStringLiteral("clock texts"));
    SetDesired(record, FrameOf(Theme::Default));
    QCOMPARE(Owed(record), QStringLiteral("frame clock texts"));
}

void TestPanelRecord::EqualFramesAreOneFrame() {
    PanelRecord record = Complete(FrameOf(Theme::Default));
    SetDesired(record, FrameOf(Theme::Default));
    QCOMPARE(Owed(record), QString());
    SetDesired(record, FrameOf(Theme::Default, kStanding));
    // Not the orientation: it belongs to the frame.
    QCOMPARE(Owed(record), QStringLiteral("frame"));
    record.acknowledged.orientation.reset();
    QCOMPARE(Owed(record), QStringLiteral("frame"));
}

void TestPanelRecord::EventLeavesOwed_data() {
    QTest::addColumn<Event>("event");
    QTest::addColumn<QString>("owed");
    const auto row = [](const char* name, const Event& event, const char* owed) {
        QTest::newRow(name) << event << QString::fromLatin1(owed);
    };
    const auto sighting = [&row](const char* name, const PanelSighting& seen, const char* owed) {
        row(
            name, [seen](PanelRecord& record) { NoteSighting(record, seen); }, owed);
    };
    const auto frame = [&row](const char* name, const WholeImageResult& result, const char* owed) {
        row(
            name,
            [result](PanelRecord& record) {
                NoteFrameBegun(record);
                NoteFrame(record, record.epoch, record.desired.frame, kTexts, result);
            },
            owed);
    };
    row(
        "nothing", [](PanelRecord&) {}, "");
    row("an arrival or a wake-up", &NoteArrival, "orientation clock texts");
    sighting("the same panel is seen", Seen("a"), "");
    sighting("a panel is seen that does not say which", Seen(""), "");
    sighting("another panel is seen", Seen("b"), "frame clock texts");
    sighting("the panel is gone", {}, "");
    row(
        "the panel was gone and is back",
        [](PanelRecord& record) {
            NoteSighting(record, {});
            NoteSighting(record, Seen("a"));
        },
        "orientation clock texts");
    sighting("the same panel is seen at a new node", {ScreenPresence::Present, "a", "node", "another stamp"},
             "orientation clock texts");
    row(
        "a frame is taken while the panel arrives",
        [](PanelRecord& record) {
            const quint64 epoch = record.epoch;
            NoteArrival(record);
            NoteFrame(record, epoch, record.desired.frame, kTexts, {TransferResult::Taken, kChunkCount});
        },
        "frame clock texts");
    row(
        "the panel was denied and is allowed",
        [](PanelRecord& record) {
            NoteSighting(record, {ScreenPresence::Denied, {}, "node", {}});
            NoteSighting(record, Seen("a"));
        },
        "orientation clock texts");
    row(
        "another panel came for the one that went",
        [](PanelRecord& record) {
            NoteSighting(record, {});
            NoteSighting(record, Seen("b"));
        },
        "frame clock texts");
    row("a frame is begun", &NoteFrameBegun, "");
    frame("a frame is taken", {TransferResult::Taken, kChunkCount}, "orientation clock redraw");
    frame("a frame is refused at its first chunk", {TransferResult::Refused, 0}, "frame");
    frame("a frame is refused at its second chunk", {TransferResult::Refused, 1}, "frame clock texts");
    frame("a frame is refused at its last chunk", {TransferResult::Refused, 26}, "frame clock texts");
    frame("a frame finds no panel", {TransferResult::NotThere, 0}, "");
    frame("a frame is dropped", {TransferResult::Dropped, 0}, "");
    frame("a frame is dropped half-way", {TransferResult::Dropped, 13}, "frame clock texts");
    row(
        "another frame is desired", [](PanelRecord& record) { SetDesired(record, FrameOf(Theme::Time)); },
        "frame");

    const auto report = [&row](const char* name, TransferResult result, const char* orientation,
                               const char* clock, const char* text) {
        row((QByteArray("orientation ") + name).constData(),
            [result](PanelRecord& record) { NoteOrientation(record, record.epoch, kLying, result); },
            orientation);
        row((QByteArray("time show ") + name).constData(),
            [result](PanelRecord& record) { NoteTimeShow(record, record.epoch, result); }, clock);
        row((QByteArray("text ") + name).constData(),
            [result](PanelRecord& record) {
                NoteText(record, record.epoch, CpuUsage, QStringLiteral("38%"), result);
            },
            text);
    };
    report("taken", TransferResult::Taken, "", "", "");
    report("refused", TransferResult::Refused, "orientation", "clock", "1 text");
    report("without a panel", TransferResult::NotThere, "orientation", "clock", "1 text");
    report("dropped", TransferResult::Dropped, "", "", "");
    row(
        "the other orientation taken",
        [](PanelRecord& record) { NoteOrientation(record, record.epoch, kStanding, TransferResult::Taken); },
        "orientation");

    const auto sync = [&row](const char* name, TransferResult result, const char* owed) {
        row(
            name, [result](PanelRecord& record) { NoteTimeSync(record, result); }, owed);
    };
    sync("time sync taken", TransferResult::Taken, "");
    sync("time sync refused", TransferResult::Refused, "");
    sync("time sync dropped", TransferResult::Dropped, "");
    sync("time sync without a panel", TransferResult::NotThere, "");
    row(
        "time sync taken after one that was refused",
        [](PanelRecord& record) {
            NoteTimeSync(record, TransferResult::Refused);
            NoteTimeSync(record, TransferResult::Taken);
        },
        "orientation clock texts");
    row(
        "the panel is seen after a time sync without one",
        [](PanelRecord& record) {
            NoteTimeSync(record, TransferResult::NotThere);
            NoteSighting(record, Seen("a"));
        },
        "orientation clock texts");
}

void TestPanelRecord::EventLeavesOwed() {
    QFETCH(Event, event);
    QFETCH(QString, owed);
    PanelRecord record = Complete(FrameOf(Theme::Default));
    QCOMPARE(Owed(record), QString());
    event(record);
    QCOMPARE(Owed(record), owed);
}

void TestPanelRecord::EventTriesAtOnce_data() {
    QTest::addColumn<Event>("event");
    QTest::addColumn<bool>("atOnce");
    const auto row = [](const char* name, bool atOnce, const Event& event) {
        QTest::newRow(name) << event << atOnce;
    };
    row("nothing", false, [](PanelRecord&) {});
    row("an arrival", true, &NoteArrival);
    row("a frame is desired", true, [](PanelRecord& record) { SetDesired(record, FrameOf(Theme::Time)); });
    row("another panel", true, [](PanelRecord& record) { NoteSighting(record, Seen("b")); });
    row("the panel is back", true, [](PanelRecord& record) {
        NoteSighting(record, {});
        NoteSighting(record, Seen("a"));
    });
    row("it answers again", true, [](PanelRecord& record) {
        NoteTimeSync(record, TransferResult::Refused);
        NoteTimeSync(record, TransferResult::Taken);
    });
    row("the same panel", false, [](PanelRecord& record) { NoteSighting(record, Seen("a")); });
    row("the panel is gone", false, [](PanelRecord& record) { NoteSighting(record, {}); });
    row("it answers as before", false,
        [](PanelRecord& record) { NoteTimeSync(record, TransferResult::Taken); });
}

void TestPanelRecord::EventTriesAtOnce() {
    QFETCH(Event, event);
    QFETCH(bool, atOnce);
    PanelRecord record = Complete(FrameOf(Theme::Default));
    record.retry.NoteFailure(milliseconds(0));
    event(record);
    QCOMPARE(record.retry.IsDue(milliseconds(0)), atOnce);
}

void TestPanelRecord::EpochCountsWhatMadeTextsUnknown_data() {
    EventLeavesOwed_data();
}

// Whatever made a text unknown, or drew it with a frame, is an epoch of its own, but for the report itself.
void TestPanelRecord::EpochCountsWhatMadeTextsUnknown() {
    QFETCH(Event, event);
    QFETCH(QString, owed);
    PanelRecord record = Complete(FrameOf(Theme::Default));
    const quint64 epoch = record.epoch;
    event(record);
    const bool isNew = owed.contains(QLatin1String("texts")) || owed.contains(QLatin1String("redraw"));
    QCOMPARE(record.epoch != epoch, isNew);
}

void TestPanelRecord::ReportBegunBeforeAnArrivalTellsNothing() {
    for (const TransferResult result : {TransferResult::Taken, TransferResult::Refused}) {
        PanelRecord record = Complete(FrameOf(Theme::Default));
        const quint64 former = record.epoch;
        NoteArrival(record);
        NoteOrientation(record, former, kLying, result);
        NoteTimeShow(record, former, result);
        NoteText(record, former, CpuUsage, QStringLiteral("38%"), result);
        QCOMPARE(Owed(record), QStringLiteral("orientation clock texts"));
    }
    // Nor does a refusal of before take away what was taken since.
    PanelRecord record = Complete(FrameOf(Theme::Default));
    const quint64 former = record.epoch;
    NoteArrival(record);
    NoteText(record, record.epoch, CpuUsage, QStringLiteral("39%"), TransferResult::Taken);
    NoteText(record, former, CpuUsage, QStringLiteral("38%"), TransferResult::Refused);
    QCOMPARE(record.acknowledged.texts[CpuUsage].text, QStringLiteral("39%"));
}

void TestPanelRecord::FirstKeyThatIsKnownIsThePanels() {
    PanelRecord record = Complete(FrameOf(Theme::Default));
    record.panelKey.clear();
    NoteSighting(record, Seen("b"));
    QCOMPARE(Owed(record), QString());
    QCOMPARE(record.panelKey, QByteArray("b"));
    NoteSighting(record, Seen(""));
    QCOMPARE(record.panelKey, QByteArray("b"));
    NoteSighting(record, Seen("a"));
    QCOMPARE(Owed(record), QStringLiteral("frame clock texts"));
}

void TestPanelRecord::StatusSays_data() {
    QTest::addColumn<Event>("event");
    QTest::addColumn<PanelCondition>("condition");
    QTest::addColumn<bool>("frameOwed");
    const auto row = [](const char* name, PanelCondition condition, bool frameOwed, const Event& event) {
        QTest::newRow(name) << event << condition << frameOwed;
    };
    const auto refuse = [](PanelRecord& record, int rounds) {
        for (int round = 0; round < rounds; ++round) {
            NoteTimeSync(record, TransferResult::Refused);
        }
    };
    const auto fail = [](PanelRecord& record) { record.retry.NoteFailure(milliseconds(0)); };
    const auto want = [](PanelRecord& record) { SetDesired(record, FrameOf(Theme::Time)); };

    row("nothing known", PanelCondition::NoScreen, false, [](PanelRecord& record) { record = {}; });
    row("nothing known but a frame", PanelCondition::NoScreen, true, [](PanelRecord& record) {
        record = {};
        SetDesired(record, FrameOf(Theme::Default));
    });
    row("gone", PanelCondition::NoScreen, false, [](PanelRecord& record) { NoteSighting(record, {}); });
    row("gone in the middle of everything", PanelCondition::NoScreen, true, [=](PanelRecord& record) {
        want(record);
        fail(record);
        refuse(record, 5);
        NoteFrameBegun(record);
        NoteSighting(record, {});
    });
    row("gone by its clock report", PanelCondition::NoScreen, false,
        [](PanelRecord& record) { NoteTimeSync(record, TransferResult::NotThere); });
    row("denied", PanelCondition::Denied, false, [](PanelRecord& record) {
        NoteSighting(record, {ScreenPresence::Denied, {}, "node", {}});
    });
    row("all taken", PanelCondition::Connected, false, [](PanelRecord&) {});
    row("texts, clock and orientation owed", PanelCondition::Connected, false, &NoteArrival);
    row("a frame owed", PanelCondition::Sending, true, want);
    row("a frame owed that was refused", PanelCondition::TryingAgain, true, [=](PanelRecord& record) {
        want(record);
        fail(record);
    });
    row("orientation owed that was refused", PanelCondition::TryingAgain, false, [=](PanelRecord& record) {
        NoteArrival(record);
        fail(record);
    });
    row("a failure of the past", PanelCondition::Connected, false, fail);
    row("a frame on its way", PanelCondition::Sending, true, [=](PanelRecord& record) {
        want(record);
        fail(record);
        NoteFrameBegun(record);
    });
    row("the same frame once more on its way", PanelCondition::Sending, false, &NoteFrameBegun);
    row("a frame that came to its end", PanelCondition::TryingAgain, true, [=](PanelRecord& record) {
        want(record);
        fail(record);
        NoteFrameBegun(record);
        NoteFrame(record, record.epoch, record.desired.frame, kTexts, {TransferResult::Refused, 0});
    });
    row("one round refused", PanelCondition::TryingAgain, false,
        [=](PanelRecord& record) { refuse(record, 1); });
    row("two rounds refused", PanelCondition::TryingAgain, false,
        [=](PanelRecord& record) { refuse(record, 2); });
    row("three rounds refused", PanelCondition::Refusing, false,
        [=](PanelRecord& record) { refuse(record, 3); });
    row("many rounds refused, a frame on its way", PanelCondition::Refusing, true, [=](PanelRecord& record) {
        want(record);
        refuse(record, 300);
        NoteFrameBegun(record);
    });
    row("refused, then taken", PanelCondition::Connected, false, [=](PanelRecord& record) {
        refuse(record, 3);
        NoteTimeSync(record, TransferResult::Taken);
    });
    row("refused, then dropped", PanelCondition::Refusing, false, [=](PanelRecord& record) {
        refuse(record, 3);
        NoteTimeSync(record, TransferResult::Dropped);
    });
    row("refused, then another panel", PanelCondition::Sending, true, [=](PanelRecord& record) {
        refuse(record, 3);
        NoteSighting(record, Seen("b"));
    });
}

void TestPanelRecord::StatusSays() {
    QFETCH(Event, event);
    QFETCH(PanelCondition, condition);
    QFETCH(bool, frameOwed);
    PanelRecord record = Complete(FrameOf(Theme::Default));
    event(record);
    const PanelStatus status = StatusOf(record, seconds(100));
    QCOMPARE(status.condition, condition);
    QCOMPARE(status.isFrameOwed, frameOwed);
    QCOMPARE(status.node, condition == PanelCondition::Denied ? QByteArray("node") : QByteArray());
    QVERIFY(status.sentAt.isNull());
}

void TestPanelRecord::SentIsToldForFourSeconds() {
    PanelRecord record = Complete(FrameOf(Theme::Default));
    const QTime taken(18, 46, 5);
    // The clock may begin anywhere, 0 included.
    for (const milliseconds since : {milliseconds(0), milliseconds(123456)}) {
        record.frameTakenAt = taken;
        record.frameTakenSince = since;
        for (const milliseconds after : {milliseconds(0), milliseconds(3999)}) {
            const PanelStatus status = StatusOf(record, since + after);
            QCOMPARE(status.condition, PanelCondition::Sent);
            QCOMPARE(status.sentAt, taken);
        }
        const PanelStatus later = StatusOf(record, since + milliseconds(4000));
        QCOMPARE(later.condition, PanelCondition::Connected);
        QVERIFY(later.sentAt.isNull());
    }
    // The next frame is told of at once.
    SetDesired(record, FrameOf(Theme::Time));
    QCOMPARE(StatusOf(record, record.frameTakenSince).condition, PanelCondition::Sending);
}

KIVO_TEST(TestPanelRecord)
#include "tst_panel_record.moc"
