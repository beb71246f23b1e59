#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <QSize>

#include <functional>
#include <vector>

// The few things every skin is made of: glass, ticks, hairs and light. All positions and sizes are panel
// pixels, x right and y down, in 320 x 170 (landscape) or 170 x 320 (portrait).

namespace kivo::artwork {

enum class Orientation { Landscape, Portrait };

constexpr QRgb kInk = 0xFF071326;

QColor White(double alpha);
QColor WithAlpha(QRgb rgb, double alpha);
QSize PanelSize(Orientation orientation);
// Pixels of a skin picture. Landscape frames are put together at 433 x 230 and reduced afterwards.
QSize SkinSize(Orientation orientation);

// A transparent picture of the skin's size with a painter that takes panel coordinates.
class Layer {
public:
    // scale pixels for one of the skin's.
    Layer(Orientation orientation, int scale);
    Layer(const Layer&) = delete;
    Layer& operator=(const Layer&) = delete;

    QPainter& Painter() { return m_painter; }
    QImage Finish();  // ends the painting

private:
    QImage m_image;
    QPainter m_painter;
};

// A shape whose outline can be drawn in by some pixels: fill and inside edge come from one description.
using Shape = std::function<QPainterPath(double inset)>;

Shape RoundedCard(const QRectF& rect, double radius);
Shape Disc(QPointF centre, double radius);
// One wing of the dial: the rectangle, cut by the circle of cutRadius about centre, with fillets whose
// centres lie filletX beside the circle's. The circle lies to the right of the rectangle (SideWing: the
// outer corners alone are rounded by radius) or below it (HeadWing: all four corners).
Shape SideWing(const QRectF& rect, double radius, QPointF centre, double cutRadius, double fillet);
Shape HeadWing(const QRectF& rect, double radius, QPointF centre, double cutRadius, double fillet);
Shape MirroredX(const Shape& shape, double axis);
Shape MirroredY(const Shape& shape, double axis);

// Opacity of the glass at a shape's top. Amber and ice need a little more of it for three to one over white.
constexpr double kGlass = 0.58;
constexpr double kGlassUnderPaleAccents = 0.645;
void DrawGlass(QPainter& painter, const Shape& shape, double top = kGlass);
// Vertical ink with the given alpha at fractions of the height.
void DrawScrim(QPainter& painter, const QRectF& rect, const std::vector<std::pair<double, double>>& stops);
void DrawUnderLight(QPainter& painter, QPointF centre, double radius, QRgb accent, double strength);
void DrawTick(QPainter& painter, QPointF from, QPointF to, double width, const QColor& colour);
void DrawHair(QPainter& painter, QPointF from, QPointF to);

struct Ring {
    QPointF centre;
    double arcRadius;    // thin arc outside the ticks
    double innerRadius;  // of a minor tick
    double outerRadius;
    int ticks;  // over 270 degrees, open at the foot; each sixth is major
};
void DrawRing(QPainter& painter, const Ring& ring, QRgb accent);
// Nine upright ticks in a row about the point, the middle one in the accent.
void DrawFootScale(QPainter& painter, QPointF centre, QRgb accent);
// Sixty ticks along the rounded rectangle, pointing in, from 12 o'clock on.
void DrawTickFrame(QPainter& painter, const QRectF& rect, double radius, QRgb accent);

// Moves the alpha of half-transparent pixels by up to 4 of 255: frosts the glass, hides steps. Gives
// straight (not premultiplied) alpha.
QImage WithAlphaGrain(const QImage& image, quint64 seed);

}  // namespace kivo::artwork
