#include "compose/free_text.h"

#include <QPainter>

#include "compose/panel_layout.h"
#include "compose/panel_text.h"

namespace kivo {

FreeTextBlock LayOutFreeText(const ScreenState& state) {
    return LayOutPanel(state)->freeText;
}

void DrawFreeText(QPainter& painter, const FreeTextBlock& block, const QRect& region) {
    if (block.lines.isEmpty() || !block.bounds.intersects(region)) {
        return;
    }
    painter.save();
    // A live update redraws the text where it reaches into these bounds and nowhere else.
    painter.setClipRect(block.bounds, Qt::IntersectClip);
    painter.setFont(PanelFont(block.pixelSize));
    painter.setPen(block.color);
    for (const FreeTextLine& line : block.lines) {
        painter.drawText(line.baseLine, line.text);
    }
    painter.restore();
}

}  // namespace kivo
