#include "skin_parts.h"
#include "window_glyphs.h"
#include "window_picture.h"

#include <QLineF>
#include <QPainterPath>
#include <QPolygonF>

#include <cmath>

namespace kivo::artwork {

namespace {

using namespace window;
using Draw = std::function<void(QPainter&)>;

void DrawDot(QPainter& painter, QPointF centre, double radius, QRgb colour) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(colour));
    painter.drawEllipse(centre, radius, radius);
}

void DrawRingLine(QPainter& painter, QPointF centre, double radius, QRgb colour, double width) {
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(QColor::fromRgb(colour), width));
    painter.drawEllipse(centre, radius, radius);
}

Draw CloseButton(QRgb colour) {
    return [=](QPainter& painter) { DrawCross(painter, QPointF(8, 8), 9, RoundPen(colour, 1.5)); };
}

Draw MinimiseButton(QRgb colour) {
    return [=](QPainter& painter) {
        painter.setPen(RoundPen(colour, 1.5));
        painter.drawLine(QPointF(3.75, 8.25), QPointF(12.25, 8.25));
    };
}

// One of the strip's six. Black is ringed, or it would be lost on the bubble.
Draw ColourButton(QRgb colour) {
    return [=](QPainter& painter) {
        const QPointF centre(10, 11);
        DrawDot(painter, centre, 8, colour);
        if (colour == 0xFF000000) {
            DrawRingLine(painter, centre, 8, kOutline, 1.5);
        }
    };
}

Draw ColourIndicator(QRgb colour) {
    return [=](QPainter& painter) {
        DrawDot(painter, QPointF(10, 10), 9, colour);
        DrawRingLine(painter, QPointF(10, 10), 9, 0xFF4B5966, 1.5);
    };
}

Draw ToolPlate(QRgb fill, QRgb edge) {
    return [=](QPainter& painter) { DrawPlate(painter, QRectF(0, 0, 84, 28), 8, fill, edge); };
}

void DrawUnchecked(QPainter& painter) {
    DrawPlate(painter, QRectF(0, 0, 16, 16), 4.5, kWell, kOutline, 1.5);
}

void DrawChecked(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor::fromRgb(kAccent));
    painter.drawRoundedRect(QRectF(0, 0, 16, 16), 4.5, 4.5);
    painter.setPen(RoundPen(kDarkOnAccent, 2));
    painter.drawPolyline(QPolygonF({QPointF(4, 8.5), QPointF(6.9, 11.3), QPointF(12, 5.2)}));
}

void DrawToolStrip(QPainter& painter) {
    DrawPlate(painter, QRectF(0, 0, 433, 40), 11, kRaised, kRaisedEdge);
}

// The colour strip's bubble; its tip stands under the tool strip's dot.
void DrawBubble(QPainter& painter) {
    constexpr double kLeft = 0.5;
    constexpr double kRight = 162.5;
    constexpr double kTop = 13.5;
    constexpr double kFoot = 46.5;
    constexpr double kTurn = 17;  // twice the radius of the stroke's middle line
    constexpr double kTip = 118;
    QPainterPath path(QPointF(kLeft + kTurn / 2, kTop));
    path.lineTo(kTip - 8, kTop);
    path.lineTo(kTip - 1.6, 6.9);
    path.quadTo(QPointF(kTip, 5.4), QPointF(kTip + 1.6, 6.9));
    path.lineTo(kTip + 8, kTop);
    path.arcTo(QRectF(kRight - kTurn, kTop, kTurn, kTurn), 90, -90);
    path.arcTo(QRectF(kRight - kTurn, kFoot - kTurn, kTurn, kTurn), 0, -90);
    path.arcTo(QRectF(kLeft, kFoot - kTurn, kTurn, kTurn), -90, -90);
    path.arcTo(QRectF(kLeft, kTop, kTurn, kTurn), 180, -90);
    path.closeSubpath();
    painter.setBrush(QColor::fromRgb(kRaised));
    painter.setPen(QPen(QColor::fromRgb(kRaisedEdge), 1, Qt::SolidLine, Qt::FlatCap, Qt::RoundJoin));
    painter.drawPath(path);
}

