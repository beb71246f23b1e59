// ZoomWidget's painting: the well, the magnified screen, and over it the marks of what can be edited.

#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include "compose/item_drawing.h"
#include "editor/editor_marks.h"
#include "editor/zoom_widget.h"
#include "widgets/self_plain_text_edit.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace {

constexpr double kWellRadius = 10;
constexpr double kScreenRadius = 6;
constexpr QColor kScreenEdge = window_colors::kThumb;

// Outlines keep a little away from what they hold.
constexpr QMargins kSlotMargins(4, 2, 4, 2);  // canvas pixels
constexpr QMargins kTextMargins(4, 4, 4, 4);  // widget pixels

// Behind the text box, so that what is typed can be read over the values it covers; the light one is for
// black text.
constexpr QColor kTextBoxGround(0x07, 0x13, 0x26, 225);
constexpr QColor kLightTextBoxGround(255, 255, 255, 225);

// The nearest point that lies between two pixels of the device, so that pictures are not resampled there.
QPointF OnDevicePixels(QPointF point, double ratio) {
    return QPointF(qRound(point.x() * ratio) / ratio, qRound(point.y() * ratio) / ratio);
}

QRectF RoundedOut(const QSizeF& size, double ratio) {
    // Less than a hundredth of a pixel is a rounding error.
    constexpr double kNoise = 0.01;
    return QRectF(0, 0, qCeil(size.width() * ratio - kNoise), qCeil(size.height() * ratio - kNoise));
}

bool HasCaptionBelow(const PanelTexts& texts, int item) {
    for (const TextRun& run : texts.runs) {
        if (run.item == item && run.role == TextRole::Caption) {
            return true;
        }
    }
    return false;
}

// What belongs to a slot on the canvas: its value and the caption below.
QRect SlotArea(int slot, const ScreenState& state, const PanelTexts& texts) {
    QRect area = SlotRect(slot, state.orientation);
    if (HasCaptionBelow(texts, ItemDrawnIn(state, slot))) {
        area.setBottom(SlotCaptionRect(slot, state.orientation).bottom());
    }
    // Off the screen's own edge.
    return area.marginsAdded(kSlotMargins) &
           QRect(QPoint(0, 0), CanvasSize(state.orientation)).adjusted(1, 1, -1, -1);
}

}  // namespace

void ZoomWidget::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (!m_framed || IsTrimming()) {
        QPainterPath well;
        well.addRoundedRect(rect(), kWellRadius, kWellRadius);
        painter.fillPath(well, window_colors::kWell);
    }

    const ScreenState state = Shown();
    if (IsTrimming()) {
        PaintTrim(painter, state);
    } else {
        PanelTexts texts = LayOutPanelTexts(state, PreviewTexts());
        if (m_textEntryOpen) {
            texts.freeText = FreeTextBlock();
        }
        PaintScreen(painter, state, texts);
        if (m_drag == Drag::Text) {
            PaintRowMarks(painter);
        } else if (m_editing && state.custom && !m_textEntryOpen) {
            PaintLayoutMarks(painter, state, texts);
        }
    }
    if (hasFocus() && m_focusByKeyboard) {
        DrawFocusRing(painter, rect(), kWellRadius);
    }
}

void ZoomWidget::PaintScreen(QPainter& painter, const ScreenState& state, const PanelTexts& texts) {
    const ScreenMapping map = MappingFor(state.orientation, size());
    const double ratio = devicePixelRatioF();
    const QSizeF canvas = CanvasSize(state.orientation);
    const QPointF origin = OnDevicePixels(map.Mapped(QPointF(0, 0)), ratio);
    const QSize pixels = RoundedOut(canvas * map.scale, ratio).size().toSize();
    const QRectF area(origin, QSizeF(pixels) / ratio);

    painter.save();
    QPainterPath screen;
    screen.addRoundedRect(area, kScreenRadius, kScreenRadius);
    painter.setClipPath(screen);
    painter.drawImage(area, m_background.Composed(state, pixels));

    // The panel's own drawing, magnified: every text stands where the panel has it.
    painter.translate(origin);
    painter.scale(map.scale, map.scale);
    DrawPanelTexts(painter, texts, QRect(QPoint(0, 0), canvas.toSize()));
    painter.restore();
    if (m_textEntryOpen) {
        const bool isDark = FreeTextColor(state.layout.colorIndex).lightness() == 0;
        painter.fillRect(m_editText->geometry(), isDark ? kLightTextBoxGround : kTextBoxGround);
    }

    painter.setPen(QPen(kScreenEdge, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), kScreenRadius, kScreenRadius);
}

// Where the text would stand in each row. The one that takes it is drawn over its neighbours.
void ZoomWidget::PaintRowMarks(QPainter& painter) const {
    for (const Mark mark : {Mark::Idle, Mark::Active}) {
        for (int row = 0; row < kTextRowCount; ++row) {
            if ((row == m_dropRow) == (mark == Mark::Active)) {
                DrawOutline(painter, QRectF(DrawnTextRect(row)).marginsAdded(kTextMargins), mark);
            }
        }
    }
}

void ZoomWidget::PaintLayoutMarks(QPainter& painter, const ScreenState& state,
                                  const PanelTexts& texts) const {
    const ScreenMapping map = MappingFor(state.orientation, size());
    const auto mapped = [&map](const QRect& rect) {
        return QRectF(map.Mapped(QPointF(rect.topLeft())), QSizeF(rect.size()) * map.scale);
    };
    if (CanDragSlots()) {
        for (int slot = 0; slot < kSlotCount; ++slot) {
            const bool byKey = m_focusByKeyboard && (slot == m_keySlot || slot == m_pickedSlot);
            const bool active = slot == m_hoverSlot || slot == m_draggedSlot || byKey;
            DrawOutline(painter, mapped(SlotArea(slot, state, texts)), active ? Mark::Active : Mark::Idle);
        }
    }
    if (!texts.freeText.lines.isEmpty()) {
        DrawOutline(painter, mapped(texts.freeText.bounds).marginsAdded(kTextMargins),
                    m_hoverText ? Mark::Active : Mark::Idle);
    }
}

void ZoomWidget::PaintTrim(QPainter& painter, const ScreenState& state) {
    const TrimView view = CurrentTrimView();
    const TrimMapping map = MappingOf(view);
    const double ratio = devicePixelRatioF();
    const QRectF exact = map.Mapped(view.picture);
    const QSize pixels = RoundedOut(exact.size(), ratio).size().toSize();
    const QRectF shown(OnDevicePixels(exact.topLeft(), ratio), QSizeF(pixels) / ratio);

    painter.save();
    QPainterPath well;
    well.addRoundedRect(rect(), kWellRadius, kWellRadius);
    painter.setClipPath(well);
    painter.fillRect(shown, Qt::black);  // what the panel shows where a picture is transparent
    painter.drawImage(shown, m_background.WholePicture(state, pixels));
    DrawTrimFrame(painter, map.Mapped(view.frame), shown, QRectF(rect()));
    painter.restore();
}

}  // namespace kivo
