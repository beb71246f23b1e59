#include <QTest>
#include <algorithm>

#include "compose/background_picture.h"
#include "compose/frame_composer.h"
#include "compose_test_support.h"
#include "pictures/picture_reader.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr auto kLying = Orientation::Landscape;
constexpr auto kStanding = Orientation::Portrait;

QImage Filled(const QColor& color) {
    QImage image(1280, 680, QImage::Format_RGB32);
    image.fill(color);
    return image;
}

QImage Background(const ScreenState& state, const QImage& picture) {
    SkinCache skins;
    return ComposeBackground(state, picture, skins).image;
}

// The picture as it is placed, with no skin over it.
QImage Bare(const ScreenState& state, const QImage& picture) {
    return PlacedPicture(picture, AreaFrameSize(state.orientation), state.orientation, state.layout)
        .scaled(CanvasSize(state.orientation), Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB16);
}

ScreenState FiveItems(Orientation orientation) {
    return CustomScreen({CpuTemperature, CpuUsage, Time, MemoryUsage, CpuPower}, orientation);
}

ScreenState Soft(ScreenState state, int dim, int blur) {
    state.layout.dim = dim;
    state.layout.blur = blur;
    return state;
}

// The longest run of one colour in each row, of half the rows.
int UsualRun(const QImage& image) {
    QVector<int> longest;
    for (int y = 0; y < image.height(); ++y) {
        int run = 1;
        int best = 1;
        for (int x = 1; x < image.width(); ++x) {
            run = PixelAt(image, x, y) == PixelAt(image, x - 1, y) ? run + 1 : 1;
            best = qMax(best, run);
        }
        longest.append(best);
    }
    std::sort(longest.begin(), longest.end());
    return longest[longest.size() / 2];
}

int Brightness(const QImage& image, QPoint at) {
    return qGray(image.pixel(at));
}

QVector<NamedScreen> Screens() {
    QVector<NamedScreen> screens = AllThemeScreens();
    screens.append({"five items, landscape", FiveItems(kLying)});
    screens.append({"five items, portrait", FiveItems(kStanding)});
    return screens;
}

}  // namespace

class TestFrameComposer : public QObject {
    Q_OBJECT

private slots:
    void initTestCase() { SetUpDrawing(); }

    void SizeAndFormat_data() {
        QTest::addColumn<ScreenState>("state");
        for (const NamedScreen& screen : Screens()) {
            QTest::newRow(screen.name) << screen.state;
        }
    }
    void SizeAndFormat() {
        QFETCH(ScreenState, state);
        for (const QImage& picture : {QImage(), Filled(Qt::red), Filled(Qt::red).scaled(7, 900)}) {
            const QImage background = Background(state, picture);
            QCOMPARE(background.size(), CanvasSize(state.orientation));
            QCOMPARE(background.format(), QImage::Format_RGB16);
            const QImage frame = ComposeFrame(state, {background}, LiveTexts(state.language)[1]);
            QCOMPARE(frame.size(), background.size());
            QCOMPARE(frame.format(), QImage::Format_RGB16);
        }
    }

    void WithoutAPictureTheSkinLiesOnBlack() {
        for (const Orientation orientation : kOrientations) {
            const ScreenState empty = CustomScreen(kNoItems, orientation);
            QVERIFY(ChangedRect(Background(empty, QImage()), BlackCanvas(orientation)).isNull());
            for (const Theme theme : kThemes) {
                const ScreenState state = ThemeScreen(theme, orientation);
                const QImage background = Background(state, QImage());
                QVERIFY(ChangedRect(background, Background(state, Filled(Qt::black))).isNull());
                // Ticks, edges and icons still show.
                QVERIFY(!ChangedRect(background, BlackCanvas(orientation)).isNull());
            }
        }
    }

