#include <QTest>

#include "compose_test_support.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;
constexpr auto kChinese = InterfaceLanguage::Chinese;
constexpr auto kEnglish = InterfaceLanguage::English;
constexpr auto kRussian = InterfaceLanguage::Russian;

const TextRun* Find(const QVector<TextRun>& runs, int item, TextRole role) {
    const auto found = std::find_if(runs.begin(), runs.end(),
                                    [&](const TextRun& run) { return run.item == item && run.role == role; });
    return found == runs.end() ? nullptr : &*found;
}

QVector<TextRun> RunsOf(const ScreenState& state) {
    return LayOutTexts(state, LiveTexts(state.language)[1]);
}

}  // namespace

class TestItemDrawing : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void ThemeSizes_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<InterfaceLanguage>("language");
        QTest::addColumn<int>("highlight");
        QTest::addColumn<int>("style");
        QTest::addColumn<int>("item");
        QTest::addColumn<int>("value");
        QTest::addColumn<int>("caption");  // 0: none
        const auto row = [](const char* name, Theme theme, Orientation orientation,
                            InterfaceLanguage language, int highlight, int style, int item, int value,
                            int caption) {
            QTest::newRow(name) << theme << orientation << language << highlight << style << item << value
                                << caption;
        };
        constexpr auto d = Theme::Default;
        constexpr auto s = Theme::Scene;
        constexpr auto t = Theme::Tdp;
        constexpr auto w = Theme::Time;
        constexpr int kPlain = 0;  // see PlainValuesShareTheLargestSizeThatFits
        row("plain value", d, kLying, kChinese, CpuPower, 0, CpuTemperature, kPlain, 10);
        row("plain value, style does not matter", d, kStanding, kRussian, CpuPower, 1, FanSpeed, kPlain, 10);
        row("main power, landscape", d, kLying, kChinese, CpuPower, 0, CpuPower, 21, 12);
        row("main power, portrait", d, kStanding, kChinese, CpuPower, 0, CpuPower, 23, 13);
        row("main power stays small in English", d, kLying, kEnglish, CpuPower, 0, CpuPower, 18, 12);
        row("main power stays small in Russian", d, kStanding, kRussian, CpuPower, 0, CpuPower, 18, 13);
        row("main temperature", d, kLying, kChinese, CpuTemperature, 0, CpuTemperature, 25, 15);
        row("main temperature, English", d, kStanding, kEnglish, CpuTemperature, 0, CpuTemperature, 25, 15);
        row("power beside another main value", d, kLying, kChinese, CpuTemperature, 0, CpuPower, kPlain, 10);
        row("plain time", d, kLying, kChinese, CpuPower, 0, Time, 18, 0);
        row("main time", d, kLying, kChinese, Time, 0, Time, 27, 0);
        row("plain date", d, kLying, kChinese, CpuPower, 0, Date, 10, 0);
        row("date beside the main time", d, kStanding, kChinese, Time, 0, Date, 15, 0);
        row("date does not grow by itself", d, kLying, kChinese, Date, 0, Date, 10, 0);
        row("scene time, landscape", s, kLying, kChinese, Time, 0, Time, 36, 0);
        row("scene time, portrait", s, kStanding, kRussian, Time, 1, Time, 36, 0);
        row("scene time without emphasis", s, kLying, kChinese, CpuPower, 0, Time, 36, 0);
        row("scene date, style 0", s, kLying, kChinese, Time, 0, Date, 20, 0);
        row("scene date, style 1", s, kStanding, kEnglish, Time, 1, Date, 18, 0);
        row("scene date, any other style", s, kLying, kChinese, Time, 2, Date, 20, 0);
        row("scene date without emphasis", s, kLying, kChinese, CpuPower, 0, Date, 10, 0);
        row("TDP power, landscape", t, kLying, kChinese, CpuPower, 0, CpuPower, 26, 12);
        row("TDP power, portrait", t, kStanding, kChinese, CpuPower, 0, CpuPower, 26, 13);
        row("TDP power in English", t, kLying, kEnglish, CpuPower, 0, CpuPower, 26, 12);
        row("TDP power in Russian", t, kStanding, kRussian, CpuPower, 0, CpuPower, 26, 13);
        row("TDP with another main value", t, kLying, kChinese, CpuUsage, 0, CpuUsage, 26, 15);
        row("TDP plain value", t, kLying, kChinese, CpuPower, 0, MemoryUsage, kPlain, 10);
        row("TDP time", t, kLying, kChinese, CpuPower, 0, Time, 18, 0);
        row("TDP date", t, kStanding, kChinese, CpuPower, 0, Date, 10, 0);
        row("time theme: time", w, kLying, kChinese, Time, 0, Time, 27, 0);
        row("time theme: time, portrait", w, kStanding, kRussian, Time, 0, Time, 27, 0);
        row("time theme: date, landscape", w, kLying, kChinese, Time, 0, Date, 15, 0);
        row("time theme: date, portrait", w, kStanding, kChinese, Time, 0, Date, 13, 0);
        row("time theme: value", w, kLying, kChinese, Time, 0, CpuPower, kPlain, 10);
        row("time theme: main temperature", w, kLying, kChinese, CpuTemperature, 0, CpuTemperature, 25, 15);
        row("time theme: main power", w, kStanding, kChinese, CpuPower, 0, CpuPower, 23, 13);
    }
    void TimeAndDateInOneSlotKeepApart() {
        for (const Orientation orientation : kOrientations) {
            for (int slot = 0; slot < kSlotCount; ++slot) {
                const ScreenState state = SharedSlotScreen(slot, orientation);
                const QVector<TextRun> runs = LayOutTexts(state, LiveTexts(state.language)[0]);
                const TextRun* time = Find(runs, Time, TextRole::Value);
                const TextRun* date = Find(runs, Date, TextRole::Value);
                QVERIFY(time != nullptr && date != nullptr);
                const int gap = InkOf(*date, orientation).top() - InkOf(*time, orientation).bottom() - 1;
                QVERIFY2(gap >= 4, qPrintable(QStringLiteral("slot %1: %2 px").arg(slot).arg(gap)));
            }
        }
    }

    void AnItemThatStandsTwiceIsDrawnOnce() {
        ScreenState state = CustomScreen({CpuUsage, kEmptySlot, CpuUsage, kEmptySlot, kEmptySlot}, kLying);
        int values = 0;
        for (const TextRun& run : LayOutTexts(state, LiveTexts(state.language)[0])) {
            values += run.role == TextRole::Value ? 1 : 0;
        }
        QCOMPARE(values, 1);
    }

    void BlanksBeforeAValueAreNotDrawn() {
        const ScreenState state =
            CustomScreen({FanSpeed, kEmptySlot, kEmptySlot, kEmptySlot, kEmptySlot}, kLying);
        ItemTexts texts;
        texts[FanSpeed] = QStringLiteral(" 900");
        QStringList values;
        for (const TextRun& run : LayOutTexts(state, texts)) {
            if (run.role == TextRole::Value) {
                values.append(run.text);
            }
        }
        QCOMPARE(values, QStringList(QStringLiteral("900")));
    }

    void SceneShowsNothingButTimeAndDate() {
        ScreenState state = ThemeScreen(Theme::Scene, kLying, InterfaceLanguage::Chinese);
        state.layout.shown.fill(true);
        state.layout.textRect[CpuUsage] = QRect(10, 10, 60, 20);
        const QVector<TextRun> runs = LayOutTexts(state, LiveTexts(state.language)[0]);
        QCOMPARE(runs.size(), 2);
        QVERIFY(!HasPlace(state, CpuUsage));
    }

    void PlainValuesShareTheLargestSizeThatFits() {
        constexpr int kBase = 18;
        constexpr int kSmallest = 14;
        for (const NamedScreen& screen : AllThemeScreens()) {
            ItemTexts usual{QStringLiteral("99℃"),
                            QStringLiteral("100%"),
                            QStringLiteral("100%"),
                            QString(),
                            QStringLiteral("125w"),
                            QString(),
                            QStringLiteral("3500"),
                            QString(),
                            QString()};
            if (screen.state.language == InterfaceLanguage::Russian) {
                usual[CpuPower] = QStringLiteral("125Вт");
            }
            int size = 0;
            bool fits = true;
            bool largerFits = true;
            for (const TextRun& run : LayOutTexts(screen.state, usual)) {
                const bool plain = run.role == TextRole::Value && run.item != Time && run.item != Date &&
                                   run.item != screen.state.layout.highlight;
                if (!plain) {
                    continue;
                }
                QVERIFY2(size == 0 || run.pixelSize == size, screen.name.constData());
                size = run.pixelSize;
                const auto keeps = [&run](int pixelSize) {
                    return FitLine(run.text, pixelSize, run.rect, run.align).pixelSize == pixelSize;
                };
                fits = fits && keeps(size);
                largerFits = largerFits && keeps(size + 1);
            }
            if (size == 0) {
                continue;  // the scene theme has none
            }
            QVERIFY2(size <= kBase && size >= kSmallest, screen.name.constData());
            QVERIFY2(fits || size == kSmallest, screen.name.constData());
            QVERIFY2(size == kBase || !largerFits, screen.name.constData());
        }
    }
    void ThemeSizes() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QFETCH(InterfaceLanguage, language);
        QFETCH(int, highlight);
        QFETCH(int, style);
        QFETCH(int, item);
        QFETCH(int, value);
        QFETCH(int, caption);
        ScreenState state = ThemeScreen(theme, orientation, language);
        state.layout.highlight = highlight;
        state.style = style;
        const QVector<TextRun> runs = RunsOf(state);
        const TextRun* valueRun = Find(runs, item, TextRole::Value);
        QVERIFY(valueRun != nullptr);
        QVERIFY(value == 0 || valueRun->pixelSize == value);
        QCOMPARE(valueRun->align, item == Date ? TextAlign::Top : TextAlign::Centre);
        const TextRun* captionRun = Find(runs, item, TextRole::Caption);
        QCOMPARE(captionRun != nullptr, caption != 0);
        QVERIFY(captionRun == nullptr || captionRun->pixelSize == caption);
    }

    void ThemeValuesStandInTheirTextRectangle() {
        for (const NamedScreen& screen : AllThemeScreens()) {
            const QVector<TextRun> runs = RunsOf(screen.state);
            for (int item = 0; item < kLiveValueCount; ++item) {
                const TextRun* run = Find(runs, item, TextRole::Value);
                QCOMPARE(run != nullptr, screen.state.layout.shown[size_t(item)]);
                if (run != nullptr) {
                    const QRect rect = screen.state.layout.textRect[size_t(item)];
                    // Halves cover an even width only.
                    QCOMPARE(run->rect, IsSentInHalves(screen.state, item) ? EvenPart(rect) : rect);
                    QCOMPARE(run->text, LiveTexts(screen.state.language)[1][size_t(item)]);
                }
            }
        }
    }

    void ThemeCaptionPlaces_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<int>("item");
        QTest::addColumn<bool>("emphasised");
        QTest::addColumn<QRect>("tile");
        QTest::addColumn<QPoint>("topLeft");
        constexpr QRect tile(30, 50, 80, 60);  // a third is 20
        QTest::newRow("default: beside the icon") << Theme::Default << 0 << false << tile << QPoint(50, 55);
        QTest::newRow("default, main value: under it")
            << Theme::Default << 4 << true << tile << QPoint(30, 85);
        QTest::newRow("TDP") << Theme::Tdp << 1 << false << tile << QPoint(30, 65);
        QTest::newRow("TDP, main value") << Theme::Tdp << 4 << true << tile << QPoint(30, 65);
        QTest::newRow("time: above the card") << Theme::Time << 1 << false << tile << QPoint(30, 36);
        QTest::newRow("time: memory above its card") << Theme::Time << 2 << false << tile << QPoint(30, 36);
        QTest::newRow("time: temperature below its card")
            << Theme::Time << 0 << false << tile << QPoint(30, 114);
        QTest::newRow("time: power below its card") << Theme::Time << 4 << false << tile << QPoint(30, 114);
        QTest::newRow("time, main value: under it") << Theme::Time << 4 << true << tile << QPoint(30, 85);
    }
    void ThemeCaptionPlaces() {
        QFETCH(Theme, theme);
        QFETCH(int, item);
        QFETCH(bool, emphasised);
        QFETCH(QRect, tile);
        QFETCH(QPoint, topLeft);
        ScreenState state = ThemeScreen(theme, kLying);
        state.layout.highlight = emphasised ? item : FanSpeed;
        state.layout.tile[size_t(item)] = tile;
        const QVector<TextRun> runs = RunsOf(state);
        const TextRun* caption = Find(runs, item, TextRole::Caption);
        QVERIFY(caption != nullptr);
        QCOMPARE(caption->text, state.captions[size_t(item)]);
        QCOMPARE(caption->rect.topLeft(), topLeft);
        QCOMPARE(caption->rect.height(), 20);
        const bool besideIcon = theme == Theme::Default && !emphasised;
        QCOMPARE(caption->align, besideIcon ? TextAlign::TopLeft : TextAlign::Top);
        QVERIFY(caption->rect.right() <= tile.right());
        QVERIFY(besideIcon || caption->rect.width() == tile.width());
    }

    void CaptionsLieOnTheCanvasAndNeverBelongToTheTime() {
        for (const NamedScreen& screen : AllScreens()) {
            for (const TextRun& run : RunsOf(screen.state)) {
                QVERIFY2(CanvasRect(screen.state.orientation).contains(run.rect),
                         screen.name + ": " + Describe(run));
                QVERIFY2(run.role == TextRole::Value || run.item != Time, screen.name);
                QVERIFY2(HasLiveValue(run.item), screen.name);
            }
        }
    }

    void CaptionsAreShownWhole_data() {
        QTest::addColumn<ScreenState>("state");
        for (const NamedScreen& screen : AllScreens()) {
            QTest::newRow(screen.name) << screen.state;
        }
    }
    void CaptionsAreShownWhole() {
        QFETCH(ScreenState, state);
        for (const TextRun& run : RunsOf(state)) {
            if (run.role == TextRole::Caption) {
                const FittedLine line = FitRun(run);
                QCOMPARE(line.text, run.text);
            }
        }
    }

    void CustomSlot_data() {
        QTest::addColumn<int>("slot");
        QTest::addColumn<int>("item");
        QTest::addColumn<Orientation>("orientation");
        for (const Orientation orientation : kOrientations) {
            for (int slot = 0; slot < kSlotCount; ++slot) {
                for (const int item : kLiveItems) {
                    QTest::addRow("item %d in slot %d, %s", item, slot, NameOf(orientation).constData())
                        << slot << item << orientation;
                }
            }
        }
    }
    void CustomSlot() {
        QFETCH(int, slot);
        QFETCH(int, item);
        QFETCH(Orientation, orientation);
        const ScreenState state = CustomScreen(OnlySlot(slot, item), orientation);
        const QRect place = SlotRect(slot, orientation);
        const QVector<TextRun> runs = RunsOf(state);
        QCOMPARE(runs.size(), item == Time ? 1 : 2);

        const TextRun* value = Find(runs, item, TextRole::Value);
        QVERIFY(value != nullptr);
        QCOMPARE(value->rect, EvenPart(place));
        QCOMPARE(value->align, TextAlign::Centre);
        const int plain = item == Date ? 10 : 18;
        const int centre = item == Date ? 15 : 27;
        QCOMPARE(value->pixelSize, slot == kCentreSlot ? centre : plain);

        if (const TextRun* caption = Find(runs, item, TextRole::Caption); caption != nullptr) {
            QCOMPARE(caption->text, state.captions[size_t(item)]);
            QCOMPARE(caption->pixelSize, 10);
            QCOMPARE(caption->rect.top(), place.bottom() + 1);
            QVERIFY(caption->rect.left() <= place.left() && caption->rect.right() >= place.right());
            QVERIFY(caption->rect.width() <= place.width() + 20);
            QVERIFY(caption->rect.width() == place.width() + 20 || orientation == kStanding);
            QVERIFY(CanvasRect(orientation).contains(caption->rect));
            // Under the middle of its slot.
            QVERIFY(qAbs(caption->rect.center().x() - place.center().x()) <= 1);
        }
    }

    void NothingStandsInASlotWithoutAnItemOfOurs_data() {
        QTest::addColumn<int>("entry");
        QTest::newRow("empty") << kEmptySlot;
        QTest::newRow("free text") << int(OtherText);
        QTest::newRow("second free text") << int(OtherText2);
        QTest::newRow("no kind") << 9;
        QTest::newRow("noise") << 1000000;
        QTest::newRow("negative noise") << -77;
    }
    void NothingStandsInASlotWithoutAnItemOfOurs() {
        QFETCH(int, entry);
        for (int slot = 0; slot < kSlotCount; ++slot) {
            const ScreenState state = CustomScreen(OnlySlot(slot, entry), kLying);
            ItemTexts texts;
            texts.fill(QStringLiteral("text"));
            QVERIFY(LayOutTexts(state, texts).isEmpty());
        }
    }

    void AnItemThatIsNotTickedIsNotDrawn() {
        for (int variant = 0; variant < kVariantCount; ++variant) {
            ScreenState state = CustomScreen(OnlySlot(kCentreSlot, CpuUsage), kLying, kChinese, variant);
            QCOMPARE(RunsOf(state).size(), 2);
            // Each layout has flags of its own.
            (variant == 0 ? state.layout.selected : state.layout.shown).fill(true);
            (variant == 0 ? state.layout.shown : state.layout.selected).fill(false);
            QVERIFY(RunsOf(state).isEmpty());
        }
        ScreenState theme = ThemeScreen(Theme::Default, kLying);
        theme.layout.shown[MemoryUsage] = false;
        QVERIFY(Find(RunsOf(theme), MemoryUsage, TextRole::Value) == nullptr);
        QVERIFY(Find(RunsOf(theme), MemoryUsage, TextRole::Caption) == nullptr);
    }

    void TimeAndDateShareASlot_data() {
        QTest::addColumn<int>("slot");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<InterfaceLanguage>("language");
        for (const InterfaceLanguage language : kLanguages) {
            for (const Orientation orientation : kOrientations) {
                for (int slot = 0; slot < kSlotCount; ++slot) {
                    QTest::addRow("slot %d, %s, %s", slot, NameOf(orientation).constData(),
                                  NameOf(language).constData())
                        << slot << orientation << language;
                }
            }
        }
    }
    void TimeAndDateShareASlot() {
        QFETCH(int, slot);
        QFETCH(Orientation, orientation);
        QFETCH(InterfaceLanguage, language);
        const ScreenState state = SharedSlotScreen(slot, orientation, language);
        QVERIFY(TimeSlotHoldsDate(state));
        QCOMPARE(SlotOf(state, Date), slot);
        QCOMPARE(SlotOf(state, Time), slot);
        const QRect place = SlotRect(slot, orientation);
        for (const ItemTexts& texts : LiveTexts(language)) {
            const QVector<TextRun> runs = LayOutTexts(state, texts);
            const TextRun* time = Find(runs, Time, TextRole::Value);
            const TextRun* date = Find(runs, Date, TextRole::Value);
            QVERIFY(time != nullptr && date != nullptr);
            QVERIFY(place.contains(time->rect) && place.contains(date->rect));
            QVERIFY(!time->rect.intersects(date->rect));
            const QRect timeInk = InkOf(*time, orientation);
            const QRect dateInk = InkOf(*date, orientation);
            QVERIFY2(timeInk.bottom() < dateInk.top(), Describe(timeInk) + " and " + Describe(dateInk));
            QCOMPARE(FitRun(*time).text, texts[Time]);
            QCOMPARE(FitRun(*date).text, texts[Date]);
        }
    }

    // The one-item layout may have something left over in its other slots.
    void TheOneItemLayoutDrawsItsCentreSlotOnly() {
        const ScreenState state = CustomScreen({kEmptySlot, Time, Time, kEmptySlot, FanSpeed},
                                               Orientation::Landscape, InterfaceLanguage::Chinese, 1);
        QCOMPARE(SlotOf(state, Time), kCentreSlot);
        QVERIFY(!HasPlace(state, FanSpeed));
        for (int slot = 0; slot < kSlotCount; ++slot) {
            QCOMPARE(ItemDrawnIn(state, slot), slot == kCentreSlot ? int(Time) : kEmptySlot);
        }
    }

    void TheDateInASlotOfItsOwnSharesWithNobody() {
        SlotRow row = OnlySlot(0, Time);
        row[3] = Date;
        const ScreenState state = CustomScreen(row, kLying);
        QVERIFY(!TimeSlotHoldsDate(state));
        QCOMPARE(SlotOf(state, Date), 3);
        QCOMPARE(Find(RunsOf(state), Time, TextRole::Value)->rect, SlotRect(0, kLying));
        // The one-item layout shows one item.
        ScreenState one = CustomScreen(OnlySlot(kCentreSlot, Time), kLying, kChinese, 1);
        one.layout.selected[Date] = true;
        QVERIFY(!TimeSlotHoldsDate(one));
        QCOMPARE(RunsOf(one).size(), 1);
    }

    void EnglishDates_data() {
        QTest::addColumn<QString>("date");
        QTest::addColumn<QString>("english");
        QTest::newRow("sample") << QStringLiteral("2019年12月31日") << QStringLiteral("2019.12.31");
        QTest::newRow("single figures") << QStringLiteral("2024年1月2日") << QStringLiteral("2024.01.02");
        QTest::newRow("already with dots") << QStringLiteral("2024.01.02") << QStringLiteral("2024.01.02");
        QTest::newRow("with hyphens") << QStringLiteral("2019-12-31") << QStringLiteral("2019-12-31");
        QTest::newRow("empty") << QString() << QString();
        QTest::newRow("year only") << QStringLiteral("2019年") << QStringLiteral("2019年");
        QTest::newRow("signs in a wrong order")
            << QStringLiteral("31日12月2019年") << QStringLiteral("31日12月2019年");
    }
    void EnglishDates() {
        QFETCH(QString, date);
        QFETCH(QString, english);
        QCOMPARE(EnglishDate(date), english);
    }

    void OnlyTheEnglishInterfaceTurnsTheDate() {
        for (const InterfaceLanguage language : kLanguages) {
            ItemTexts texts;
            texts[Date] = QStringLiteral("2019年12月31日");
            for (const ScreenState& state : {ThemeScreen(Theme::Time, kLying, language),
                                             CustomScreen(OnlySlot(1, Date), kStanding, language)}) {
                QCOMPARE(Find(LayOutTexts(state, texts), Date, TextRole::Value)->text,
                         language == kEnglish ? QStringLiteral("2019.12.31") : texts[Date]);
            }
        }
    }

    void NoTwoTextsLieOverEachOther_data() { CaptionsAreShownWhole_data(); }
    void NoTwoTextsLieOverEachOther() {
        QFETCH(ScreenState, state);
        for (const ItemTexts& texts : LiveTexts(state.language)) {
            QImage taken = BlackCanvas(state.orientation);
            for (const TextRun& run : LayOutTexts(state, texts)) {
                QImage alone = BlackCanvas(state.orientation);
                QPainter painter(&alone);
                DrawTexts(painter, {run}, run.rect);
                painter.end();
                for (int y = run.rect.top(); y <= run.rect.bottom(); ++y) {
                    for (int x = run.rect.left(); x <= run.rect.right(); ++x) {
                        if (PixelAt(alone, x, y) != 0) {
                            QVERIFY2(PixelAt(taken, x, y) == 0, Describe(run) + " lies over another text");
                            reinterpret_cast<quint16*>(taken.scanLine(y))[x] = 1;
                        }
                    }
                }
            }
        }
    }

    void OnlyWhatReachesIntoTheRegionIsDrawn() {
        const ScreenState state = ThemeScreen(Theme::Default, kLying);
        const QVector<TextRun> runs = RunsOf(state);
        const QRect region = state.layout.textRect[CpuTemperature];
        QImage image = BlackCanvas(kLying);
        QPainter painter(&image);
        DrawTexts(painter, runs, region);
        painter.end();
        const QRect changed = ChangedRect(image, BlackCanvas(kLying));
        QVERIFY(!changed.isNull());
        QVERIFY2(region.contains(changed), Describe(changed));
    }
};

KIVO_TEST(TestItemDrawing)
#include "tst_item_drawing.moc"
