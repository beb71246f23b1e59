// Icons in an accent that is taken from the picture, over pictures of all kinds: 3 to 1 at least to the glass
// beside them.

#include <algorithm>

#include "compose/frame_composer.h"
#include "compose_test_support.h"
#include "grounds.h"
#include "light.h"
#include "skin_layers.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kRandomPictures = 50;

const QVector<Ground>& Grounds() {
    static const QVector<Ground> grounds = BuiltInGrounds() +
                                           QVector<Ground>{{"white", Plain(Qt::white)},
                                                           {"black", Plain(Qt::black)},
                                                           {"grey", Plain(QColor(128, 128, 128))},
                                                           {"yellow", Plain(Qt::yellow)},
                                                           {"pale blue", Plain(QColor(190, 220, 255))},
                                                           {"dark blue", Plain(QColor(0, 0, 90))}} +
                                           RandomGrounds(kRandomPictures);
    return grounds;
}

QVector<QPoint> BesideIcons(const QImage& icons) {
    constexpr int kNear = 2;
    QVector<QPoint> beside;
    for (int y = kNear; y < icons.height() - kNear; ++y) {
        for (int x = kNear; x < icons.width() - kNear; ++x) {
            const int around = qAlpha(icons.pixel(x - kNear, y)) + qAlpha(icons.pixel(x + kNear, y)) +
                               qAlpha(icons.pixel(x, y - kNear)) + qAlpha(icons.pixel(x, y + kNear));
            if (around > 200 && qAlpha(icons.pixel(x, y)) == 0) {
                beside.append({x, y});
            }
        }
    }
    return beside;
}

}  // namespace

class TestAccentContrast : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { SetUpDrawing(); }

    void IconsAreSeen_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("dim");
        QTest::addColumn<int>("blur");
        for (const Theme theme : kAccentThemes) {
            for (const Orientation orientation : kOrientations) {
                const QByteArray name = NameOf(theme) + ", " + NameOf(orientation);
                QTest::newRow(name) << theme << orientation << 0 << 0;
                QTest::newRow(name + ", soft") << theme << orientation << 30 << 50;
            }
        }
    }
    void IconsAreSeen() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QFETCH(int, dim);
        QFETCH(int, blur);
        ScreenState state = ThemeScreen(theme, orientation);
        state.layout.accentFromPicture = true;
        state.layout.dim = dim;
        state.layout.blur = blur;
        QVector<QVector<QPoint>> beside;
        for (const SkinLayer& layer : SkinLayers(theme, orientation)) {
            if (layer.path.contains(QLatin1String("_icon"))) {
                beside.append(BesideIcons(LayerOnPanel(layer, orientation)));
                QVERIFY(beside.last().size() > 20);
            }
        }
        QVERIFY(!beside.isEmpty());
        SkinCache skins;
        double worst = 21;
        QByteArray where;
        for (const Ground& ground : Grounds()) {
            const PanelBackground background = ComposeBackground(state, ground.picture, skins);
            const QRgb accent = background.accent.value_or(FactsOf(theme).accent);
            for (const QVector<QPoint>& points : qAsConst(beside)) {
                QVector<double> lights;
                for (const QPoint& at : points) {
                    lights.append(Light(background.image.pixel(at)));
                }
                std::sort(lights.begin(), lights.end());
                const double contrast = ContrastOf(Light(accent), lights[lights.size() * 95 / 100]);
                if (contrast < worst) {
                    worst = contrast;
                    where = QByteArray::number(worst) + " over " + ground.name + ", " +
                            QColor(accent).name().toLatin1();
                }
            }
        }
        qInfo("%s", where.constData());
        QVERIFY2(worst >= 3, where);
    }
};

KIVO_TEST(TestAccentContrast)
#include "tst_accent_contrast.moc"