// Dashes stretched a little, so that a whole number of them goes round.
void DrawAddCell(QPainter& painter) {
    constexpr double kWidth = 1.5;
    const QRectF rect(kWidth / 2, kWidth / 2, 77 - kWidth, 54 - kWidth);
    QPainterPath path;
    path.addRoundedRect(rect, 6 - kWidth / 2, 6 - kWidth / 2);
    painter.fillPath(path, QColor::fromRgb(kWell));
    const double period = path.length() / std::round(path.length() / 7);
    QPen pen(QColor::fromRgb(kOutline), kWidth, Qt::CustomDashLine, Qt::FlatCap);
    pen.setDashPattern({period * 4 / 7 / kWidth, period * 3 / 7 / kWidth});
    painter.setPen(pen);
    painter.setBrush(Qt::NoBrush);
    painter.drawPath(path);
    painter.setPen(RoundPen(kAccent, 2));
    painter.drawLine(QPointF(30, 27), QPointF(46, 27));
    painter.drawLine(QPointF(38, 19), QPointF(38, 35));
}

void DrawDeleteBadge(QPainter& painter) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(WithAlpha(0xFF0E1319, 0.88));
    painter.drawEllipse(QPointF(9, 9), 9, 9);
    DrawCross(painter, QPointF(9, 9), 6, RoundPen(0xFFFFFFFF, 1.6));
}

// A closed polygon whose corners are cut by that length on both sides and rounded.
QPainterPath RoundedPolygon(const QPolygonF& corners, double cut) {
    QPainterPath path;
    for (int i = 0; i < corners.size(); ++i) {
        const QPointF corner = corners[i];
        const QPointF before = corners[(i + corners.size() - 1) % corners.size()];
        const QPointF after = corners[(i + 1) % corners.size()];
        const QPointF from = QLineF(corner, before).pointAt(cut / QLineF(corner, before).length());
        if (i == 0) {
            path.moveTo(from);
        } else {
            path.lineTo(from);
        }
        path.quadTo(corner, QLineF(corner, after).pointAt(cut / QLineF(corner, after).length()));
    }
    path.closeSubpath();
    return path;
}

void DrawWarning(QPainter& painter) {
    painter.setPen(RoundPen(kWarning, 2));
    painter.setBrush(WithAlpha(kWarning, 0.14));
    painter.drawPath(RoundedPolygon(QPolygonF({QPointF(20, 3), QPointF(38.5, 35), QPointF(1.5, 35)}), 3.5));
    painter.drawLine(QPointF(20, 14), QPointF(20, 23));
    DrawDot(painter, QPointF(20, 29), 1.5, kWarning);
}

// A large and a small T on one base line.
void DrawTypeIcon(QPainter& painter) {
    const QColor colour = QColor::fromRgb(kTextHigh);
    painter.fillRect(QRectF(1, 3, 11, 2), colour);
    painter.fillRect(QRectF(5, 3, 3, 13), colour);
    painter.fillRect(QRectF(13, 9, 6, 2), colour);
    painter.fillRect(QRectF(15, 9, 2, 7), colour);
}

Draw ScreenOutline(const QRectF& rect, QRgb colour) {
    return [=](QPainter& painter) { DrawOutline(painter, rect, 3.2, QColor::fromRgb(colour), 1.6); };
}

Draw VariantIcon(int dots, QRgb colour) {
    return [=](QPainter& painter) {
        DrawOutline(painter, QRectF(0, 0, 18, 12), 3, QColor::fromRgb(colour), 1.6);
        if (dots == 1) {
            DrawDot(painter, QPointF(9, 6), 1.3, colour);
            return;
        }
        for (const QPointF offset :
             {QPointF(-4.5, -2), QPointF(4.5, -2), QPointF(0, 0), QPointF(-4.5, 2), QPointF(4.5, 2)}) {
            DrawDot(painter, QPointF(9, 6) + offset, 1, colour);
        }
    };
}

// A disc of glass with the four corners of a frame.
Draw FrameButton(QRgb colour) {
    return [=](QPainter& painter) {
        DrawGlass(painter, Disc(QPointF(12, 12), 12));
        painter.setPen(RoundPen(colour, 1.6));
        for (const double x : {-1.0, 1.0}) {
            for (const double y : {-1.0, 1.0}) {
                const QPointF corner = QPointF(12, 12) + QPointF(5.5 * x, 5.5 * y);
                painter.drawPolyline(
                    QPolygonF({corner - QPointF(3.5 * x, 0), corner, corner - QPointF(0, 3.5 * y)}));
            }
        }
    };
}

