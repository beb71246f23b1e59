#pragma once

// The glass of the custom layouts: a chip under whatever stands in a slot, and a pill under a free text that
// could not be read without. Its places are those of the panel's layout. The themes' glass is drawn into
// their skins. Any thread.

#include <QColor>
#include <QImage>
#include <QRect>
#include <QVector>

#include "compose/screen_state.h"

class QPainter;

namespace kivo {

struct GlassPlate {
    QRect rect;         // canvas pixels
    double radius = 0;  // canvas pixels
    QColor tint;
    double strength = 0;  // the tint's opacity, 0..1
};

// The plates of a state over a picture: no stronger than what is written on them needs, and a chip never
// weaker than glass. Values have no part in it. placed: the picture as it lies on the panel, any size,
// Format_RGB32; blurred: the same picture blurred (compose/frost.h); bare: items without a chip, for an
// editor that hides them.
QVector<GlassPlate> GlassPlates(const ScreenState& state, const QImage& placed, const QImage& blurred,
                                const ItemFlags& bare = {});

// Tint and edge of the plates, or their shapes alone, opaque. The painter's coordinates are the canvas's.
void DrawPlates(QPainter& painter, const QVector<GlassPlate>& plates);
void FillPlates(QPainter& painter, const QVector<GlassPlate>& plates);

}  // namespace kivo
