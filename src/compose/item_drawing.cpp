#include "compose/item_drawing.h"

#include <QPainter>

namespace kivo {

void DrawTexts(QPainter& painter, const QVector<TextRun>& runs, const QRect& region) {
    painter.setPen(Qt::white);
    for (const TextRun& run : runs) {
        if (run.text.isEmpty() || !run.rect.intersects(region)) {
            continue;
        }
        const FittedLine line = FitRun(run);
        // Fitting goes by advances and line measures; a sign of an odd fallback font may still lean over the
        // edge. What leaves the rectangle would stay on the panel for ever, as no live update reaches it.
        painter.save();
        painter.setClipRect(run.rect, Qt::IntersectClip);
        painter.setFont(PanelFont(line.pixelSize));
        painter.drawText(line.baseLine, line.text);
        painter.restore();
    }
}

void DrawPanelTexts(QPainter& painter, const PanelTexts& texts, const QRect& region) {
    for (const TextRun& run : texts.runs) {
        if (run.scale.rect.intersects(region)) {
            DrawValueScale(painter, run.scale, run.item, run.text);
        }
    }
    DrawTexts(painter, texts.runs, region);
    DrawFreeText(painter, texts.freeText, region);
}

}  // namespace kivo
