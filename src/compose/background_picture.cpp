#include "compose/background_picture.h"

#include <QPainter>
#include <algorithm>
#include <array>
#include <cmath>

#include "compose/frost.h"
#include "compose/pixels.h"

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

// The panel is black where a picture is transparent.
QImage Opaque(const QImage& scaled) {
    if (!scaled.hasAlphaChannel()) {
        return scaled.convertToFormat(QImage::Format_RGB32);
    }
    QImage opaque(scaled.size(), QImage::Format_RGB32);
    const QImage over = scaled.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    const auto from = PixelsOf(over);
    std::transform(from.begin(), from.end(), PixelsOf(opaque).begin(), [](QRgb pixel) {
        return pixel | 0xFF000000U;  // premultiplied colour over black is the colour itself
    });
    return opaque;
}

// The size at which the one blur there is (frost.h) is as wide as that many percent: the panel's own at 10, a
// fifth of it at 100.
QSize BlurringSize(int percent, Orientation orientation) {
    constexpr double kLeast = 10;
    constexpr double kMost = 100;
    constexpr double kMostReduced = 5;
    const double share = qBound(0.0, (percent - kLeast) / (kMost - kLeast), 1.0);
    return (QSizeF(CanvasSize(orientation)) / (1 + share * (kMostReduced - 1))).toSize();
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
    const double left = (picture.width() - panel.width() * perPixel) / 2 + layout.xPt * perPixel;
    const double top = (picture.height() - panel.height() * perPixel) / 2 + layout.yPt * perPixel;
    return KeptIn(QRectF(QPointF(left, top), frame * perPixel), QRectF(QPointF(0, 0), picture));
}

QImage PlacedPicture(const QImage& picture, QSize size, Orientation orientation, const LayoutRecord& layout) {
    const QRectF part = ShownPart(picture.size(), orientation, layout);
    if (part.isEmpty()) {
        QImage black(size, QImage::Format_RGB32);
        black.fill(Qt::black);
        return black;
    }
    if (layout.blur <= 0) {
        return Opaque(Scaled(picture, part, size));
    }
    QImage blurred = Opaque(Scaled(picture, part, BlurringSize(layout.blur, orientation)));
    Blur(blurred);
    return blurred.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
        .convertToFormat(QImage::Format_RGB32);
}

void Dim(QImage& placed, const LayoutRecord& layout) {
    if (layout.dim <= 0) {
        return;
    }
    constexpr int kMostTaken = 80;  // percent
    const int left = 100 * 100 - kMostTaken * qMin(layout.dim, 100);
    std::array<uchar, 256> dimmed{};
    for (size_t byte = 0; byte < dimmed.size(); ++byte) {
        dimmed[byte] = uchar((int(byte) * left + 5000) / 10000);
    }
    for (QRgb& pixel : PixelsOf(placed)) {
        pixel =
            qRgb(dimmed[size_t(qRed(pixel))], dimmed[size_t(qGreen(pixel))], dimmed[size_t(qBlue(pixel))]);
    }
}

bool HasSoftPicture(const LayoutRecord& layout) {
    return layout.blur > 0 || layout.dim > 0;
}

}  // namespace kivo
