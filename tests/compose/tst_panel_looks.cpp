#include <algorithm>

#include "compose/frame_composer.h"
#include "compose_test_support.h"
#include "grounds.h"
#include "light.h"
#include "runs.h"
#include "skin_layers.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// What can be measured of how the panel looks: nothing is judged here, only what a person could not read.

namespace {

// The eleven built-in backgrounds, and the worst of the user's own.
const QVector<Ground>& Grounds() {
    static const QVector<Ground> grounds = BuiltInGrounds() + QVector<Ground>{{"white", Plain(Qt::white)}};
    return grounds;
}

}  // namespace

class TestPanelLooks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }

    void IconsAreSeen_data() { AddLayers("_icon"); }
    // 3 to 1 between an icon's colour and the brightest glass beside it.
    void IconsAreSeen() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QFETCH(int, layer);
        const ScreenState state = ThemeScreen(theme, orientation);
        const QImage icons = LayerOnPanel(SkinLayers(theme, orientation)[layer], orientation);
        QRgb color = 0;
        for (int y = 0; y < icons.height(); ++y) {
            for (int x = 0; x < icons.width(); ++x) {
                if (qAlpha(icons.pixel(x, y)) > qAlpha(color)) {
                    color = icons.pixel(x, y);
                }
            }
        }
        QVERIFY(qAlpha(color) > 200);
        SkinCache skins;
        for (const Ground& ground : Grounds()) {
            const QImage frame = ComposeBackground(state, ground.picture, skins).image;
            QVector<double> beside;
            for (int y = 2; y < icons.height() - 2; ++y) {
                for (int x = 2; x < icons.width() - 2; ++x) {
                    const bool near = qAlpha(icons.pixel(x - 2, y)) + qAlpha(icons.pixel(x + 2, y)) +
                                          qAlpha(icons.pixel(x, y - 2)) + qAlpha(icons.pixel(x, y + 2)) >
                                      200;
                    if (near && qAlpha(icons.pixel(x, y)) == 0) {
                        beside.append(Light(frame.pixel(x, y)));
                    }
                }
            }
            QVERIFY(beside.size() > 20);
            std::sort(beside.begin(), beside.end());
            const double worst = ContrastOf(Light(color), beside[beside.size() * 95 / 100]);
            QVERIFY2(worst >= 3, ground.name + ": " + QByteArray::number(worst));
        }
    }

    void TextsStandOnTheDrawingsAxis_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QVector<int>>("items");
        QTest::addColumn<double>("axis");
        QTest::newRow("the ring") << Theme::Default << Orientation::Landscape
                                  << QVector<int>{Time, Date, CpuPower} << 70.0;
        QTest::newRow("the ring, portrait")
            << Theme::Default << Orientation::Portrait << QVector<int>{Time, Date, CpuPower} << 85.5;
        QTest::newRow("the watch") << Theme::Time << Orientation::Landscape << QVector<int>{Time, Date}
                                   << 160.0;
        QTest::newRow("the watch, portrait")
            << Theme::Time << Orientation::Portrait << QVector<int>{Time, Date} << 85.0;
    }
    // To the pixel, with every text and in every language, values and captions alike.
    void TextsStandOnTheDrawingsAxis() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QFETCH(QVector<int>, items);
        QFETCH(double, axis);
        for (const InterfaceLanguage language : kLanguages) {
            const ScreenState state = ThemeScreen(theme, orientation, language);
            for (const ItemTexts& texts : LiveTexts(language)) {
                for (const TextRun& run : LayOutTexts(state, texts)) {
                    const FittedLine line = FitRun(run);
                    const double middle = line.baseLine.x() + line.width / 2.0;
                    QVERIFY2(!items.contains(run.item) || qAbs(middle - axis) <= 1,
                             Describe(run) + ": " + QByteArray::number(middle));
                }
            }
        }
    }

    // A caption and its icon are of one height in all four cards.
    void IconsStandBesideTheirCaptions() {
        const ScreenState state =
            ThemeScreen(Theme::Default, Orientation::Landscape, InterfaceLanguage::English);
        const QImage icons =
            LayerOnPanel(SkinLayers(Theme::Default, Orientation::Landscape)[2], Orientation::Landscape);
        QVector<int> distances;
        for (const TextRun& run : LayOutTexts(state, LiveTexts(state.language)[1])) {
            if (run.role != TextRole::Caption || run.item == CpuPower) {
                continue;
            }
            double sum = 0;
            double weight = 0;
            for (int y = run.rect.top() - 5; y < run.rect.top() + 25; ++y) {
                for (int x = run.rect.left() - 19; x < run.rect.left(); ++x) {
                    weight += qAlpha(icons.pixel(x, y));
                    sum += qAlpha(icons.pixel(x, y)) * (y + 0.5);
                }
            }
            QVERIFY(weight > 0);
            distances.append(qRound(4 * (sum / weight - FitRun(run).baseLine.y())));
        }
        QCOMPARE(distances.size(), 4);
        // Icons are of different shapes; the same in both rows would be off by a pixel, which is four here.
        const auto range = std::minmax_element(distances.begin(), distances.end());
        QVERIFY2(*range.second - *range.first <= 4, QByteArray::number(*range.second - *range.first));
    }

    void NoTextStandsOnAnOrnament_data() { AddScreens(); }
    // With the longest values as with the shortest: no stroke of a letter crosses a tick, a hair or an icon.
    void NoTextStandsOnAnOrnament() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QImage ink(CanvasSize(orientation), QImage::Format_RGB32);
        ink.fill(Qt::black);
        QPainter painter(&ink);
        for (const InterfaceLanguage language : kLanguages) {
            for (const int style : {0, 1}) {
                ScreenState state = ThemeScreen(theme, orientation, language);
                state.style = style;
                for (const ItemTexts& texts : LiveTexts(language)) {
                    DrawPanelTexts(painter, LayOutPanelTexts(state, texts), ink.rect());
                }
            }
        }
        painter.end();
        const QVector<SkinLayer> layers = SkinLayers(theme, orientation);
        for (int layer = 1; layer < layers.size(); ++layer) {
            const QImage art = LayerOnPanel(layers[layer], orientation);
            for (int y = 0; y < ink.height(); ++y) {
                for (int x = 0; x < ink.width(); ++x) {
                    // Faint arcs may pass under a letter's edge; what would be seen as touching may not.
                    const bool meet = qGray(ink.pixel(x, y)) > 96 && qAlpha(art.pixel(x, y)) > 72;
                    QVERIFY2(!meet, layers[layer].path.toUtf8() + " at " + QByteArray::number(x) + "," +
                                        QByteArray::number(y));
                }
            }
        }
    }

    // What is blurred has lost the grain that hides the panel's steps.
    void GlassHasNoBands_data() { BackgroundsHaveNoBands_data(); }
    void GlassHasNoBands() {
        QFETCH(int, number);
        QFETCH(int, most);
        for (const Theme theme : kAccentThemes) {
            const ScreenState state = ThemeScreen(theme, Orientation::Landscape);
            SkinCache skins;
            const QImage frame = ComposeBackground(state, Grounds()[number - 1].picture, skins).image;
            const QImage glass = skins.SkinOf(state, frame.size()).glassOnPanel;
            const int median = MedianRun(frame, 20, frame.height() - 20, glass);
            QVERIFY2(median <= most, NameOf(theme) + ": " + QByteArray::number(median));
        }
    }

    void BackgroundsHaveNoBands_data() {
        QTest::addColumn<int>("number");
        QTest::addColumn<int>("most");
        // A clean sky without grain has runs of 40 to 320 pixels of one colour.
        for (int number = 1; number <= 11; ++number) {
            QTest::addRow("background %d", number) << number << 12;
        }
    }
    void BackgroundsHaveNoBands() {
        QFETCH(int, number);
        QFETCH(int, most);
        const ScreenState state = ThemeScreen(Theme::Scene, Orientation::Landscape);
        SkinCache skins;
        const QImage frame = ComposeBackground(state, Grounds()[number - 1].picture, skins).image;
        // Of the rows in the upper sixth, which no theme covers in full.
        const int median = MedianRun(frame, 2, 28);
        QVERIFY2(median <= most, QByteArray::number(median));
    }

private:
    static void AddScreens() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        for (const Theme theme : kThemes) {
            for (const Orientation orientation : kOrientations) {
                QTest::newRow(NameOf(theme) + ", " + NameOf(orientation)) << theme << orientation;
            }
        }
    }
    static void AddLayers(const char* name) {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("layer");
        for (const Theme theme : kThemes) {
            for (const Orientation orientation : kOrientations) {
                const QVector<SkinLayer> layers = SkinLayers(theme, orientation);
                for (int layer = 0; layer < layers.size(); ++layer) {
                    if (layers[layer].path.contains(QLatin1String(name))) {
                        QTest::newRow(NameOf(orientation) + ", " + layers[layer].path.toUtf8())
                            << theme << orientation << layer;
                    }
                }
            }
        }
    }
};

KIVO_TEST(TestPanelLooks)

#include "tst_panel_looks.moc"
