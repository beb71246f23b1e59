#include "compose/value_scale.h"

#include <QPainter>
#include <QRegularExpression>
#include <optional>

#include "model/item_table.h"

namespace kivo {

namespace {

constexpr int kTicks = 9;
constexpr QSize kTick{2, 3};
constexpr int kPitch = 5;
constexpr int kRowWidth = (kTicks - 1) * kPitch + kTick.width();
constexpr int kLeastHeight = 20;  // of a rectangle that holds a text and its ticks

constexpr double kUnlitOpacity = 0.24;
constexpr double kWarningShare = 0.9;
constexpr QRgb kAmber = 0xFFFFB45A;
constexpr QRgb kRed = 0xFFFF6B5E;  // where amber would not be seen to be another colour
constexpr int kNearHue = 30;       // degrees

std::optional<ValueRange> RangeOf(int item) {
    return IsItem(item) ? FactsOf(item).range : std::nullopt;
}

bool IsNearAmber(QRgb colour) {
    const int hue = QColor(colour).hslHue();
    return hue >= 0 && qAbs(hue - QColor(kAmber).hslHue()) < kNearHue;
}

}  // namespace

bool HasScaleRange(int item) {
    return RangeOf(item).has_value();
}

QRect ScaleRect(const QRect& textRect, const QRect& tile) {
    if (textRect.width() < kRowWidth || textRect.height() < kLeastHeight) {
        return QRect();
    }
    const int centred = tile.left() + (tile.width() - kRowWidth) / 2;
    const int left = qBound(textRect.left(), centred, textRect.right() + 1 - kRowWidth);
    return QRect(left, textRect.bottom() + 1 - kTick.height(), kRowWidth, kTick.height());
}

double RangeShare(int item, const QString& text) {
    static const QRegularExpression number(QStringLiteral("-?[0-9]+"));
    const std::optional<ValueRange> range = RangeOf(item);
    const QRegularExpressionMatch match = number.match(text);
    if (!range || !match.hasMatch()) {
        return 0;
    }
    const double share = (match.captured().toDouble() - range->least) / (range->most - range->least);
    return qBound(0.0, share, 1.0);
}

int LitTicks(double share) {
    return qRound(kTicks * share);
}

QRgb TickColour(double share, QRgb accent) {
    if (share < kWarningShare) {
        return accent;
    }
    return IsNearAmber(accent) ? kRed : kAmber;
}

void DrawValueScale(QPainter& painter, const ValueScale& scale, int item, const QString& text) {
    if (scale.rect.isEmpty()) {
        return;
    }
    QColor unlit(Qt::white);
    unlit.setAlphaF(kUnlitOpacity);
    const double share = RangeShare(item, text);
    const auto lit = QColor(TickColour(share, scale.accent));
    const int litTicks = LitTicks(share);
    const bool isMagnified = painter.transform().isScaling();
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, isMagnified);  // the preview's ticks lie between pixels
    // On the panel column by column: neighbours in a row are blended two at a time, off by the last bit where
    // they lie otherwise in memory, and a part of the frame has to be the same as the whole.
    const int columns = isMagnified ? kTick.width() : 1;
    for (int tick = 0; tick < kTicks; ++tick) {
        for (int x = 0; x < kTick.width(); x += columns) {
            const QPoint corner = scale.rect.topLeft() + QPoint(tick * kPitch + x, 0);
            painter.fillRect(QRectF(corner, QSizeF(columns, kTick.height())), tick < litTicks ? lit : unlit);
        }
    }
    painter.restore();
}

}  // namespace kivo
