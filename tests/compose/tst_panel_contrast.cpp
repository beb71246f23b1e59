// Every text of every theme and layout against what it stands on, over pictures of all kinds, as they are and
// blurred and dimmed: 4.5 to 1 at least, but for one pixel in twenty. KIVO_CONTRAST_PICTURES=50 tries more
// random pictures and every colour and row of the free text over each.

#include <algorithm>

#include "compose/frame_composer.h"
#include "compose_test_support.h"
#include "grounds.h"
#include "light.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kFewPictures = 6;

int RandomPictures() {
    return qEnvironmentVariableIsSet("KIVO_CONTRAST_PICTURES")
               ? qEnvironmentVariableIntValue("KIVO_CONTRAST_PICTURES")
               : kFewPictures;
}

// The eleven built-in backgrounds, and the worst of the user's own.
const QVector<Ground>& Grounds() {
    static const QVector<Ground> grounds = [] {
        QVector<Ground> all = BuiltInGrounds();
        all.append({"white", Plain(Qt::white)});
        all.append({"black", Plain(Qt::black)});
        for (const Orientation orientation : kOrientations) {
            all.append({"chequer of the panel's pixels, " + NameOf(orientation),
                        Chequered(CanvasSize(orientation))});
        }
        all.append({"chequer of the frame's pixels", Chequered(AreaFrameSize(Orientation::Landscape))});
        return all + RandomGrounds(RandomPictures());
    }();
    return grounds;
}

// A text and the pixels it covers by half at least.
struct Written {
    QByteArray name;
    double light = 1;
    QVector<QPoint> ink;
};

// As it is, and softened each way, by turns.
ScreenState Softened(ScreenState state, int turn) {
    constexpr std::array<std::array<int, 2>, 4> kDimAndBlur{{{0, 0}, {0, 40}, {50, 0}, {30, 100}}};
    state.layout.dim = kDimAndBlur[size_t(turn) % kDimAndBlur.size()][0];
    state.layout.blur = kDimAndBlur[size_t(turn) % kDimAndBlur.size()][1];
    state.layout.accentFromPicture = turn % 2 != 0;  // what is lit by it is a little brighter or darker
    return state;
}

template <typename Draw>
QVector<QPoint> InkPixels(Orientation orientation, const Draw& draw) {
    QImage image(CanvasSize(orientation), QImage::Format_Grayscale8);
    image.fill(Qt::black);
    {
        QPainter painter(&image);
        draw(painter);
    }
    QVector<QPoint> ink;
    for (int y = 0; y < image.height(); ++y) {
        const uchar* row = image.constScanLine(y);
        for (int x = 0; x < image.width(); ++x) {
            if (row[x] >= 128) {
                ink.append({x, y});
            }
        }
    }
    return ink;
}

void AppendValues(QVector<Written>& written, const ScreenState& state) {
    QVector<ItemTexts> all = LiveTexts(state.language);
    all.append(SampleTexts(state.language));
    for (const ItemTexts& texts : qAsConst(all)) {
        for (const TextRun& run : LayOutTexts(state, texts)) {
            const auto ink =
                InkPixels(state.orientation, [&](QPainter& painter) { DrawTexts(painter, {run}, run.rect); });
            const bool isKnown =
                std::any_of(written.begin(), written.end(), [&](const Written& w) { return w.ink == ink; });
            if (!ink.isEmpty() && !isKnown) {
                written.append({Describe(run), 1, ink});
            }
        }
    }
}

Written FreeText(const ScreenState& state) {
    FreeTextBlock block = LayOutFreeText(state);
    const double light = Light(block.color.rgb());
    block.color = Qt::white;
    return {"free text", light, InkPixels(state.orientation, [&](QPainter& painter) {
                DrawFreeText(painter, block, block.bounds);
            })};
}

// The contrast that all ink pixels but one in twenty have at least.
double LeastContrast(const Written& written, const QVector<double>& lights, int width) {
    QVector<double> contrasts;
    contrasts.reserve(written.ink.size());
    for (const QPoint& at : written.ink) {
        contrasts.append(ContrastOf(written.light, lights[at.y() * width + at.x()]));
    }
    const int place = contrasts.size() / 20;
    std::nth_element(contrasts.begin(), contrasts.begin() + place, contrasts.end());
    return contrasts[place];
}

class Lights {
public:
    Lights() {
        for (int value = 0; value < 65536; ++value) {
            const auto wide = [](int level, int most) { return qRound(level * 255.0 / most); };
            m_light.append(
                Light(qRgb(wide(value >> 11, 31), wide(value >> 5 & 63, 63), wide(value & 31, 31))));
        }
    }
    QVector<double> Of(const QImage& frame) const {
        QVector<double> lights;
        lights.reserve(frame.width() * frame.height());
        for (int y = 0; y < frame.height(); ++y) {
            for (int x = 0; x < frame.width(); ++x) {
                lights.append(m_light[PixelAt(frame, x, y)]);
            }
        }
        return lights;
    }

private:
    QVector<double> m_light;
};

