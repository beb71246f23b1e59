#include "skins.h"

#include "icons.h"
#include "noise.h"

#include <array>
#include <cmath>

namespace kivo::artwork {

namespace {

constexpr QRgb kMint = FactsOf(Theme::Default).accent;
constexpr QRgb kAmber = FactsOf(Theme::Tdp).accent;
constexpr QRgb kIce = FactsOf(Theme::Time).accent;

// The layers of one skin while they are painted.
struct Canvas {
    Canvas(Orientation orientation, int scale)
        : glass(orientation, scale),
          ornaments(orientation, scale),
          frame(orientation, scale),
          icons(orientation, scale) {}
    Layer glass;
    Layer ornaments;
    Layer frame;
    Layer icons;
};

struct CardRow {
    QPointF corner;
    Icon icon;
    double iconY = 13;  // below the corner
};

// Small cards of the default theme: icon at the head. The ticks under a value are drawn with the value.
void DrawValueCards(Canvas& canvas, QSizeF size, const std::array<CardRow, 4>& cards) {
    for (const CardRow& card : cards) {
        DrawGlass(canvas.glass.Painter(), RoundedCard(QRectF(card.corner, size), 10));
        DrawIcon(canvas.icons.Painter(), card.icon, card.corner + QPointF(11, card.iconY), 14, kMint);
    }
}

void DrawDefault(Canvas& canvas, Orientation orientation) {
    QPainter& glass = canvas.glass.Painter();
    QPainter& ornaments = canvas.ornaments.Painter();
    if (orientation == Orientation::Portrait) {
        DrawGlass(glass, RoundedCard(QRectF(4, 4, 163, 150), 12));
        DrawUnderLight(ornaments, QPointF(85.5, 98), 46, kMint, 0.13);
        DrawRing(ornaments, Ring{QPointF(85.5, 106), 43.5, 36.5, 40.5, 37}, kMint);
        DrawValueCards(canvas, QSizeF(80, 78),
                       {{{QPointF(4, 158), Icon::Thermometer},
                         {QPointF(87, 158), Icon::Memory},
                         {QPointF(4, 239), Icon::Fan},
                         {QPointF(87, 239), Icon::Chip}}});
        return;
    }
    DrawGlass(glass, RoundedCard(QRectF(5, 5, 131, 160), 12));
    DrawUnderLight(ornaments, QPointF(70, 110), 46, kMint, 0.13);
    DrawHair(ornaments, QPointF(40, 64), QPointF(100, 64));
    DrawRing(ornaments, Ring{QPointF(70, 118), 43.5, 36.5, 40.5, 37}, kMint);
    // The lower captions stand a pixel higher in their cards than the upper ones.
    DrawValueCards(canvas, QSizeF(82, 78),
                   {{{QPointF(141, 5), Icon::Thermometer},
                     {QPointF(227, 5), Icon::Memory},
                     {QPointF(141, 87), Icon::Fan, 12},
                     {QPointF(227, 87), Icon::Chip, 12}}});
    DrawGlass(glass, RoundedCard(QRectF(QPointF(310.5, 5), QPointF(317.5, 165)), 3));
    for (int i = -10; i <= 10; ++i) {
        const int away = std::abs(i);
        const double y = 85 + 6 * i;
        const double left = away > 0 && away % 5 == 0 ? 311 : 312;
        const QColor colour = i == 0 ? QColor::fromRgb(kMint) : White(0.50 - 0.035 * away);
        DrawTick(ornaments, QPointF(left, y), QPointF(316, y), 1.6, colour);
    }
}

void DrawScene(Canvas& canvas, Orientation orientation) {
    QPainter& glass = canvas.glass.Painter();
    QPainter& ornaments = canvas.ornaments.Painter();
    const QRectF panel(QPointF(0, 0), PanelSize(orientation));
    const bool portrait = orientation == Orientation::Portrait;
    if (portrait) {
        DrawScrim(glass, panel, {{.48, 0}, {.56, .12}, {.63, .34}, {.70, .58}, {.78, .64}, {1, .70}});
    } else {
        DrawScrim(glass, panel, {{.42, 0}, {.49, .14}, {.54, .42}, {.57, .58}, {.66, .64}, {1, .70}});
    }
    // Standing, they lie half way between the feet of the hour's digits and the head of the date's.
    const QPointF middle = portrait ? QPointF(84.5, 272.5) : QPointF(161.5, 110.5);
    if (portrait) {
        DrawTick(ornaments, middle - QPointF(0, 4.5), middle + QPointF(0, 4.5), 1.6, White(1));
    }
    const int count = portrait ? 8 : 14;
    const double first = portrait ? 10 : 58;
    for (int i = 0; i < count; ++i) {
        const double t = i / static_cast<double>(count - 1);
        const double half = Lerp(6, 3, t) / 2;
        const double alpha = 0.06 + 0.94 * std::pow(1 - t, 1.1);
        for (const double side : {-1.0, 1.0}) {
            const QPointF at = middle + QPointF(side * (first + 5 * i), 0);
            DrawTick(ornaments, at - QPointF(0, half), at + QPointF(0, half), 1.6, White(alpha));
        }
    }
}

void DrawTdp(Canvas& canvas, Orientation orientation) {
    QPainter& glass = canvas.glass.Painter();
    QPainter& ornaments = canvas.ornaments.Painter();
    QPainter& icons = canvas.icons.Painter();
    if (orientation == Orientation::Portrait) {
        const QPointF centre(86, 159);
        DrawGlass(glass, HeadWing(QRectF(QPointF(4.5, 4.5), QPointF(167.5, 97)), 12, centre, 85, 10),
                  kGlassUnderPaleAccents);
        // The lower wing is two pixels taller: mirrored about the dial's centre, then told its own foot.
        DrawGlass(glass,
                  MirroredY(HeadWing(QRectF(QPointF(4.5, 2.5), QPointF(167.5, 97)), 12, centre, 85, 10),
                            centre.y()),
                  kGlassUnderPaleAccents);
        DrawGlass(glass, Disc(centre, 81), kGlassUnderPaleAccents);
        DrawUnderLight(ornaments, QPointF(86, 153), 70, kAmber, 0.13);
        DrawRing(ornaments, Ring{centre, 77.5, 70, 74.5, 61}, kAmber);
        DrawHair(ornaments, QPointF(60, 182.5), QPointF(113, 182.5));
        DrawHair(ornaments, QPointF(86, 22), QPointF(86, 58));
        DrawHair(ornaments, QPointF(86, 262), QPointF(86, 298));
        DrawIcon(icons, Icon::Bolt, QPointF(86.5, 101.5), 14, kAmber);
        DrawIcon(icons, Icon::Thermometer, QPointF(54.5, 17), 15, kAmber);
        DrawIcon(icons, Icon::Memory, QPointF(117.5, 17), 15, kAmber);
        DrawIcon(icons, Icon::Chip, QPointF(54.5, 302), 15, kAmber);
        DrawIcon(icons, Icon::Fan, QPointF(117.5, 302), 15, kAmber);
        return;
    }
    const QPointF centre(162, 85.5);
    const Shape left = SideWing(QRectF(QPointF(5.5, 5.5), QPointF(162, 165.5)), 12, centre, 85, 8);
    DrawGlass(glass, left, kGlassUnderPaleAccents);
    DrawGlass(glass, MirroredX(left, centre.x()), kGlassUnderPaleAccents);
    DrawGlass(glass, Disc(centre, 81), kGlassUnderPaleAccents);
    DrawUnderLight(ornaments, QPointF(162, 79.5), 70, kAmber, 0.13);
    DrawRing(ornaments, Ring{centre, 75.5, 67.5, 72, 61}, kAmber);
    DrawHair(ornaments, QPointF(136, 107.5), QPointF(189, 107.5));
    DrawHair(ornaments, QPointF(20.5, 83.5), QPointF(60.5, 83.5));
    DrawHair(ornaments, QPointF(258.5, 83.5), QPointF(298.5, 83.5));
    DrawIcon(icons, Icon::Bolt, QPointF(162.5, 36), 18, kAmber);
    DrawIcon(icons, Icon::Thermometer, QPointF(40.5, 25), 16, kAmber);
    DrawIcon(icons, Icon::Chip, QPointF(40.5, 142.5), 16, kAmber);
    DrawIcon(icons, Icon::Fan, QPointF(278.5, 25), 16, kAmber);
    DrawIcon(icons, Icon::Memory, QPointF(278.5, 142.5), 16, kAmber);
}

void DrawTime(Canvas& canvas, Orientation orientation) {
    QPainter& glass = canvas.glass.Painter();
    QPainter& ornaments = canvas.ornaments.Painter();
    QPainter& icons = canvas.icons.Painter();
    if (orientation == Orientation::Portrait) {
        DrawGlass(glass, RoundedCard(QRectF(4, 4, 162, 86), 12), kGlassUnderPaleAccents);
        DrawGlass(glass, RoundedCard(QRectF(4, 94, 162, 140), 16), kGlassUnderPaleAccents);
        DrawGlass(glass, RoundedCard(QRectF(4, 238, 162, 78), 12), kGlassUnderPaleAccents);
        DrawUnderLight(ornaments, QPointF(84.5, 158), 66, kIce, 0.10);
        DrawTickFrame(canvas.frame.Painter(), QRectF(11, 99, 148, 128), 20, kIce);
        DrawFootScale(ornaments, QPointF(84.5, 208), kIce);
        DrawHair(ornaments, QPointF(85, 26), QPointF(85, 64));
        DrawHair(ornaments, QPointF(85, 258), QPointF(85, 296));
        DrawIcon(icons, Icon::Thermometer, QPointF(35.5, 47), 18, kIce);
        DrawIcon(icons, Icon::Bolt, QPointF(134.5, 47), 18, kIce);
        DrawIcon(icons, Icon::Chip, QPointF(35.5, 300.5), 18, kIce);
        DrawIcon(icons, Icon::Memory, QPointF(134.5, 300.5), 18, kIce);
        return;
    }
    DrawGlass(glass, RoundedCard(QRectF(4, 4, 65, 162), 12), kGlassUnderPaleAccents);
    DrawGlass(glass, RoundedCard(QRectF(73, 4, 174, 162), 16), kGlassUnderPaleAccents);
    DrawGlass(glass, RoundedCard(QRectF(251, 4, 65, 162), 12), kGlassUnderPaleAccents);
    DrawUnderLight(ornaments, QPointF(159.5, 80), 66, kIce, 0.10);
    DrawTickFrame(canvas.frame.Painter(), QRectF(80, 11, 160, 148), 22, kIce);
    DrawFootScale(ornaments, QPointF(159.5, 137), kIce);
    DrawHair(ornaments, QPointF(20.5, 84.2), QPointF(50.5, 84.2));
    DrawHair(ornaments, QPointF(270.5, 84.2), QPointF(300.5, 84.2));
    DrawIcon(icons, Icon::Thermometer, QPointF(35.5, 44.5), 20, kIce);
    DrawIcon(icons, Icon::Chip, QPointF(35.5, 145), 20, kIce);
    DrawIcon(icons, Icon::Bolt, QPointF(285.5, 44.5), 20, kIce);
    DrawIcon(icons, Icon::Memory, QPointF(285.5, 145), 20, kIce);
}

}  // namespace

SkinLayers DrawSkin(Theme theme, Orientation orientation, int scale) {
    Canvas canvas(orientation, scale);
    switch (theme) {
        case Theme::Default:
            DrawDefault(canvas, orientation);
            break;
        case Theme::Scene:
            DrawScene(canvas, orientation);
            break;
        case Theme::Tdp:
            DrawTdp(canvas, orientation);
            break;
        case Theme::Time:
            DrawTime(canvas, orientation);
            break;
    }
    const quint64 seed =
        100 + 2 * static_cast<quint64>(theme) + (orientation == Orientation::Portrait ? 1 : 0);
    SkinLayers layers;
    layers.glass = canvas.glass.Finish();
    if (scale == 1) {
        layers.glass = WithAlphaGrain(layers.glass, seed);
    }
    layers.ornaments = canvas.ornaments.Finish();
    if (Has(theme, kTickFrame)) {
        layers.frame = canvas.frame.Finish();
    }
    if (!Has(theme, kHourAlone)) {
        layers.icons = canvas.icons.Finish();
    }
    return layers;
}

QImage DrawThemeIcon(Theme theme, int scale) {
    switch (theme) {
        case Theme::Default:
            return IconPicture(Icon::Bolt, kMint, 13, scale);
        case Theme::Time:
            // Drawn at two sizes; the middle keeps both strokes within a tenth of a pixel of 1.5.
            return IconPicture(Icon::Clock, kIce, 17, scale);
        default:
            return {};
    }
}

}  // namespace kivo::artwork
