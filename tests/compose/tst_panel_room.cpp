// The room on the panel: the list of what is taken, and that nothing touches anything else, measured on the
// ink itself. KIVO_ROOM_CASES=5000 tries more layouts.

#include <QRandomGenerator>
#include <QTest>
#include <functional>

#include "compose/panel_room.h"
#include "compose_test_support.h"
#include "ink.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;
constexpr int kInkGap = 6;
constexpr QChar kEllipsis(0x2026);

const SlotRow kFactoryRow{{CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower}};

QRect RoomOfItem(const PanelTexts& texts, RoomOf of, int item) {
    for (const TakenRoom& room : texts.taken) {
        if (room.of == of && room.item == item) {
            return room.rect;
        }
    }
    return QRect();
}

bool OneIn(QRandomGenerator& random, int chances) {
    return random.bounded(chances) == 0;
}

template <typename List>
auto OneOf(QRandomGenerator& random, const List& list) {
    return list[random.bounded(int(list.size()))];
}

QString Word(QRandomGenerator& random) {
    static const QStringList words{
        QStringLiteral("Hi"),
        QStringLiteral("My"),
        QStringLiteral("gaming"),
        QStringLiteral("computer"),
        QStringLiteral("jfgyqp|_"),
        QStringLiteral("ÉŐÄ"),
        QStringLiteral("Donaudampfschifffahrtsgesellschaft"),
        QString(34, QLatin1Char('W')),
        QStringLiteral("Привет"),
        QStringLiteral("ДЩЦфёй"),
        QStringLiteral("достопримечательность"),
        QStringLiteral("今天天气很好"),
        QStringLiteral("国"),
        QStringLiteral("人人生而自由在尊严和权利上一律平等他们赋有理性"),
        QStringLiteral("😀🎉"),
        QStringLiteral("👩\u200D👩\u200D👧🇨🇳"),
        QStringLiteral("e\u0301n\u0303"),
        QStringLiteral("Z\u0338\u0321\u0322\u034D\u0339a\u0336\u0327\u032B\u0318\u0316\u0357\u0346l"),
        QStringLiteral("ก็ญู"),
        QStringLiteral("שלום"),
        QStringLiteral("100%"),
        QStringLiteral("..."),
    };
    return OneOf(random, words);
}

QString Text(QRandomGenerator& random) {
    QString text;
    for (int words = random.bounded(1, OneIn(random, 4) ? 16 : 5); words > 0; --words) {
        text += Word(random);
        text += OneIn(random, 8) ? QLatin1Char('\n') : QLatin1Char(' ');
    }
    return text;
}

ScreenState Screen(QRandomGenerator& random) {
    const InterfaceLanguage language = OneOf(random, kLanguages);
    const Orientation orientation = OneOf(random, kOrientations);
    if (OneIn(random, 6)) {
        ScreenState theme = ThemeScreen(OneOf(random, kThemes), orientation, language);
        theme.style = random.bounded(2);
        theme.layout.freeText = Text(random);
        return theme;
    }
    SlotRow row{};
    for (int& item : row) {
        item = random.bounded(int(kEmptySlot), kLiveValueCount);
    }
    ScreenState state = CustomScreen(row, orientation, language, random.bounded(kVariantCount));
    for (std::array<bool, kLiveValueCount>* flags : {&state.layout.shown, &state.layout.selected}) {
        for (bool& isTicked : *flags) {
            isTicked = OneIn(random, 6) ? !isTicked : isTicked;
        }
    }
    state.layout.freeText = OneIn(random, 10) ? QString() : Text(random);
    state.layout.sizeIndex = random.bounded(kTextSizeCount);
    state.layout.colorIndex = random.bounded(kTextColorCount);
    state.layout.picture = OneIn(random, 2) ? QStringLiteral("/a/picture.png") : QString();
    state.textRow = random.bounded(kTextRowCount);
    return state;
}

QString WithoutBlanks(const QString& text) {
    QString dense;
    for (const QChar sign : text) {
        if (!sign.isSpace() && sign.category() != QChar::Other_Control) {
            dense += sign;
        }
    }
    return dense;
}

