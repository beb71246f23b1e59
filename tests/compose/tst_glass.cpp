#include <QTest>

#include "compose/background_picture.h"
#include "compose/frame_composer.h"
#include "compose/frost.h"
#include "compose/glass.h"
#include "compose_test_support.h"
#include "pictures/picture_reader.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;
constexpr QRgb kInk = qRgb(0x07, 0x13, 0x26);

enum Color { White, Black, Orange, Yellow, Blue, Green };

QImage Filled(const QColor& color, QSize size = QSize(1280, 680)) {
    QImage image(size, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

ScreenState FiveItems(Orientation orientation) {
    return CustomScreen({CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower}, orientation);
}

ScreenState OnlyText(Orientation orientation, int color, const QString& text = QStringLiteral("Hello desk")) {
    ScreenState state = CustomScreen(kNoItems, orientation);
    state.layout.freeText = text;
    state.layout.colorIndex = color;
    return state;
}

QVector<GlassPlate> PlatesOver(const ScreenState& state, const QImage& picture) {
    const QImage placed =
        PlacedPicture(picture, CanvasSize(state.orientation), state.orientation, state.layout);
    return GlassPlates(state, placed, BlurredPicture(placed, CanvasSize(state.orientation)));
}

// The picture as it is placed, with no glass over it.
QImage Bare(const ScreenState& state, const QImage& picture) {
    return PlacedPicture(picture, AreaFrameSize(state.orientation), state.orientation, state.layout)
        .scaled(CanvasSize(state.orientation), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB16);
}

QImage Composed(const ScreenState& state, const QImage& picture) {
    SkinCache skins;
    return ComposeBackground(state, picture, skins).image;
}

// How much of its colour a picture keeps: the sum of what its channels lie apart, outside of plates.
double Colorfulness(const QImage& image, const QVector<GlassPlate>& plates) {
    double sum = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const bool isUnderGlass = std::any_of(plates.begin(), plates.end(), [&](const GlassPlate& plate) {
                return plate.rect.contains(x, y);
            });
            const QRgb pixel = image.pixel(x, y);
            sum += isUnderGlass ? 0
                                : qMax(qRed(pixel), qMax(qGreen(pixel), qBlue(pixel))) -
                                      qMin(qRed(pixel), qMin(qGreen(pixel), qBlue(pixel)));
        }
    }
    return sum;
}

}  // namespace

