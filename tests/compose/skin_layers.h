#pragma once

#include <QImage>
#include <QPainter>

#include "compose/theme_catalogue.h"

namespace kivo::test {

// One layer of a skin on the panel's pixels, by its opacity.
inline QImage LayerOnPanel(const SkinLayer& layer, Orientation orientation) {
    QImage image(CanvasSize(orientation), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(layer.rect, QImage(layer.path));
    return image;
}

}  // namespace kivo::test
