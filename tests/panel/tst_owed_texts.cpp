#include <QtTest>

#include "compose/live_renderer.h"
#include "record_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// Which texts a panel is owed, over each picture it may have.
class TestOwedTexts : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }

    void TextIsOwed_data();
    void TextIsOwed();
    void TextIsOwedOverTheFrameThatThePanelHas();
    void EveryTextOfEveryScreen_data();
    void EveryTextOfEveryScreen();
    void AfterAWholeFrameTheFormerTextIsThePlaceholder();
    void ShownTextsAreThoseWithAPlace();
};

void TestOwedTexts::TextIsOwed_data() {
    QTest::addColumn<ScreenState>("state");
    QTest::addColumn<int>("item");
    QTest::addColumn<bool>("changed");
    QTest::addColumn<bool>("unchanged");
    const auto row = [](const QByteArray& name, const ScreenState& state, int item, bool changed,
                        bool unchanged) { QTest::newRow(name) << state << item << changed << unchanged; };
    for (const Orientation orientation : kOrientations) {
        for (const Theme theme : kThemes) {
            for (const int item : kLiveItems) {
                const bool clock = item == Time || item == Date;
                const bool hidden =
                    (theme == Theme::Scene && !clock) || (theme == Theme::Time && item == FanSpeed);
                row(NameOf(theme) + ", " + NameOf(orientation) + ", item " + QByteArray::number(item),
                    ThemeScreen(theme, orientation), item, !hidden, clock);
            }
        }
        for (int slot = 0; slot < kSlotCount; ++slot) {
            for (const int item : kLiveItems) {
                const bool always = item == Time || (item == Date && slot != kCentreSlot);
                row("slot " + QByteArray::number(slot) + ", " + NameOf(orientation) + ", item " +
                        QByteArray::number(item),
                    CustomScreen(OnlySlot(slot, item), orientation), item, true, always);
            }
            row("date in the time's slot " + QByteArray::number(slot) + ", " + NameOf(orientation),
                SharedSlotScreen(slot, orientation), Date, true, slot != kCentreSlot);
        }
    }
    row("not placed", CustomScreen(OnlySlot(0, CpuUsage), Orientation::Landscape), CpuTemperature, false,
        false);
    row("free text", ThemeScreen(Theme::Default, Orientation::Landscape), OtherText, false, false);
    row("one-item layout",
        CustomScreen(OnlySlot(2, FanSpeed), Orientation::Landscape, InterfaceLanguage::Chinese, 1), FanSpeed,
        true, false);
    row("one-item layout, time",
        CustomScreen(OnlySlot(2, Time), Orientation::Landscape, InterfaceLanguage::Chinese, 1), Time, true,
        true);
}

void TestOwedTexts::TextIsOwed() {
    QFETCH(ScreenState, state);
    QFETCH(int, item);
    QFETCH(bool, changed);
    QFETCH(bool, unchanged);
    const QString text = QStringLiteral("12");
    PanelRecord record = Complete(FrameOf(state));
    QCOMPARE(IsTextOwed(record, item, text), changed);
    NoteText(record, record.epoch, item, text, TransferResult::Taken);
    QCOMPARE(IsTextOwed(record, item, text), unchanged);
    QCOMPARE(IsTextOwed(record, item, QStringLiteral("13")), changed);
    // Whatever makes it unknown makes it owed.
    PanelRecord refused = record;
    NoteText(refused, refused.epoch, item, text, TransferResult::Refused);
    QCOMPARE(IsTextOwed(refused, item, text), changed);
    PanelRecord arrived = record;
    NoteArrival(arrived);
    QCOMPARE(IsTextOwed(arrived, item, text), changed);
    PanelRecord composed = record;
    ItemTexts texts = kTexts;
    texts[size_t(item)] = text;
    ApplyComposedState(composed, record.acknowledged.frame, texts);
    QCOMPARE(IsTextOwed(composed, item, text), changed);
    QVERIFY(!IsTextOwed(composed, item, QString()));
}