class TestGlass : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void ChipsLieUnderWhatStandsInSlots() {
        for (const Orientation orientation : kOrientations) {
            for (int slot = 0; slot < kSlotCount; ++slot) {
                for (const int item : {int(CpuUsage), int(Time)}) {
                    const auto plates =
                        PlatesOver(CustomScreen(OnlySlot(slot, item), orientation), Filled(Qt::black));
                    QCOMPARE(plates.size(), 1);
                    QCOMPARE(plates.first().rect, SlotChipRect(slot, orientation, item != Time));
                    QCOMPARE(plates.first().radius, 10.0);
                    QCOMPARE(plates.first().tint.rgb(), kInk);
                }
            }
            QVERIFY(PlatesOver(CustomScreen(kNoItems, orientation), Filled(Qt::white)).isEmpty());
            QCOMPARE(PlatesOver(FiveItems(orientation), Filled(Qt::white)).size(), 5);
            const ScreenState one =
                CustomScreen(OnlySlot(kCentreSlot, CpuPower), orientation, InterfaceLanguage::English, 1);
            QCOMPARE(PlatesOver(one, Filled(Qt::white)).size(), 1);
        }
    }

    // As strong as glass even on a dark picture, and no stronger than that on a white one, where white text
    // has five to one.
    void AChipIsAsStrongAsGlass() {
        for (const QColor& color : {QColor(Qt::black), QColor(90, 120, 60), QColor(Qt::white)}) {
            for (const GlassPlate& plate : PlatesOver(FiveItems(kLying), Filled(color))) {
                QCOMPARE(plate.strength, 0.62);
            }
        }
    }

    void ValuesHaveNoPartInIt() {
        ScreenState state = FiveItems(kLying);
        const QImage picture = LoadPicture(QStringLiteral("://background/6.png"));
        const QImage before = Composed(state, picture);
        state.layout.sample.fill(QStringLiteral("1"));
        QCOMPARE(Composed(state, picture), before);
    }

    void APictureIsItselfBesideTheGlass_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<Orientation>("orientation");
        for (int number = 1; number <= 11; ++number) {
            for (const Orientation orientation : kOrientations) {
                QTest::newRow(QByteArray::number(number) + ", " + NameOf(orientation))
                    << number << orientation;
            }
        }
    }
    void APictureIsItselfBesideTheGlass() {
        QFETCH(int, number);
        QFETCH(Orientation, orientation);
        const QImage picture = LoadPicture(BuiltInBackgrounds()[number - 1]);
        ScreenState state = FiveItems(orientation);
        state.layout.freeText = QStringLiteral("Kivo");
        const QImage bare = Bare(state, picture);
        const QImage composed = Composed(state, picture);
        const QVector<GlassPlate> plates = PlatesOver(state, picture);
        QVERIFY(plates.size() >= 5);
        for (int y = 0; y < bare.height(); ++y) {
            for (int x = 0; x < bare.width(); ++x) {
                const bool isNear = std::any_of(plates.begin(), plates.end(), [&](const GlassPlate& plate) {
                    // Reducing the composed frame carries an edge over by a pixel.
                    return plate.rect.adjusted(-1, -1, 1, 1).contains(x, y);
                });
                QVERIFY2(isNear || composed.pixel(x, y) == bare.pixel(x, y),
                         qPrintable(QStringLiteral("%1,%2").arg(x).arg(y)));
            }
        }
        QVERIFY(Colorfulness(composed, plates) >= 0.9 * Colorfulness(bare, plates));
    }

    // Edges of glass lie where the plates say, to the pixel, and their corners are round.
    void GlassLiesWhereThePlatesSay() {
        for (const Orientation orientation : kOrientations) {
            const ScreenState state = FiveItems(orientation);
            const QImage white = Composed(state, Filled(Qt::white));
            for (const GlassPlate& plate : PlatesOver(state, Filled(Qt::white))) {
                const QRect rect = plate.rect;
                const QPoint middle = rect.center();
                const auto isDark = [&](int x, int y) { return qGray(white.pixel(x, y)) < 215; };
                QVERIFY(isDark(rect.left(), middle.y()) && isDark(rect.right(), middle.y()));
                QVERIFY(isDark(middle.x(), rect.top() + 1) && isDark(middle.x(), rect.bottom()));
                QVERIFY(!isDark(rect.left() - 2, middle.y()) && !isDark(rect.right() + 2, middle.y()));
                QVERIFY(!isDark(middle.x(), rect.top() - 2) && !isDark(middle.x(), rect.bottom() + 2));
                QVERIFY(!isDark(rect.left(), rect.top()) && !isDark(rect.right(), rect.bottom()));
                QVERIFY(isDark(rect.left() + 5, rect.top() + 5));
            }
        }
    }

    void WhatIsUnderAChipIsFrosted() {
        QImage stripes(1280, 680, QImage::Format_RGB32);
        for (int y = 0; y < stripes.height(); ++y) {
            for (int x = 0; x < stripes.width(); ++x) {
                stripes.setPixel(x, y, x / 16 % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
            }
        }
        const ScreenState state = FiveItems(kLying);
        const QImage composed = Composed(state, stripes);
        // Four pixels wide on the panel: seen beside the chip, gone under it.
        const QRect chip = SlotChipRect(0, kLying, true);
        const auto spread = [&](int left, int right, int y) {
            int least = 255;
            int most = 0;
            for (int x = left; x <= right; ++x) {
                least = qMin(least, qGray(composed.pixel(x, y)));
                most = qMax(most, qGray(composed.pixel(x, y)));
            }
            return most - least;
        };
        QVERIFY(spread(110, 200, 20) > 200);
        QVERIFY2(spread(chip.left() + 12, chip.right() - 12, chip.top() + 8) < 25,
                 QByteArray::number(spread(chip.left() + 12, chip.right() - 12, chip.top() + 8)));
    }

    void APillOnlyWhereATextCannotBeRead_data() {
        QTest::addColumn<int>("color");
        QTest::addColumn<QColor>("picture");
        QTest::addColumn<bool>("hasPill");
        QTest::newRow("white on black") << int(White) << QColor(Qt::black) << false;
        QTest::newRow("white on dark grey") << int(White) << QColor(100, 100, 100) << false;
        QTest::newRow("white on grey") << int(White) << QColor(136, 136, 136) << true;
        QTest::newRow("white on white") << int(White) << QColor(Qt::white) << true;
        QTest::newRow("black on white") << int(Black) << QColor(Qt::white) << false;
        QTest::newRow("black on black") << int(Black) << QColor(Qt::black) << true;
        QTest::newRow("orange on black") << int(Orange) << QColor(Qt::black) << false;
        QTest::newRow("orange on aurora green") << int(Orange) << QColor(70, 230, 160) << true;
        QTest::newRow("yellow on black") << int(Yellow) << QColor(Qt::black) << false;
        QTest::newRow("yellow on sand") << int(Yellow) << QColor(240, 220, 190) << true;
        QTest::newRow("blue on black") << int(Blue) << QColor(Qt::black) << false;
        QTest::newRow("blue on night") << int(Blue) << QColor(30, 40, 70) << true;
        QTest::newRow("green on black") << int(Green) << QColor(Qt::black) << false;
        QTest::newRow("green on white") << int(Green) << QColor(Qt::white) << true;
    }
    void APillOnlyWhereATextCannotBeRead() {
        QFETCH(int, color);
        QFETCH(QColor, picture);
        QFETCH(bool, hasPill);
        for (const Orientation orientation : kOrientations) {
            const ScreenState state = OnlyText(orientation, color);
            const auto plates = PlatesOver(state, Filled(picture));
            QCOMPARE(plates.size(), hasPill ? 1 : 0);
            if (!hasPill) {
                QCOMPARE(Composed(state, Filled(picture)), Bare(state, Filled(picture)));
                continue;
            }
            QCOMPARE(plates.first().rect, LayOutFreeText(state).bounds.adjusted(-8, -4, 8, 4));
            QCOMPARE(plates.first().radius, 8.0);
            QCOMPARE(plates.first().tint.rgb(), color == Black ? qRgb(255, 255, 255) : kInk);
        }
    }

    void PillsOverWhite_data() {
        QTest::addColumn<int>("color");
        QTest::addColumn<double>("strength");
        QTest::newRow("green") << int(Green) << 0.79;
        QTest::newRow("orange") << int(Orange) << 0.88;
        QTest::newRow("blue") << int(Blue) << 0.96;
    }
    void PillsOverWhite() {
        QFETCH(int, color);
        QFETCH(double, strength);
        const auto plates = PlatesOver(OnlyText(kLying, color), Filled(Qt::white));
        QCOMPARE(plates.size(), 1);
        QVERIFY2(qAbs(plates.first().strength - strength) < 0.025,
                 QByteArray::number(plates.first().strength));
        QCOMPARE(PlatesOver(OnlyText(kLying, Black), Filled(Qt::black)).first().strength, 0.80);
    }

    // Only what its own letters stand on decides.
    void APillGoesByTheLettersOwnGround() {
        const ScreenState state = OnlyText(kLying, White);
        const QRect bounds = LayOutFreeText(state).bounds;
        QImage picture = Filled(Qt::white, CanvasSize(kLying));
        QPainter(&picture).fillRect(bounds.adjusted(-4, -4, 4, 4), Qt::black);
        QVERIFY(PlatesOver(state, picture).isEmpty());
        QImage inverse = Filled(Qt::black, CanvasSize(kLying));
        QPainter(&inverse).fillRect(bounds, Qt::white);
        QCOMPARE(PlatesOver(state, inverse).size(), 1);
    }

    void PillsKeepOffChips() {
        for (const Orientation orientation : kOrientations) {
            for (int row = 0; row < kTextRowCount; ++row) {
                ScreenState state = FiveItems(orientation);
                state.layout.freeText = QStringLiteral("Hello desk");
                state.textRow = row;
                const auto plates = PlatesOver(state, Filled(Qt::white));
                QCOMPARE(plates.size(), 6);
                for (int chip = 0; chip < 5; ++chip) {
                    QVERIFY(!plates[chip].rect.adjusted(-3, -3, 3, 3).intersects(plates[5].rect));
                }
            }
        }
    }

    void AThemeHasNoPlates() {
        for (const Theme theme : kThemes) {
            QVERIFY(PlatesOver(ThemeScreen(theme, kStanding), Filled(Qt::white)).isEmpty());
        }
    }
};

KIVO_TEST(TestGlass)
#include "tst_glass.moc"
