// ZoomWidget's painting: the well, the magnified screen, and over it the marks of what can be edited.

#include <QPainter>
#include <QPainterPath>
#include <QtMath>

#include "compose/item_drawing.h"
#include "editor/editor_marks.h"
#include "editor/text_box.h"
#include "editor/zoom_widget.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace {

constexpr double kScreenRadius = 6;
constexpr QColor kScreenEdge = window_colors::kThumb;

// Outlines keep a little away from what they hold.
constexpr QMargins kSlotMargins(2, 2, 2, 2);  // canvas pixels
constexpr double kSlotRadius = kChipRadius + 2;
constexpr QMargins kTextMargins(4, 4, 4, 4);  // widget pixels
constexpr double kTextRadius = 6;

// A dragged item goes with the mouse; in its place it stands fainter, as the one does that it is held over.
constexpr double kLeftBehind = 0.35;
constexpr double kGhost = 0.9;

constexpr double kTypingFrame = 1.5;
constexpr double kTypingRadius = 6;
constexpr QColor kSelection(0x4F, 0xE0, 0xC0, 110);

// The nearest point that lies between two pixels of the device, so that pictures are not resampled there.
QPointF OnDevicePixels(QPointF point, double ratio) {
    return QPointF(qRound(point.x() * ratio) / ratio, qRound(point.y() * ratio) / ratio);
}

QRectF RoundedOut(const QSizeF& size, double ratio) {
    // Less than a hundredth of a pixel is a rounding error.
    constexpr double kNoise = 0.01;
    return QRectF(0, 0, qCeil(size.width() * ratio - kNoise), qCeil(size.height() * ratio - kNoise));
}

// What belongs to a slot on the canvas: its chip, or where one would lie.
QRect SlotArea(int slot, const ScreenState& state, const PanelTexts& texts) {
    // Off the screen's own edge.
    return SlotRoom(texts, state, slot).marginsAdded(kSlotMargins) &
           QRect(QPoint(0, 0), CanvasSize(state.orientation)).adjusted(1, 1, -1, -1);
}

}  // namespace

void ZoomWidget::paintEvent(QPaintEvent* /*event*/) {
    // Some desktops have a minimised window painted too: for nobody.
    if (window()->isMinimized()) {
        return;
    }
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
        return;
    }
    const QRectF area = ScreenArea();
    const ItemFlags hidden = HiddenByBox(state);
    // What is typed may have a pill of its own.
    const PanelBackground& background =
        m_background.Composed(m_textEntryOpen ? Typed().State() : state, ScreenPixels(), hidden);
    const PanelTexts texts = LayOutPanelTexts(state, PreviewTexts(), background.accent);
    PaintScreen(painter, area, background.image, WithoutItems(hidden, texts));
    if (m_drag.HoldsText() && m_editing) {
        PaintRowMarks(painter);
    } else if (m_editing && state.custom && !m_textEntryOpen) {
        PaintLayoutMarks(painter, state, texts);
    }
}

ItemTexts ZoomWidget::PreviewTexts() const {
    ItemTexts texts = m_editor.Layout().sample;
    for (size_t item = 0; item < texts.size(); ++item) {
        if (!m_liveTexts[item].isEmpty()) {
            texts[item] = m_liveTexts[item];
        }
    }
    return texts;
}

QRectF ZoomWidget::ScreenArea() const {
    const ScreenMapping map = Mapping();
    const double ratio = devicePixelRatioF();
    const QPointF origin = OnDevicePixels(map.Mapped(QPointF(0, 0)), ratio);
    const QSizeF canvas = CanvasSize(m_editor.Lying());
    return QRectF(origin, RoundedOut(canvas * map.scale, ratio).size() / ratio);
}

ItemFlags ZoomWidget::HiddenByBox(const ScreenState& state) const {
    if (!m_textEntryOpen) {
        return {};
    }
    const ScreenMapping map = Mapping();
    const QRectF box(m_editText->geometry());
    return ItemsUnder(QRectF(map.OnCanvas(box.topLeft()), box.size() / map.scale), *LayOutPanel(state));
}