void TestOwedTexts::TextIsOwedOverTheFrameThatThePanelHas() {
    PanelRecord record = Complete(FrameOf(Theme::Scene));
    SetDesired(record, FrameOf(Theme::Default));
    QVERIFY(!IsTextOwed(record, CpuUsage, QStringLiteral("38%")));
    ApplyComposedState(record, record.desired.frame, kTexts);
    QVERIFY(IsTextOwed(record, CpuUsage, QStringLiteral("38%")));
    record.acknowledged.frame.reset();
    QVERIFY(!IsTextOwed(record, CpuUsage, QStringLiteral("38%")));
    QVERIFY(!IsTextOwed(record, Time, QStringLiteral("18:47")));
}

void TestOwedTexts::EveryTextOfEveryScreen_data() {
    QTest::addColumn<ScreenState>("state");
    const QVector<NamedScreen> screens = AllScreens();
    for (const NamedScreen& screen : screens) {
        QTest::newRow(screen.name) << screen.state;
    }
}

// After a whole frame every item that has a place is drawn once by itself, then those only that say so.
void TestOwedTexts::EveryTextOfEveryScreen() {
    QFETCH(ScreenState, state);
    const SharedFrame frame = FrameOf(state);
    PanelRecord record;
    ApplyComposedState(record, frame, kTexts);
    for (int item = 0; item < kLiveValueCount; ++item) {
        const QString& text = kTexts[size_t(item)];
        const bool isThere = !text.isEmpty() && HasPlace(state, item);
        QCOMPARE(IsTextOwed(record, item, text), isThere);
        NoteText(record, record.epoch, item, text, TransferResult::Taken);
        const bool alsoUnchanged = (item == Time || item == Date) && IsUpdateSent(state, item, false);
        QCOMPARE(IsTextOwed(record, item, text), isThere && alsoUnchanged);
    }
}

void TestOwedTexts::AfterAWholeFrameTheFormerTextIsThePlaceholder() {
    PanelRecord record;
    QVERIFY(FormerText(record, Time).isNull());
    ApplyComposedState(record, FrameOf(Theme::Default), kTexts);
    // The memory's has the form of a date.
    const QStringList placeholders{QStringLiteral("00℃"),        QStringLiteral("00%"),
                                   QStringLiteral("0000.00.00"), QStringLiteral("00:00"),
                                   QStringLiteral("0000"),       QStringLiteral("0000.00.00"),
                                   QStringLiteral("0000")};
    for (const int item : kLiveItems) {
        QCOMPARE(FormerText(record, item), placeholders[item]);
        NoteText(record, record.epoch, item, QStringLiteral("12"), TransferResult::Taken);
        QCOMPARE(FormerText(record, item), QStringLiteral("12"));
        NoteText(record, record.epoch, item, QStringLiteral("13"), TransferResult::Refused);
        QVERIFY(FormerText(record, item).isNull());
    }
}

void TestOwedTexts::ShownTextsAreThoseWithAPlace() {
    PanelRecord record = Complete(FrameOf(Theme::Time));
    QCOMPARE(ShownTexts(record)[Time], kTexts[Time]);
    QVERIFY(ShownTexts(record)[FanSpeed].isEmpty());  // this theme hides it
    NoteText(record, record.epoch, Time, QStringLiteral("18:47"), TransferResult::Refused);
    QVERIFY(ShownTexts(record)[Time].isEmpty());
    NoteText(record, record.epoch, Time, QStringLiteral("18:47"), TransferResult::Taken);
    QCOMPARE(ShownTexts(record)[Time], QStringLiteral("18:47"));
    record.acknowledged.frame.reset();
    QVERIFY(ShownTexts(record)[Time].isEmpty());
}

KIVO_TEST(TestOwedTexts)
#include "tst_owed_texts.moc"
