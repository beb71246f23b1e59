#pragma once

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QPointF>

namespace kivo::artwork {

enum class Icon { Thermometer, Chip, Memory, Fan, Bolt, Clock };

// Draws on the 24-unit grid, size painter units wide about the centre. The stroke is strokeWidth painter
// units at every size: icons of different sizes must not differ in weight.
void DrawIcon(QPainter& painter, Icon icon, QPointF centre, double size, const QColor& colour,
              double strokeWidth = 1.5);

// The icon alone, 24 x 24 pixels times scale on transparent ground, with a stroke that is right (1.5) once
// the picture is drawn drawnSize panel pixels wide.
QImage IconPicture(Icon icon, const QColor& colour, double drawnSize, int scale = 1);

}  // namespace kivo::artwork
