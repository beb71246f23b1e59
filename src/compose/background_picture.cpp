#include "compose/background_picture.h"

#include <QPainter>
#include <cmath>

namespace kivo {

namespace {

bool IsWhole(double number) {
    constexpr double kRounding = 1e-3;
    return qAbs(number - std::round(number)) < kRounding;
}

// That part of the picture, to be enlarged: a pixel of the picture becomes many, so that the part must not be
// rounded to whole ones. It may even be less than one.
QImage Enlarged(const QImage& picture, const QRectF& part, QSize size) {
    const QRect around = part.toAlignedRect() & picture.rect();
    QImage enlarged(size, QImage::Format_ARGB32_Premultiplied);
    enlarged.fill(Qt::transparent);
    QPainter painter(&enlarged);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setCompositionMode(QPainter::CompositionMode_Source);
    painter.drawImage(QRectF(QPointF(0, 0), QSizeF(size)),
                      picture.copy(around).convertToFormat(QImage::Format_ARGB32_Premultiplied),
                      part.translated(-around.topLeft()));
    return enlarged;
}

QImage Scaled(const QImage& picture, const QRectF& part, QSize size) {
    const bool whole =
        IsWhole(part.left()) && IsWhole(part.top()) && IsWhole(part.width()) && IsWhole(part.height());
    if (!whole && part.width() < size.width()) {
        return Enlarged(picture, part, size);
    }
    const QRect pixels = part.toRect() & picture.rect();
    const QImage shown = pixels == picture.rect() ? picture : picture.copy(pixels);
    return shown.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

}  // namespace

QRectF ShownPart(QSize picture, Orientation orientation, const LayoutRecord& layout) {
    if (picture.isEmpty()) {
        return QRectF();
    }
    const QSizeF panel = CanvasSize(orientation);
    // Picture pixels for one panel pixel when the picture just covers the panel.
    const double perPixel = qMin(picture.width() / panel.width(), picture.height() / panel.height());
    // The long side's inset tells the share; a custom layout's frame is the same for both orientations.
    const double inset = qBound(0, qMax(layout.xZoom, layout.yZoom), kPanelWidth - 1);
    const QSizeF frame = panel * (1 - inset / kPanelWidth);
    // The untrimmed view lies in the middle of the picture; the frame's corner is given relative to it.
    double left = (picture.width() - panel.width() * perPixel) / 2 + layout.xPt * perPixel;
    double top = (picture.height() - panel.height() * perPixel) / 2 + layout.yPt * perPixel;
    left = qBound(0.0, left, picture.width() - frame.width() * perPixel);
    top = qBound(0.0, top, picture.height() - frame.height() * perPixel);
    return QRectF(QPointF(left, top), frame * perPixel);
}

QImage PlacedPicture(const QImage& picture, QSize size, Orientation orientation, const LayoutRecord& layout) {
    const QRectF part = ShownPart(picture.size(), orientation, layout);
    if (part.isEmpty()) {
        QImage black(size, QImage::Format_RGB32);
        black.fill(Qt::black);
        return black;
    }
    const QImage scaled = Scaled(picture, part, size);
    if (!scaled.hasAlphaChannel()) {
        return scaled.convertToFormat(QImage::Format_RGB32);
    }
    // The panel is black where a picture is transparent.
    QImage opaque(size, QImage::Format_RGB32);
    opaque.fill(Qt::black);
    const QImage over = scaled.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < size.height(); ++y) {
        const auto* from = reinterpret_cast<const QRgb*>(over.constScanLine(y));
        auto* to = reinterpret_cast<QRgb*>(opaque.scanLine(y));
        for (int x = 0; x < size.width(); ++x) {
            to[x] = from[x] | 0xFF000000U;  // premultiplied colour over black is the colour itself
        }
    }
    return opaque;
}

}  // namespace kivo
