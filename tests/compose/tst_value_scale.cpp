#include <QTest>

#include "compose/frame_composer.h"
#include "compose/live_renderer.h"
#include "compose/rgb565.h"
#include "compose/value_scale.h"
#include "compose_test_support.h"
#include "ink.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr QRgb kMint = FactsOf(Theme::Default).accent;
constexpr QRgb kAmber = 0xFFFFB45A;
constexpr QRgb kRed = 0xFFFF6B5E;
constexpr std::array<int, 3> kItemsWithScale{CpuTemperature, CpuUsage, MemoryUsage};

QString Degrees(int value) {
    return QString::number(value) + QStringLiteral("℃");
}
QString Percent(int value) {
    return QString::number(value) + QLatin1Char('%');
}

QVector<TextRun> RunsWithScale(const ScreenState& state) {
    QVector<TextRun> runs;
    for (const TextRun& run : LayOutTexts(state, LiveTexts(state.language)[0])) {
        if (!run.scale.rect.isEmpty()) {
            runs.append(run);
        }
    }
    return runs;
}

QImage Drawn(int item, const QString& text) {
    QImage image(42, 3, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    DrawValueScale(painter, {image.rect(), kMint}, item, text);
    return image;
}

}  // namespace

class TestValueScale : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void AsManyAreLitAsTheValueHasOfItsRange_data() {
        QTest::addColumn<int>("item");
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("lit");
        const auto row = [](const char* name, int item, const QString& text, int lit) {
            QTest::newRow(name) << item << text << lit;
        };
        row("cool", CpuTemperature, Degrees(30), 0);
        row("colder than that", CpuTemperature, Degrees(-5), 0);
        row("a ninth", CpuTemperature, Degrees(38), 1);
        row("warm", CpuTemperature, Degrees(65), 5);
        row("nearly all", CpuTemperature, Degrees(95), 8);
        row("hot", CpuTemperature, Degrees(100), 9);
        row("hotter than that", CpuTemperature, Degrees(117), 9);
        row("no load", CpuUsage, Percent(0), 0);
        row("little", CpuUsage, Percent(5), 0);
        row("a little", CpuUsage, Percent(6), 1);
        row("half", CpuUsage, Percent(50), 5);
        row("all", MemoryUsage, Percent(100), 9);
        row("blank in front", MemoryUsage, QStringLiteral(" 7%"), 1);
        row("no reading", CpuTemperature, QStringLiteral("--℃"), 0);
        row("no text", CpuUsage, QString(), 0);
        row("another item", CpuPower, QStringLiteral("65w"), 0);
    }
    void AsManyAreLitAsTheValueHasOfItsRange() {
        QFETCH(int, item);
        QFETCH(QString, text);
        QFETCH(int, lit);
        QCOMPARE(LitTicks(RangeShare(item, text)), lit);
        const QImage drawn = Drawn(item, text);
        for (int tick = 0; tick < 9; ++tick) {
            const bool isLit = qGreen(drawn.pixel(5 * tick, 0)) > 128;
            QCOMPARE(isLit, tick < lit);
            QCOMPARE(drawn.pixel(5 * tick, 0), drawn.pixel(5 * tick + 1, 2));
            QVERIFY(drawn.pixel(5 * tick, 0) != qRgb(0, 0, 0));
            if (tick < 8) {
                QCOMPARE(drawn.pixel(5 * tick + 2, 1), qRgb(0, 0, 0));
            }
        }
    }

    void NineTenthsWarn_data() {
        QTest::addColumn<int>("item");
        QTest::addColumn<QString>("text");
        QTest::addColumn<QRgb>("accent");
        QTest::addColumn<QRgb>("colour");
        QTest::newRow("load below") << int(CpuUsage) << Percent(89) << kMint << kMint;
        QTest::newRow("load") << int(CpuUsage) << Percent(90) << kMint << kAmber;
        QTest::newRow("memory") << int(MemoryUsage) << Percent(100) << kMint << kAmber;
        QTest::newRow("warm") << int(CpuTemperature) << Degrees(92) << kMint << kMint;
        QTest::newRow("hot") << int(CpuTemperature) << Degrees(93) << kMint << kAmber;
        QTest::newRow("amber accent") << int(CpuUsage) << Percent(95) << FactsOf(Theme::Tdp).accent << kRed;
        QTest::newRow("white accent") << int(CpuUsage) << Percent(95) << kNoAccent << kAmber;
        QTest::newRow("no reading") << int(CpuTemperature) << QStringLiteral("--℃") << kMint << kMint;
    }
    void NineTenthsWarn() {
        QFETCH(int, item);
        QFETCH(QString, text);
        QFETCH(QRgb, accent);
        QFETCH(QRgb, colour);
        QCOMPARE(TickColour(RangeShare(item, text), accent), colour);
    }

    void TheyStandAtTheFootOfTheValue() {
        const auto rows = [](Orientation orientation) {
            QVector<int> tops;
            for (const TextRun& run : RunsWithScale(ThemeScreen(Theme::Default, orientation))) {
                tops.append(run.scale.rect.top());
            }
            return tops;
        };
        QCOMPARE(rows(Orientation::Landscape), QVector<int>({59, 140, 59}));
        QCOMPARE(rows(Orientation::Portrait), QVector<int>({212, 293, 212}));
        for (const Orientation orientation : kOrientations) {
            const ScreenState state = ThemeScreen(Theme::Default, orientation);
            for (const TextRun& run : RunsWithScale(state)) {
                QVERIFY(run.rect.contains(run.scale.rect));
                QCOMPARE(run.scale.rect.size(), QSize(42, 3));
                const QRect tile = state.layout.tile[size_t(run.item)];
                QCOMPARE(run.scale.rect.left() - tile.left(), tile.right() - run.scale.rect.right());
            }
        }
    }

    void OnlyTheDefaultThemeHasThem() {
        for (const Orientation orientation : kOrientations) {
            QCOMPARE(RunsWithScale(ThemeScreen(Theme::Default, orientation)).size(), 3);
            for (const Theme theme : {Theme::Scene, Theme::Tdp, Theme::Time}) {
                QVERIFY(RunsWithScale(ThemeScreen(theme, orientation)).isEmpty());
            }
            const SlotRow items{{CpuTemperature, CpuUsage, MemoryUsage, FanSpeed, CpuPower}};
            QVERIFY(RunsWithScale(CustomScreen(items, orientation)).isEmpty());
        }
    }

    void SomebodysOwnRectangle_data() {
        QTest::addColumn<QRect>("text");
        QTest::addColumn<QRect>("tile");
        QTest::addColumn<QRect>("scale");
        const QRect tile(100, 50, 82, 79);
        QTest::newRow("just wide enough") << QRect(90, 60, 42, 24) << tile << QRect(90, 81, 42, 3);
        QTest::newRow("far from its tile") << QRect(10, 60, 60, 24) << tile << QRect(28, 81, 42, 3);
        QTest::newRow("too narrow") << QRect(90, 60, 41, 24) << tile << QRect();
        QTest::newRow("too low") << QRect(90, 60, 60, 19) << tile << QRect();
        QTest::newRow("none") << QRect() << tile << QRect();
    }
    void SomebodysOwnRectangle() {
        QFETCH(QRect, text);
        QFETCH(QRect, tile);
        QFETCH(QRect, scale);
        QCOMPARE(ScaleRect(text, tile), scale);
    }

    void NoTextTouchesThem() {
        for (const Orientation orientation : kOrientations) {
            for (const InterfaceLanguage language : kLanguages) {
                const ScreenState state = ThemeScreen(Theme::Default, orientation, language);
                for (const ItemTexts& texts : LiveTexts(language)) {
                    for (const TextRun& run : LayOutTexts(state, texts)) {
                        if (!run.scale.rect.isEmpty() && !run.text.isEmpty()) {
                            const int free = run.scale.rect.top() - Ink::Of(run).Bounds().bottom() - 1;
                            QVERIFY2(free >= 1, Describe(run) + ": " + QByteArray::number(free));
                        }
                    }
                }
            }
        }
    }

    void TheyHaveTheAccentOfThePicture() {
        const ScreenState state = ThemeScreen(Theme::Default, Orientation::Landscape);
        ItemTexts texts;
        texts[CpuUsage] = Percent(50);
        const auto accentAt = [&](const PanelBackground& background) {
            for (const TextRun& run : LayOutTexts(state, texts)) {
                if (run.item == CpuUsage && !run.scale.rect.isEmpty()) {
                    return ComposeFrame(state, background, texts).pixel(run.scale.rect.topLeft());
                }
            }
            return QRgb(0);
        };
        const QImage black = BlackCanvas(state.orientation);
        const auto onPanel = [](QRgb color) {
            QImage one(1, 1, QImage::Format_RGB16);
            one.fill(QColor(color));
            return one.pixel(0, 0);
        };
        QCOMPARE(accentAt({black}), onPanel(kMint));
        QCOMPARE(accentAt({black, 0xFF9A7BFF}), onPanel(0xFF9A7BFF));
    }

    // What is sent for a value brings its ticks: the panel then has what a whole frame would have drawn.
    void TheyTravelWithTheValue_data() {
        QTest::addColumn<std::optional<QRgb>>("accent");
        QTest::newRow("the theme's accent") << std::optional<QRgb>();
        QTest::newRow("the picture's accent") << std::optional<QRgb>(0xFF9A7BFF);
    }
    void TheyTravelWithTheValue() {
        QFETCH(std::optional<QRgb>, accent);
        for (const Orientation orientation : kOrientations) {
            const ScreenState state = ThemeScreen(Theme::Default, orientation);
            const PanelBackground background{NoisyCanvas(orientation), accent};
            ItemTexts texts = LiveTexts(state.language)[0];
            QImage panel = ComposeFrame(state, background, texts);
            for (const int item : kItemsWithScale) {
                for (const int value : {31, 64, 96, 100, 7}) {
                    texts[size_t(item)] = item == CpuTemperature ? Degrees(value) : Percent(value);
                    const LiveUpdate update = RenderItem(state, background, texts, item, false);
                    QCOMPARE(update.cuts.size(), 1);
                    const QRect rect = update.cuts.first().canvasRect;
                    const QImage whole = ComposeFrame(state, background, texts);
                    QVERIFY(rect.contains(ChangedRect(panel, whole)));
                    QCOMPARE(update.cuts.first().pixels, WirePixels(whole, rect, orientation));
                    panel = whole;
                }
            }
        }
    }
};

KIVO_TEST(TestValueScale)
#include "tst_value_scale.moc"