    void TheBackgroundHoldsNoText_data() { SizeAndFormat_data(); }
    void TheBackgroundHoldsNoText() {
        QFETCH(ScreenState, state);
        const QImage picture = LoadPicture(DefaultBackground());
        const QImage background = Background(state, picture);
        ScreenState other = state;
        other.captions.fill(QStringLiteral("other"));
        other.layout.sample.fill(QStringLiteral("other"));
        if (!state.custom) {  // a custom layout's glass lies where something stands
            other.layout.freeText = QStringLiteral("other");
            other.layout.shown.fill(false);
        }
        QVERIFY(ChangedRect(Background(other, picture), background).isNull());
    }

    // On the frame that skins are made for it is the panel's background before it is reduced and brought to
    // the panel's colours, which are spread by a level under glass.
    void AMagnifiedBackgroundIsThePanels_data() {
        QTest::addColumn<ScreenState>("state");
        for (const NamedScreen& screen : Screens()) {
            QTest::newRow(screen.name) << screen.state;
            if (screen.state.language == InterfaceLanguage::Chinese) {
                QTest::newRow(screen.name + ", soft") << Soft(screen.state, 30, 60);
            }
        }
    }
    void AMagnifiedBackgroundIsThePanels() {
        QFETCH(ScreenState, state);
        const QImage picture(QStringLiteral("://background/4.jpg"));
        SkinCache skins;
        const QImage magnified =
            ComposeMagnifiedBackground(state, picture, skins, AreaFrameSize(state.orientation)).image;
        const QImage reduced =
            magnified.scaled(CanvasSize(state.orientation), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const QImage background = Background(state, picture);
        for (int y = 0; y < reduced.height(); ++y) {
            for (int x = 0; x < reduced.width(); ++x) {
                const QRgb here = reduced.pixel(x, y);
                const QRgb there = background.pixel(x, y);
                QVERIFY(qAbs(qRed(here) - qRed(there)) <= 13 && qAbs(qGreen(here) - qGreen(there)) <= 7 &&
                        qAbs(qBlue(here) - qBlue(there)) <= 13);
            }
        }
        const QSize twice = AreaFrameSize(state.orientation) * 2;
        const QImage large = ComposeMagnifiedBackground(state, picture, skins, twice).image;
        QCOMPARE(large.size(), twice);
        QCOMPARE(large.format(), QImage::Format_RGB32);
        // The same brightness all over: frost and glass are as strong as the panel's.
        const QImage one = magnified.scaled(8, 8, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        const QImage two = large.scaled(8, 8, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
        for (int k = 0; k < 64; ++k) {
            QVERIFY(qAbs(Brightness(one, {k % 8, k / 8}) - Brightness(two, {k % 8, k / 8})) <= 3);
        }
    }

    void TextsChangeTheirRectanglesOnly_data() { SizeAndFormat_data(); }
    void TextsChangeTheirRectanglesOnly() {
        QFETCH(ScreenState, state);
        const QImage background = NoisyCanvas(state.orientation);
        const ItemTexts texts = LiveTexts(state.language)[3];
        QImage frame = ComposeFrame(state, {background}, texts);
        QVERIFY(!ChangedRect(frame, background).isNull());
        for (const TextRun& run : LayOutTexts(state, texts)) {
            QVERIFY2(!ChangedRect(frame.copy(run.rect), background.copy(run.rect)).isNull(), Describe(run));
        }
        QPainter painter(&frame);
        for (const TextRun& run : LayOutTexts(state, texts)) {
            painter.drawImage(run.rect.topLeft(), background, run.rect);
        }
        painter.end();
        QVERIFY(ChangedRect(frame, background).isNull());
    }

    void WithoutTextsOnlyCaptionsAndUnlitTicksShow_data() { SizeAndFormat_data(); }
    void WithoutTextsOnlyCaptionsAndUnlitTicksShow() {
        QFETCH(ScreenState, state);
        const QImage background = NoisyCanvas(state.orientation);
        QImage ticks = background;
        QImage both = background;
        for (const TextRun& run : LayOutTexts(state, ItemTexts())) {
            QVERIFY(run.text.isEmpty() || run.role == TextRole::Caption);
            for (QImage* image : {&ticks, &both}) {
                QPainter painter(image);
                DrawValueScale(painter, run.scale, run.item, QString());
            }
            QPainter painter(&both);
            DrawTexts(painter, {run}, both.rect());
        }
        QVERIFY(ChangedRect(ComposeFrame(state, {background}, ItemTexts()), both).isNull());
        ScreenState mute = state;
        mute.captions.fill(QString());
        QVERIFY(ChangedRect(ComposeFrame(mute, {background}, ItemTexts()), ticks).isNull());
    }

    void AnEmptyFreeTextDoesNotChangeTheFrame() {
        for (const Orientation orientation : kOrientations) {
            ScreenState state = FiveItems(orientation);
            const ItemTexts texts = LiveTexts(state.language)[1];
            const QImage background = NoisyCanvas(orientation);
            const QImage without = ComposeFrame(state, {background}, texts);
            state.layout.sizeIndex = 2;
            state.layout.colorIndex = 3;
            state.textRow = 0;
            QVERIFY(ChangedRect(ComposeFrame(state, {background}, texts), without).isNull());
            state.layout.freeText = QStringLiteral("text");
            QVERIFY(!ChangedRect(ComposeFrame(state, {background}, texts), without).isNull());
        }
    }

    void GlassDarkensThePicture_data() {
        QTest::addColumn<Theme>("theme");
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<QPoint>("glass");
        QTest::newRow("default: left card") << Theme::Default << kLying << QPoint(20, 150);
        QTest::newRow("default: lower right card") << Theme::Default << kLying << QPoint(300, 110);
        QTest::newRow("default, portrait: top card") << Theme::Default << kStanding << QPoint(15, 20);
        QTest::newRow("scene: foot") << Theme::Scene << kLying << QPoint(20, 165);
        QTest::newRow("scene, portrait: foot") << Theme::Scene << kStanding << QPoint(20, 312);
        QTest::newRow("TDP: dial") << Theme::Tdp << kLying << QPoint(120, 120);
        QTest::newRow("TDP: wing") << Theme::Tdp << kLying << QPoint(20, 50);
        QTest::newRow("TDP, portrait: dial") << Theme::Tdp << kStanding << QPoint(60, 180);
        QTest::newRow("time: watch") << Theme::Time << kLying << QPoint(120, 95);
        QTest::newRow("time, portrait: upper card") << Theme::Time << kStanding << QPoint(20, 75);
    }
    void GlassDarkensThePicture() {
        QFETCH(Theme, theme);
        QFETCH(Orientation, orientation);
        QFETCH(QPoint, glass);
        const ScreenState state = ThemeScreen(theme, orientation);
        const QImage white = Background(state, Filled(Qt::white));
        QVERIFY2(Brightness(white, glass) < 140, QByteArray::number(Brightness(white, glass)));
        // Smoked, not black: the picture is seen through it.
        const QImage black = Background(state, Filled(Qt::black));
        QVERIFY(Brightness(white, glass) > Brightness(black, glass) + 20);
    }

    // To the pixel: what a skin leaves free is the picture as it is, and what its glass covers is frosted.
    // Standing frames are composed in the panel's own pixels.
    void FrostLiesUnderGlassAndNowhereElse_data() {
        QTest::addColumn<Theme>("theme");
        QTest::newRow("default") << Theme::Default;
        QTest::newRow("TDP") << Theme::Tdp;
        QTest::newRow("time") << Theme::Time;
    }
    void FrostLiesUnderGlassAndNowhereElse() {
        QFETCH(Theme, theme);
        const ScreenState state = ThemeScreen(theme, kStanding);
        const QSize size = CanvasSize(kStanding);
        QImage stripes(size, QImage::Format_RGB32);
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                stripes.setPixel(x, y, x / 3 % 2 == 0 ? qRgb(255, 255, 255) : qRgb(0, 0, 0));
            }
        }
        const QImage composed = Background(state, stripes);
        const QImage bare = Bare(state, stripes);
        const QImage grey = Background(state, Filled(qRgb(128, 128, 128)));
        SkinCache skins;
        const QImage drawing = skins.SkinOf(state, size).drawing;
        const QImage glass(SkinPicture(theme, kStanding));
        // Along its edge a pixel is glass in part.
        const auto isInGlass = [&glass](int x, int y) {
            for (const QPoint& at :
                 {QPoint(x - 1, y), QPoint(x + 1, y), QPoint(x, y - 1), QPoint(x, y + 1)}) {
                if (!glass.rect().contains(at) || qAlpha(glass.pixel(at)) < 140) {
                    return false;
                }
            }
            return true;
        };
        int free = 0;
        int frosted = 0;
        for (int y = 0; y < size.height(); ++y) {
            for (int x = 0; x < size.width(); ++x) {
                const QByteArray here = QByteArray::number(x) + "," + QByteArray::number(y);
                if (qAlpha(drawing.pixel(x, y)) == 0) {
                    QVERIFY2(composed.pixel(x, y) == bare.pixel(x, y), here);
                    ++free;
                } else if (isInGlass(x, y)) {
                    // The stripes are gone: it is the glass over their mean.
                    QVERIFY2(qAbs(qGray(composed.pixel(x, y)) - qGray(grey.pixel(x, y))) <= 16, here);
                    ++frosted;
                }
            }
        }
        QVERIFY(free > 1000);
        QVERIFY(frosted > 30000);
    }

    void ThePictureIsSeenInEveryTheme_data() { SizeAndFormat_data(); }
    void ThePictureIsSeenInEveryTheme() {
        QFETCH(ScreenState, state);
        const QImage red = Background(state, Filled(Qt::red));
        const QImage blue = Background(state, Filled(Qt::blue));
        int same = 0;
        for (int y = 0; y < red.height(); ++y) {
            for (int x = 0; x < red.width(); ++x) {
                same += PixelAt(red, x, y) == PixelAt(blue, x, y) ? 1 : 0;
            }
        }
        QVERIFY2(same < red.width() * red.height() / 50, QByteArray::number(same));
    }

    void TheSceneLeavesTheUpperPictureAlone_data() {
        QTest::addColumn<Orientation>("orientation");
        QTest::addColumn<int>("height");
        QTest::newRow("landscape") << kLying << 170 * 42 / 100;
        QTest::newRow("portrait") << kStanding << 320 * 40 / 100;
    }
    void TheSceneLeavesTheUpperPictureAlone() {
        QFETCH(Orientation, orientation);
        QFETCH(int, height);
        const ScreenState state = ThemeScreen(Theme::Scene, orientation);
        for (const QString& path : BuiltInBackgrounds()) {
            const QImage picture = LoadPicture(path);
            const QRect upper(0, 0, CanvasSize(orientation).width(), height);
            QVERIFY(ChangedRect(Background(state, picture).copy(upper), Bare(state, picture).copy(upper))
                        .isNull());
        }
    }

    // Chips and themes alike: the picture behind them is dimmed, then frosted.
    void ADimmedScreenIsDarkerEverywhereBesideItsTexts() {
        const QImage white = Filled(Qt::white);
        for (const ScreenState& state : {ThemeScreen(Theme::Scene, kLying), FiveItems(kStanding)}) {
            QCOMPARE(Brightness(Background(state, white), {2, 2}), 255);
            for (const int dim : {10, 50, 100}) {
                const int left = Brightness(Background(Soft(state, dim, 0), white), {2, 2});
                QVERIFY2(qAbs(left - (255 - 204 * dim / 100)) <= 9, QByteArray::number(left));
            }
        }
    }

    // Eight bytes of a slope are one level of the panel, 20 of its pixels here; dimmed they are more. Without
    // anything done about it they would be bands.
    void SoftPicturesHaveNoBands() {
        QImage slope(1280, 680, QImage::Format_RGB32);
        for (int y = 0; y < slope.height(); ++y) {
            for (int x = 0; x < slope.width(); ++x) {
                const int light = 40 + (x + y) / 16;
                slope.setPixel(x, y, qRgb(light, light + 7, light + 30));
            }
        }
        const ScreenState state = ThemeScreen(Theme::Scene, kStanding);
        const auto upper = [&](int dim, int blur) {
            return Background(Soft(state, dim, blur), slope).copy(0, 0, 170, 120);
        };
        QVERIFY2(UsualRun(upper(0, 0)) > 12, QByteArray::number(UsualRun(upper(0, 0))));
        QVERIFY2(UsualRun(upper(0, 40)) <= 12, QByteArray::number(UsualRun(upper(0, 40))));
        QVERIFY2(UsualRun(upper(60, 0)) <= 12, QByteArray::number(UsualRun(upper(60, 0))));
    }

    // The preview has the panel's very accent in any size, however the picture is dimmed.
    void AnAccentFromThePictureIsOneInEverySize() {
        SkinCache skins;
        for (const NamedScreen& screen : AllThemeScreens()) {
            ScreenState state = screen.state;
            if (state.language != InterfaceLanguage::Chinese) {
                continue;
            }
            const QImage picture = LoadPicture(QStringLiteral("://background/7.jpg"));
            QVERIFY(!ComposeBackground(state, picture, skins).accent);
            state.layout.accentFromPicture = true;
            const std::optional<QRgb> accent = ComposeBackground(state, picture, skins).accent;
            QCOMPARE(accent.has_value(), state.theme != Theme::Scene);
            const QSize size = AreaFrameSize(state.orientation);
            for (const QSize& magnified : {size, size * 2, CanvasSize(state.orientation) * 3}) {
                QVERIFY2(ComposeMagnifiedBackground(state, picture, skins, magnified).accent == accent,
                         screen.name);
            }
        }
    }

    void WhatHasNoAccentTakesNone() {
        SkinCache skins;
        const QImage picture = LoadPicture(QStringLiteral("://background/7.jpg"));
        for (ScreenState state : {ThemeScreen(Theme::Scene, kLying), FiveItems(kStanding)}) {
            const QImage own = Background(state, picture);
            state.layout.accentFromPicture = true;
            QVERIFY(!ComposeBackground(state, picture, skins).accent);
            QVERIFY(ChangedRect(Background(state, picture), own).isNull());
        }
        // Nor has a picture without a hue one to give.
        ScreenState state = ThemeScreen(Theme::Default, kLying);
        const QImage own = Background(state, Filled(Qt::gray));
        state.layout.accentFromPicture = true;
        QVERIFY(ChangedRect(Background(state, Filled(Qt::gray)), own).isNull());
    }

    // Mint or not, only what is of the accent's colour changes: the picture and the glass do not.
    void AnAccentFromThePictureColorsTheMarksOnly() {
        SkinCache skins;
        const QImage red = Filled(QColor(120, 10, 20));
        for (const Theme theme : kAccentThemes) {
            for (const Orientation orientation : kOrientations) {
                ScreenState state = ThemeScreen(theme, orientation);
                const QImage own = ComposeBackground(state, red, skins).image;
                state.layout.accentFromPicture = true;
                const PanelBackground taken = ComposeBackground(state, red, skins);
                QVERIFY(taken.accent && qRed(*taken.accent) > qGreen(*taken.accent));
                int changed = 0;
                for (int y = 0; y < own.height(); ++y) {
                    for (int x = 0; x < own.width(); ++x) {
                        const QColor a = own.pixelColor(x, y);
                        const QColor b = taken.image.pixelColor(x, y);
                        changed += qAbs(a.red() - b.red()) + qAbs(a.green() - b.green()) > 40 ? 1 : 0;
                    }
                }
                const int all = own.width() * own.height();
                QVERIFY2(changed > all / 200 && changed < all / 5, QByteArray::number(changed));
                // And back again, from the same cache.
                state.layout.accentFromPicture = false;
                QVERIFY(ChangedRect(ComposeBackground(state, red, skins).image, own).isNull());
            }
        }
    }

    void OneCacheServesEverySkin() {
        SkinCache skins;
        const QImage picture = LoadPicture(DefaultBackground());
        QVector<NamedScreen> screens = Screens();
        screens += Screens();
        for (const NamedScreen& screen : screens) {
            QVERIFY2(ChangedRect(ComposeBackground(screen.state, picture, skins).image,
                                 Background(screen.state, picture))
                         .isNull(),
                     screen.name);
        }
    }
};

KIVO_TEST(TestFrameComposer)
#include "tst_frame_composer.moc"