// The first thing that is wrong with the panel; empty for none.
QByteArray Fault(const ScreenState& state, const ItemTexts& values) {
    const QRect canvas = CanvasRect(state.orientation);
    const PanelTexts texts = LayOutPanelTexts(state, values);
    struct Painted {
        QByteArray name;
        int item;
        Ink ink;
    };
    QVector<Painted> painted;
    for (const TextRun& run : texts.runs) {
        painted.append({Describe(run), run.item, Ink::Of(run)});
        const RoomOf of = run.role == TextRole::Value ? RoomOf::Value : RoomOf::Caption;
        const Ink& ink = painted.last().ink;
        if (!ink.IsEmpty() && !RoomOfItem(texts, of, run.item).contains(ink.Bounds())) {
            return Describe(run) + " paints " + Describe(ink.Bounds()) + ", which is not its room";
        }
    }
    for (int k = 0; k < painted.size(); ++k) {
        for (int other = 0; other < k; ++other) {
            const int room = painted[k].ink.DistanceTo(painted[other].ink, 1);
            if (room < (painted[k].item == painted[other].item ? 0 : 1)) {
                return painted[k].name + " touches " + painted[other].name;
            }
        }
    }

    const FreeTextBlock& block = texts.freeText;
    const Ink ink = Ink::Of(block);
    for (const Painted& other : qAsConst(painted)) {
        const int room = ink.DistanceTo(other.ink, kInkGap);
        if (room < kInkGap) {
            return "the free text is " + QByteArray::number(room) + " px from " + other.name;
        }
    }
    painted.append({"the free text", OtherText, ink});
    for (const Painted& text : qAsConst(painted)) {
        if (!text.ink.IsEmpty() && !canvas.contains(text.ink.Bounds())) {
            return text.name + " leaves the panel";
        }
    }
    const QRect pill = RoomOfItem(texts, RoomOf::Pill, OtherText);
    for (const TakenRoom& room : texts.taken) {
        if (room.of == RoomOf::Chip && room.rect.adjusted(-3, -3, 3, 3).intersects(pill)) {
            return "the free text's pill is less than 3 px from a chip";
        }
    }
    if (!ink.IsEmpty() && !block.bounds.contains(ink.Bounds())) {
        return "the free text paints " + Describe(ink.Bounds()) + " outside " + Describe(block.bounds);
    }
    if (!block.isCut && !ink.IsEmpty() && !block.bounds.contains(Ink::Unclipped(block).Bounds())) {
        return "the free text is clipped: " + Describe(Ink::Unclipped(block).Bounds()) + " beyond " +
               Describe(block.bounds);
    }
    const bool isExpected = state.custom && !state.layout.freeText.trimmed().isEmpty();
    if (block.lines.isEmpty() == isExpected) {
        return "the free text is there or is not";
    }
    const bool isWhole = WithoutBlanks(Joined(block)) == WithoutBlanks(state.layout.freeText);
    if (isExpected && !block.isCut && !isWhole) {
        return "some of the free text is missing, and nothing says so";
    }
    if (isExpected && (block.pixelSize < 12 || block.pixelSize > FreeTextPixelSize(state.layout.sizeIndex))) {
        return "the free text has a size of " + QByteArray::number(block.pixelSize);
    }
    return QByteArray();
}

QByteArray Case(const ScreenState& state) {
    QByteArray row;
    for (const int item : state.slotItems) {
        row += QByteArray::number(item) + " ";
    }
    return NameOf(state.orientation) + ", " + (state.custom ? "slots " + row : NameOf(state.theme)) +
           ", variant " + QByteArray::number(state.variant) + ", row " + QByteArray::number(state.textRow) +
           ", " + QByteArray::number(FreeTextPixelSize(state.layout.sizeIndex)) + " px, \"" +
           state.layout.freeText.toUtf8() + "\"";
}

}  // namespace