void ZoomWidget::PaintScreen(QPainter& painter, const QRectF& area, const QImage& background,
                             const PanelTexts& texts) {
    const ScreenMapping map = Mapping();
    painter.save();
    QPainterPath screen;
    screen.addRoundedRect(area, kScreenRadius, kScreenRadius);
    painter.setClipPath(screen);
    painter.drawImage(area, background);

    // The panel's own drawing, magnified: every text stands where the panel has it.
    painter.translate(area.topLeft());
    painter.scale(map.scale, map.scale);
    if (m_textEntryOpen) {
        PanelTexts around = texts;
        around.freeText = FreeTextBlock();
        PaintTexts(painter, around);
        PaintTyped(painter, Typed());
    } else {
        PaintTexts(painter, texts);
    }
    painter.restore();

    painter.setPen(QPen(kScreenEdge, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRoundedRect(area.adjusted(0.5, 0.5, -0.5, -0.5), kScreenRadius, kScreenRadius);
    if (m_textEntryOpen) {
        constexpr double kHalf = kTypingFrame / 2;
        painter.setPen(QPen(window_colors::kAccentBright, kTypingFrame));
        painter.drawRoundedRect(QRectF(m_editText->geometry()).adjusted(kHalf, kHalf, -kHalf, -kHalf),
                                kTypingRadius, kTypingRadius);
    }
}

void ZoomWidget::PaintTexts(QPainter& painter, const PanelTexts& texts) const {
    const ScreenState state = Shown();
    const QRect canvas(QPoint(0, 0), CanvasSize(state.orientation));
    if (!m_drag.IsDrag()) {
        DrawPanelTexts(painter, texts, canvas);
        return;
    }
    PanelTexts still;
    PanelTexts dragged;
    PanelTexts target;  // goes the other way
    for (const TextRun& run : texts.runs) {
        const int slot = SlotOf(state, run.item);
        const bool isDragged = slot != kEmptySlot && slot == m_drag.HeldSlot();
        const bool isTarget = slot != kEmptySlot && slot == m_drag.MarkedSlot();
        (isDragged ? dragged : isTarget ? target : still).runs.append(run);
    }
    (m_drag.HoldsText() ? dragged : still).freeText = texts.freeText;
    DrawPanelTexts(painter, still, canvas);
    painter.save();
    painter.setOpacity(kLeftBehind);
    DrawPanelTexts(painter, dragged, canvas);
    DrawPanelTexts(painter, target, canvas);
    painter.setOpacity(kGhost);
    painter.translate(QPointF(m_drag.Offset()) / Mapping().scale);
    if (m_drag.HeldSlot() != kEmptySlot) {
        DrawGhostChip(painter, SlotRoom(texts, state, m_drag.HeldSlot()));
    }
    DrawPanelTexts(painter, dragged, canvas);
    painter.restore();
}

void ZoomWidget::PaintTyped(QPainter& painter, const TypedText& typed) const {
    const QVector<QRectF> selection = typed.Selection();
    for (const QRectF& rect : selection) {
        painter.fillRect(rect, kSelection);
    }
    DrawFreeText(painter, typed.Block(), QRect(QPoint(0, 0), CanvasSize(m_editor.Lying())));
    const QColor color = FreeTextColor(m_editor.Layout().colorIndex);
    const QVector<QRectF> preedit = typed.Preedit();
    for (const QRectF& rect : preedit) {
        painter.fillRect(QRectF(rect.left(), rect.bottom() - 1, rect.width(), 1), color);
    }
    if (m_editText->IsCaretOn()) {
        painter.fillRect(typed.Caret(), color);
    }
}

// Where the text would stand in each row. The one that takes it is drawn over its neighbours.
void ZoomWidget::PaintRowMarks(QPainter& painter) const {
    for (const Mark mark : {Mark::Idle, Mark::Active}) {
        for (int row = 0; row < kTextRowCount; ++row) {
            if ((row == m_drag.DropRow()) == (mark == Mark::Active)) {
                DrawOutline(painter, QRectF(m_drag.DrawnTextRect(row)).marginsAdded(kTextMargins),
                            kTextRadius, mark);
            }
        }
    }
}

void ZoomWidget::PaintLayoutMarks(QPainter& painter, const ScreenState& state,
                                  const PanelTexts& texts) const {
    const ScreenMapping map = Mapping();
    const auto mapped = [&map](const QRect& rect) {
        return QRectF(map.Mapped(QPointF(rect.topLeft())), QSizeF(rect.size()) * map.scale);
    };
    if (m_editor.HasSlots()) {
        for (int slot = 0; slot < kSlotCount; ++slot) {
            const bool byKey = m_focusByKeyboard && (slot == m_drag.KeySlot() || slot == m_drag.PickedSlot());
            const bool active = slot == m_drag.MarkedSlot() || slot == m_drag.HeldSlot() || byKey;
            DrawOutline(painter, mapped(SlotArea(slot, state, texts)), kSlotRadius * map.scale,
                        active ? Mark::Active : Mark::Idle);
        }
    }
    if (!texts.freeText.lines.isEmpty()) {
        DrawOutline(painter, mapped(texts.freeText.bounds).marginsAdded(kTextMargins), kTextRadius,
                    m_drag.MarksText() ? Mark::Active : Mark::Idle);
    }
}

void ZoomWidget::PaintTrim(QPainter& painter, const ScreenState& state) {
    const TrimView view = Trimmer().View();
    const TrimMapping map = m_trim.Mapping();
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
