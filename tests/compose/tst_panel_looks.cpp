#include <algorithm>
#include <cmath>

#include "compose/frame_composer.h"
#include "compose_test_support.h"
#include "pictures/picture_reader.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// What can be measured of how the panel looks: nothing is judged here, only what a person could not read.

namespace {

double Light(QRgb color) {
    const auto linear = [](int byte) {
        const double share = byte / 255.0;
        return share <= 0.04045 ? share / 12.92 : std::pow((share + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(qRed(color)) + 0.7152 * linear(qGreen(color)) + 0.0722 * linear(qBlue(color));
}

double Contrast(double a, double b) {
    return (qMax(a, b) + 0.05) / (qMin(a, b) + 0.05);
}

// The eleven built-in backgrounds, and the worst of the user's own.
struct Ground {
    QByteArray name;
    QImage picture;
};
const QVector<Ground>& Grounds() {
    static const QVector<Ground> grounds = [] {
        QVector<Ground> all;
        const QStringList paths = BuiltInBackgrounds();
        for (int k = 0; k < paths.size(); ++k) {
            all.append({"background " + QByteArray::number(k + 1), LoadPicture(paths[k])});
        }
        QImage white(1280, 680, QImage::Format_RGB32);
        white.fill(Qt::white);
        all.append({"white", white});
        return all;
    }();
    return grounds;
}

// Where the ink of a text can be.
QRect InkRect(const TextRun& run) {
    const FittedLine line = FitLine(run.text, run.pixelSize, run.rect, run.align);
    const LineMetrics metrics = MetricsOf(line.pixelSize);
    return QRect(line.baseLine.x(), line.baseLine.y() - metrics.digitHeight, line.width,
                 metrics.digitHeight) &
           run.rect;
}

QVector<double> LightsIn(const QImage& frame, const QRect& rect) {
    QVector<double> lights;
    const QRect inside = rect & frame.rect();
    for (int y = inside.top(); y <= inside.bottom(); ++y) {
        for (int x = inside.left(); x <= inside.right(); ++x) {
            lights.append(Light(frame.pixel(x, y)));
        }
    }
    std::sort(lights.begin(), lights.end());
    return lights;
}

// One layer of a skin as opacity on the panel's pixels.
QImage LayerOnPanel(const SkinLayer& layer, Orientation orientation) {
    QImage image(CanvasSize(orientation), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(layer.rect, QImage(layer.path));
    return image;
}

}  // namespace

class TestPanelLooks : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }

    void WhiteTextIsReadable_data() { AddScreens(); }
    // 4.5 to 1, on what the panel shows: skin over picture, reduced, in RGB565. A tick or hair that passes
    // near a letter is not what the letter is read against, so one pixel in a hundred may be brighter.
    void WhiteTextIsReadable() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QVector<TextRun> runs;
        for (const InterfaceLanguage language : kLanguages) {
            for (const int style : {0, 1}) {
                ScreenState state = ThemeScreen(theme, orientation, language);
                state.style = style;
                runs += LayOutTexts(state, LiveTexts(language)[3]);
            }
        }
        const ScreenState state = ThemeScreen(theme, orientation);
        SkinCache skins;
        for (const Ground& ground : Grounds()) {
            const QImage frame = ComposeBackground(state, ground.picture, skins);
            for (const TextRun& run : qAsConst(runs)) {
                const QVector<double> lights = LightsIn(frame, InkRect(run));
                QVERIFY(!lights.isEmpty());
                const double worst = Contrast(1, lights[lights.size() * 99 / 100]);
                QVERIFY2(worst >= 4.5,
                         ground.name + ", " + run.text.toUtf8() + ": " + QByteArray::number(worst));
            }
        }
    }

    void CustomLayoutsAreReadable_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::newRow("landscape") << Orientation::Landscape;
        QTest::newRow("portrait") << Orientation::Portrait;
    }
    // The veil is found for 95 % of the pixels; grain and RGB565 take a little of the rest. Over plain white
    // all that varies is the grain, and the ground is what it is on the whole.
    void CustomLayoutsAreReadable() {
        QFETCH(Orientation, orientation);
        SkinCache skins;
        for (const InterfaceLanguage language : kLanguages) {
            const SlotRow items = {{CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower}};
            ScreenState state = CustomScreen(items, orientation, language);
            state.layout.freeText = QStringLiteral("Kivo");
            for (const Ground& ground : Grounds()) {
                const QImage frame = ComposeBackground(state, ground.picture, skins);
                const PanelTexts texts = LayOutPanelTexts(state, LiveTexts(language)[1]);
                QVector<QRect> places = {texts.freeText.bounds};
                for (const TextRun& run : texts.runs) {
                    places.append(InkRect(run));
                }
                for (const QRect& rect : qAsConst(places)) {
                    const QVector<double> lights = LightsIn(frame, rect);
                    QVERIFY(!lights.isEmpty());
                    const int place = ground.name == "white" ? lights.size() / 2 : lights.size() * 9 / 10;
                    const double worst = Contrast(1, lights[place]);
                    QVERIFY2(worst >= 4.5, ground.name + ": " + QByteArray::number(worst));
                }
            }
        }
    }

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
            const QImage frame = ComposeBackground(state, ground.picture, skins);
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
            const double worst = Contrast(Light(color), beside[beside.size() * 95 / 100]);
            QVERIFY2(worst >= 3, ground.name + ": " + QByteArray::number(worst));
        }
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
        const QImage frame = ComposeBackground(state, Grounds()[number - 1].picture, skins);
        QVector<int> longest;  // of each row in the upper sixth, which no theme covers in full
        for (int y = 2; y < 28; ++y) {
            int run = 1;
            int best = 1;
            for (int x = 1; x < frame.width(); ++x) {
                run = frame.pixel(x, y) == frame.pixel(x - 1, y) ? run + 1 : 1;
                best = qMax(best, run);
            }
            longest.append(best);
        }
        std::sort(longest.begin(), longest.end());
        const int median = longest[longest.size() / 2];
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