// The least contrast over all pictures and what has it.
class Worst {
public:
    void Look(const QVector<Written>& written, const QImage& frame, const QByteArray& ground) {
        static const Lights table;
        const QVector<double> lights = table.Of(frame);
        for (const Written& text : written) {
            const double contrast = LeastContrast(text, lights, frame.width());
            if (contrast < m_contrast) {
                m_contrast = contrast;
                m_where = text.name + " over " + ground;
            }
        }
    }
    double Contrast() const { return m_contrast; }
    QByteArray Where() const { return QByteArray::number(m_contrast) + ": " + m_where; }

private:
    double m_contrast = 21;
    QByteArray m_where;
};

}  // namespace

class TestPanelContrast : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void ThemesAreReadable_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        for (const Theme theme : kThemes) {
            for (const Orientation orientation : kOrientations) {
                QTest::newRow(NameOf(theme) + ", " + NameOf(orientation)) << theme << orientation;
            }
        }
    }
    void ThemesAreReadable() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QVector<Written> written;
        for (const InterfaceLanguage language : kLanguages) {
            for (const int style : {0, 1}) {
                ScreenState state = ThemeScreen(theme, orientation, language);
                state.style = style;
                AppendValues(written, state);
            }
        }
        const ScreenState state = ThemeScreen(theme, orientation);
        SkinCache skins;
        Worst worst;
        for (const Ground& ground : Grounds()) {
            for (const int turn : {0, 1, 2, 3}) {
                worst.Look(written, ComposeBackground(Softened(state, turn), ground.picture, skins).image,
                           ground.name + ", " + QByteArray::number(turn));
            }
        }
        qInfo("%s", worst.Where().constData());
        QVERIFY2(worst.Contrast() >= 4.5, worst.Where());
    }

    void CustomLayoutsAreReadable_data() {
        QTest::addColumn<ScreenState>("screen");
        for (const Orientation orientation : kOrientations) {
            const QByteArray end = ", " + NameOf(orientation);
            QTest::newRow("five values" + end)
                << CustomScreen({CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower}, orientation);
            QTest::newRow("five others" + end)
                << CustomScreen({Time, FanSpeed, CpuPower, Date, MemoryUsage}, orientation);
            ScreenState shared = CustomScreen({Time, FanSpeed, CpuUsage, CpuPower, kEmptySlot}, orientation);
            shared.layout.shown[Date] = true;
            QTest::newRow("time over date" + end) << shared;
            QTest::newRow("one value" + end) << CustomScreen(OnlySlot(kCentreSlot, CpuTemperature),
                                                             orientation, InterfaceLanguage::Chinese, 1);
            QTest::newRow("only the time" + end)
                << CustomScreen(OnlySlot(kCentreSlot, Time), orientation, InterfaceLanguage::Chinese, 1);
        }
    }
    void CustomLayoutsAreReadable() {
        QFETCH(ScreenState, screen);
        QVector<Written> written;
        for (const InterfaceLanguage language : kLanguages) {
            ScreenState state = screen;
            state.language = language;
            state.captions = CaptionsIn(language);
            AppendValues(written, state);
        }
        SkinCache skins;
        Worst worst;
        for (const Ground& ground : Grounds()) {
            for (const int turn : {0, 1, 2, 3}) {
                worst.Look(written, ComposeBackground(Softened(screen, turn), ground.picture, skins).image,
                           ground.name + ", " + QByteArray::number(turn));
            }
        }
        qInfo("%s", worst.Where().constData());
        QVERIFY2(worst.Contrast() >= 4.5, worst.Where());
    }

    void FreeTextIsReadable_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("color");
        for (const Orientation orientation : kOrientations) {
            for (int color = 0; color < kTextColorCount; ++color) {
                QTest::newRow(NameOf(orientation) + ", colour " + QByteArray::number(color))
                    << orientation << color;
            }
        }
    }
    void FreeTextIsReadable() {
        QFETCH(Orientation, orientation);
        QFETCH(int, color);
        const bool all = RandomPictures() > kFewPictures;
        const QStringList texts{QStringLiteral("Hello, my PC is cool"), QStringLiteral("你好，世界"),
                                QStringLiteral("Привет")};
        SkinCache skins;
        Worst worst;
        int turn = 0;
        for (const Ground& ground : Grounds()) {
            ++turn;
            for (int row = 0; row < kTextRowCount; ++row) {
                if (!all && (turn + color) % kTextRowCount != row) {
                    continue;
                }
                ScreenState state =
                    CustomScreen({CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower}, orientation);
                state.layout.freeText = texts[(turn + row) % texts.size()];
                state.layout.sizeIndex = turn % kTextSizeCount;
                state.layout.colorIndex = color;
                state.textRow = row;
                const QVector<Written> text{FreeText(state)};
                for (const int soft : {0, 1, 2, 3}) {
                    worst.Look(text, ComposeBackground(Softened(state, soft), ground.picture, skins).image,
                               ground.name + ", " + QByteArray::number(soft));
                }
            }
        }
        qInfo("%s", worst.Where().constData());
        QVERIFY2(worst.Contrast() >= 4.5, worst.Where());
    }
};

KIVO_TEST(TestPanelContrast)
#include "tst_panel_contrast.moc"