void AddColours(std::vector<WindowPicture>& pictures) {
    struct Colour {
        const char* button;
        const char* indicator;
        QRgb rgb;
    };
    // Deliberate: the orange is kept under the name red.
    for (const Colour& colour :
         {Colour{"white", "font_white", 0xFFFFFFFF}, Colour{"black", "font_black", 0xFF000000},
          Colour{"red", "font_orange", 0xFFFF6422}, Colour{"yellow", "font_yellow", 0xFFF5E021},
          Colour{"blue", "font_blue", 0xFF4283E4}, Colour{"green", "font_green", 0xFF3AC8A3}}) {
        pictures.push_back({colour.button, QSize(20, 22), ColourButton(colour.rgb)});
        pictures.push_back({colour.indicator, QSize(20, 20), ColourIndicator(colour.rgb)});
    }
}

}  // namespace

std::vector<WindowPicture> WindowPictures() {
    std::vector<WindowPicture> pictures = {
        {"logo_mark", QSize(21, 21),
         [](QPainter& painter) {
             DrawMark(painter, {QRectF(0, 2, 20, 14), 4.2, 1.6, 18, 8, 2, 4, 12, 6, 3.5});
         }},
        {"close_n", QSize(16, 16), CloseButton(kTextMid)},
        {"close_h", QSize(16, 16), CloseButton(kDelete)},
        {"close_s", QSize(16, 16), CloseButton(0xFFD0483C)},
        {"mini_n", QSize(16, 16), MinimiseButton(kTextMid)},
        {"mini_h", QSize(16, 16), MinimiseButton(kTextHigh)},
        {"mini_s", QSize(16, 16), MinimiseButton(kTextLow)},
        {"waring_icon", QSize(40, 40), DrawWarning},
        {"add", QSize(77, 54), DrawAddCell},
        {"delete", QSize(18, 18), DrawDeleteBadge},
        {"seting_bt_02_n", QSize(16, 16), DrawUnchecked},
        {"seting_bt_02_s", QSize(16, 16), DrawChecked},
        {"edit_bk", QSize(433, 40), DrawToolStrip},
        {"Union", QSize(163, 48), DrawBubble},
        {"cut1", QSize(84, 28), ToolPlate(kQuietFill, kQuietEdge)},
        {"cut2", QSize(84, 28), ToolPlate(kPressedFill, kAccent)},
        {"ret1", QSize(84, 28), ToolPlate(kQuietFill, kQuietEdge)},
        {"ret2", QSize(84, 28), ToolPlate(kPressedFill, kAccent)},
        {"icon_trim_n", QSize(16, 16), [](QPainter& painter) { DrawTrimIcon(painter, kQuietText); }},
        {"icon_trim_s", QSize(16, 16), [](QPainter& painter) { DrawTrimIcon(painter, 0xFFFFFFFF); }},
        {"icon_back_n", QSize(16, 16), [](QPainter& painter) { DrawBackIcon(painter, kQuietText); }},
        {"icon_back_s", QSize(16, 16), [](QPainter& painter) { DrawBackIcon(painter, 0xFFFFFFFF); }},
        {"icon_type_w", QSize(20, 20), DrawTypeIcon},
        {"drag", QSize(32, 32), DrawHandCursor},
        {"drag2", QSize(32, 32), DrawBeamCursor},
        {"orient_h_n", QSize(18, 18), ScreenOutline(QRectF(0, 3, 18, 12), kIconQuiet)},
        {"orient_h_s", QSize(18, 18), ScreenOutline(QRectF(0, 3, 18, 12), kAccent)},
        {"orient_v_n", QSize(18, 18), ScreenOutline(QRectF(3, 0, 12, 18), kIconQuiet)},
        {"orient_v_s", QSize(18, 18), ScreenOutline(QRectF(3, 0, 12, 18), kAccent)},
        {"five_n", QSize(18, 12), VariantIcon(5, kIconQuiet)},
        {"five_s", QSize(18, 12), VariantIcon(5, kAccent)},
        {"one_n", QSize(18, 12), VariantIcon(1, kIconQuiet)},
        {"one_s", QSize(18, 12), VariantIcon(1, kAccent)},
        {"remote_n", QSize(24, 24), FrameButton(0xFFFFFFFF)},
        {"remote_h", QSize(24, 24), FrameButton(kAccent)},
    };
    AddColours(pictures);
    return pictures;
}

QImage Render(const WindowPicture& picture, int scale) {
    QImage image(picture.size * scale, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.scale(scale, scale);
    picture.draw(painter);
    painter.end();
    return image.convertToFormat(QImage::Format_ARGB32);
}

}  // namespace kivo::artwork