class TestPanelRoom : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void NothingTouchesAnythingElse() {
        constexpr int kCases = 300;
        const int cases = qEnvironmentVariableIsSet("KIVO_ROOM_CASES")
                              ? qEnvironmentVariableIntValue("KIVO_ROOM_CASES")
                              : kCases;
        QRandomGenerator random(2026);
        int cut = 0;
        int moved = 0;
        for (int k = 0; k < cases; ++k) {
            const ScreenState state = Screen(random);
            const QByteArray fault = Fault(state, OneOf(random, AllTexts(state.language)));
            QVERIFY2(fault.isEmpty(), "case " + QByteArray::number(k) + ": " + fault + "\n" + Case(state));
            const FreeTextBlock block = LayOutFreeText(state);
            ScreenState alone = state;
            alone.slotItems = kNoItems;
            cut += block.isCut ? 1 : 0;
            moved += block.bounds != LayOutFreeText(alone).bounds ? 1 : 0;
        }
        // The cases are worth something.
        QVERIFY(cut > cases / 50);
        QVERIFY(moved > cases / 5);
    }

    void TheListNamesAllThatIsThere() {
        for (const Orientation orientation : kOrientations) {
            ScreenState state = CustomScreen(kFactoryRow, orientation);
            state.layout.freeText = QStringLiteral("Hello desk");
            const PanelTexts texts = LayOutPanelTexts(state, LiveTexts(state.language)[1]);
            for (int slot = 0; slot < kSlotCount; ++slot) {
                const int item = kFactoryRow[size_t(slot)];
                const QRect chip = RoomOfItem(texts, RoomOf::Chip, item);
                QCOMPARE(chip, SlotChipRect(slot, orientation, item != Time));
                QCOMPARE(SlotRoom(texts, state, slot), chip);
                QVERIFY(item == Time || chip.contains(RoomOfItem(texts, RoomOf::Caption, item)));
                QCOMPARE(RoomOfItem(texts, RoomOf::Value, item), EvenPart(SlotRect(slot, orientation)));
            }
            QVERIFY(RoomOfItem(texts, RoomOf::Caption, Time).isNull());
            const ScreenState empty = CustomScreen(kNoItems, orientation);
            QCOMPARE(SlotRoom(*LayOutPanel(empty), empty, kCentreSlot),
                     SlotChipRect(kCentreSlot, orientation, false));
            const QRect text = RoomOfItem(texts, RoomOf::FreeText, OtherText);
            QCOMPARE(text, texts.freeText.bounds);
            QCOMPARE(RoomOfItem(texts, RoomOf::Pill, OtherText), text.adjusted(-8, -4, 8, 4));
            QCOMPARE(texts.taken.size(), 5 + 4 + 5 + 2);
        }
    }

    void ThemesHaveNoChips() {
        for (const NamedScreen& screen : AllThemeScreens()) {
            const PanelTexts texts = LayOutPanelTexts(screen.state, LiveTexts(screen.state.language)[1]);
            QCOMPARE(texts.taken.size(), texts.runs.size());
            for (const TakenRoom& room : texts.taken) {
                QVERIFY(IsText(room));
            }
        }
    }

    void ChipsHoldTheirSlots() {
        for (const Orientation orientation : kOrientations) {
            for (int slot = 0; slot < kSlotCount; ++slot) {
                const QRect chip = SlotChipRect(slot, orientation, true);
                QVERIFY(CanvasRect(orientation).contains(chip));
                QVERIFY(chip.top() <= SlotRect(slot, orientation).top());
                for (int other = 0; other < slot; ++other) {
                    QVERIFY(!chip.intersects(SlotChipRect(other, orientation, true)));
                }
            }
        }
        QCOMPARE(SlotChipRect(kCentreSlot, kLying, true), Corners(108, 53, 213, 107));
        QCOMPARE(SlotChipRect(kCentreSlot, kLying, false), Corners(108, 53, 213, 96));
        QCOMPARE(SlotChipRect(kCentreSlot, kStanding, true), Corners(21, 139, 148, 193));
        QCOMPARE(SlotChipRect(kCentreSlot, kStanding, false), Corners(21, 139, 148, 180));
        QCOMPARE(SlotChipRect(0, kLying, true), Corners(6, 11, 95, 62));
        QCOMPARE(SlotChipRect(0, kLying, false), Corners(6, 11, 95, 50));
        QCOMPARE(SlotChipRect(3, kStanding, false), Corners(103, 266, 165, 299));
    }

    // No place hangs on a text.
    void ANewValueMovesNothing() {
        for (const NamedScreen& screen : AllScreens()) {
            ScreenState state = screen.state;
            state.layout.freeText = QStringLiteral("Hello desk");
            const QVector<ItemTexts> values = LiveTexts(state.language);
            const PanelTexts first = LayOutPanelTexts(state, values.first());
            for (const ItemTexts& value : values) {
                const PanelTexts texts = LayOutPanelTexts(state, value);
                QVERIFY(texts.taken == first.taken);
                for (int k = 0; k < texts.runs.size(); ++k) {
                    QCOMPARE(texts.runs[k].rect, first.runs[k].rect);
                }
            }
        }
    }

    // What is kept of former layouts never stands in for another.
    void EveryChangeIsLaidOutAnew() {
        ScreenState state = CustomScreen(kFactoryRow, kLying);
        state.layout.freeText = QStringLiteral("Hello desk");
        const FreeTextBlock before = LayOutFreeText(state);
        const auto changed = [&state](const std::function<void(ScreenState&)>& change) {
            ScreenState other = state;
            change(other);
            return LayOutFreeText(other);
        };
        for (int round = 0; round < 3; ++round) {
            QVERIFY(changed([](ScreenState& s) { s.textRow = 0; }).bounds != before.bounds);
            QVERIFY(changed([](ScreenState& s) { s.layout.freeText += QLatin1Char('!'); }).bounds !=
                    before.bounds);
            QVERIFY(changed([](ScreenState& s) { s.layout.sizeIndex = 2; }).pixelSize != before.pixelSize);
            QVERIFY(changed([](ScreenState& s) { s.layout.colorIndex = 3; }).color != before.color);
            QVERIFY(changed([](ScreenState& s) { s.orientation = kStanding; }).bounds != before.bounds);
            QCOMPARE(changed([](ScreenState&) {}).bounds, before.bounds);
            for (const int item : kLiveItems) {
                // More states than are kept.
                changed([item](ScreenState& s) { s.slotItems[kCentreSlot] = item; });
                changed([item](ScreenState& s) { s.slotItems[0] = item; });
            }
        }
    }

    void WithoutAnythingElseAllOfThePanelIsFree() {
        QCOMPARE(FreeAreas({}, kLying), (QVector<QRect>{Corners(9, 6, 310, 163)}));
        QCOMPARE(FreeAreas({}, kStanding), (QVector<QRect>{Corners(9, 6, 160, 313)}));
    }

    // As far as each of them asks for by itself.
    void EachKindOfRoomHasItsDistance() {
        const QRect rect = Corners(0, 80, 319, 90);
        const auto areas = [&rect](RoomOf of) { return FreeAreas({{of, CpuUsage, rect}}, kLying); };
        for (const RoomOf of : {RoomOf::Value, RoomOf::Caption}) {
            QCOMPARE(areas(of), (QVector<QRect>{Corners(9, 6, 310, 73), Corners(9, 97, 310, 163)}));
        }
        QCOMPARE(areas(RoomOf::Chip), (QVector<QRect>{Corners(9, 6, 310, 72), Corners(9, 98, 310, 163)}));
        for (const RoomOf of : {RoomOf::FreeText, RoomOf::Pill}) {
            QCOMPARE(areas(of), (QVector<QRect>{Corners(9, 6, 310, 163)}));
        }
    }

    void AreasKeepTheirDistance_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::newRow("landscape") << kLying;
        QTest::newRow("portrait") << kStanding;
    }
    void AreasKeepTheirDistance() {
        QFETCH(Orientation, orientation);
        const PanelTexts texts = LayOutPanelTexts(CustomScreen(kFactoryRow, orientation), {});
        const QVector<QRect> areas = FreeAreas(texts.taken, orientation);
        QVERIFY(!areas.isEmpty());
        for (const QRect& area : areas) {
            QVERIFY(CanvasRect(orientation).adjusted(9, 6, -9, -6).contains(area));
            for (const TakenRoom& room : texts.taken) {
                const QRect kept = room.of == RoomOf::Chip ? room.rect.adjusted(-11, -7, 11, 7)
                                                           : room.rect.adjusted(-6, -6, 6, 6);
                QVERIFY2(!kept.intersects(area), Describe(area) + " and " + Describe(room.rect));
            }
        }
    }
};

KIVO_TEST(TestPanelRoom)
#include "tst_panel_room.moc"
