#include "compose/live_renderer.h"

#include <QLoggingCategory>
#include <QPainter>
#include <QtMath>

#include "compose/rgb565.h"

namespace kivo {

namespace {

// Quiet unless asked for: these lines come twice a second.
Q_LOGGING_CATEGORY(liveLog, "kivo.live", QtInfoMsg)

const TextRun* ValueRun(const QVector<TextRun>& runs, int item) {
    for (const TextRun& run : runs) {
        if (run.item == item && run.role == TextRole::Value) {
            return &run;
        }
    }
    return nullptr;
}

bool IsClockText(const QString& text) {
    return text.size() == 5 && text.at(2) == QLatin1Char(':') && text.at(0).isDigit() &&
           text.at(1).isDigit() && text.at(3).isDigit() && text.at(4).isDigit();
}

// The hours' and the minutes' digits. The colon between them never changes.
QVector<QRect> ClockRects(const TextRun& run) {
    const FittedLine line = FitRun(run);
    const LineMetrics metrics = MetricsOf(line.pixelSize);
    if (!metrics.separateDigits || !IsClockText(line.text)) {
        return Halves(run.rect);
    }
    const int hours = line.baseLine.x() - 2;
    const int minutes = hours + 2 * metrics.digitWidth + metrics.colonWidth - 2;
    const int width = 2 * metrics.digitWidth + 4;
    const int top = run.rect.top() + qFloor((run.rect.height() - metrics.height) / 2.0);
    QRect minuteRect(minutes, top, width, metrics.height);
    // The widths of single signs are rounded; in a font with fractions four digits can be wider than four
    // times one.
    minuteRect.setRight(qMax(minuteRect.right(), line.baseLine.x() + line.width - 1));
    return {QRect(hours, top, width, metrics.height), minuteRect};
}

void LogSceneDate(const QRect& rect) {
    const int half = rect.width() / 2;
    qCDebug(liveLog) << "rect 0 " << rect.left() << " " << rect.top() << " " << half << " " << rect.height();
    qCDebug(liveLog) << "rect 1 " << rect.left() + half << " " << rect.top() << " " << half << " "
                     << rect.height();
}

// The parts an item is sent in, before any of them is cut down to the size of a report.
QVector<QRect> Parts(const ScreenState& state, const TextRun& run, bool firstTime) {
    const bool clock = run.item == Time && (state.custom || IsHourAlone(state));
    if (clock && !firstTime) {
        return ClockRects(run);
    }
    if (!IsSentInHalves(state, run.item)) {
        return {run.rect};
    }
    if (IsHourAlone(state) && run.item == Date) {
        LogSceneDate(run.rect);
    }
    return Halves(run.rect);
}

// The region and all texts that reach into it, with a pixel to spare. A glyph that the edge of a picture cuts
// is blended by another rule than a whole one, off by the last bit, so it has to be as whole here as in the
// whole frame.
QRect WholeTextsAround(const QVector<TakenRoom>& taken, const QRect& region) {
    QRect around = region;
    for (const TakenRoom& room : taken) {
        if (IsText(room) && room.rect.intersects(region)) {
            around |= room.rect;
        }
    }
    return around.adjusted(-1, -1, 1, 1);
}

static_assert(kLiveValueCount <= 32, "Items are told as the bits of a quint32.");

// The items of whose texts something lies in the region, as bits.
quint32 ItemsIn(const QVector<TakenRoom>& taken, const QRect& region) {
    quint32 items = 0;
    for (const TakenRoom& room : taken) {
        if (room.of == RoomOf::Value && room.rect.intersects(region)) {
            items |= 1U << room.item;
        }
    }
    return items;
}

}  // namespace

bool IsUpdateSent(const ScreenState& state, int item, bool changed) {
    if (!IsShown(state, item)) {
        return false;
    }
    if (state.custom) {
        const int slot = SlotOf(state, item);
        // Deliberate: the centre slot keeps quiet about an unchanged text, the time's excepted. This
        // matters for the date alone: the record stops every other unchanged text.
        return slot != kEmptySlot && (slot != kCentreSlot || item == Time || changed);
    }
    return changed || item == Time || item == Date;
}

QVector<QRect> SendRects(const ScreenState& state, const QVector<TextRun>& runs, int item, bool firstTime) {
    QVector<QRect> rects;
    const TextRun* run = ValueRun(runs, item);
    if (run == nullptr) {
        return rects;
    }
    const QRect canvas(QPoint(0, 0), CanvasSize(state.orientation));
    const QVector<QRect> parts = Parts(state, *run, firstTime);
    for (const QRect& part : parts) {
        const QVector<QRect> columns = ColumnsThatFit(part & canvas);
        for (const QRect& column : columns) {
            if (!column.isEmpty()) {
                rects.append(column);
            }
        }
    }
    return rects;
}

LiveUpdate RenderItem(const ScreenState& state, const PanelBackground& background, const ItemTexts& texts,
                      int item, bool firstTime) {
    LiveUpdate update;
    if (!IsItem(item)) {
        return update;
    }
    const PanelTexts laidOut = LayOutPanelTexts(state, texts, background.accent);
    const QVector<QRect> rects = SendRects(state, laidOut.runs, item, firstTime);
    QRect region;
    for (const QRect& rect : rects) {
        region |= rect;
    }
    if (region.isEmpty()) {
        return update;
    }
    update.drawnItems = ItemsIn(laidOut.taken, region);
    // Only this part of the canvas is rebuilt; everything that reaches into it is drawn, in the order of a
    // whole frame.
    const QRect around = WholeTextsAround(laidOut.taken, region);
    QImage part = background.image.copy(around);
    {
        QPainter painter(&part);
        painter.translate(-around.topLeft());
        DrawPanelTexts(painter, laidOut, region);
    }
    for (const QRect& rect : rects) {
        // A rectangle of somebody's own settings may be larger than a report even in columns; it keeps its
        // old pixels.
        if (FitsOneReport(rect)) {
            update.cuts.append(
                {rect, WirePixels(part, rect.translated(-around.topLeft()), state.orientation)});
        }
    }
    return update;
}

}  // namespace kivo
