// ZoomWidget's trim mode: a crop frame over the whole picture, moved and sized by mouse, wheel and keyboard.

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>

#include "editor/zoom_widget.h"

namespace kivo {

namespace {

// Panel pixels of the frame's long side.
constexpr int kInsetPerNotch = 8;
constexpr double kInsetPerKey = 4;
constexpr int kAnglePerInset = QWheelEvent::DefaultDeltasPerStep / kInsetPerNotch;

}  // namespace

void ZoomWidget::SetTrimMode(quint8 on) {
    // The tool bar lets its trim button go at every other choice, also right after text entry was opened.
    if (m_trimMode == (on != 0)) {
        return;
    }
    solteditingFinished();
    EndDrag();
    m_trimMode = on != 0;
    m_trimZone = TrimZone::None;
    m_pickedSlot = kEmptySlot;
    m_wheelRest = 0;
    SetHover(kEmptySlot, false);
    setMouseTracking(m_trimMode);
    RetranslateTexts();
    update();
    Q_EMIT trimmingChanged();
}

void ZoomWidget::ResetTrim() {
    EndDrag();
    ClearTrim(LayoutInForce(m_edited));
    NoteEdit(By::Caller);
}

TrimView ZoomWidget::CurrentTrimView() {
    const LayoutRecord& layout =
        m_drag == Drag::MoveFrame || m_drag == Drag::SizeFrame ? m_trimDraft : Layout();
    return MakeTrimView(m_background.PictureSize(Shown()), CurrentOrientation(), layout);
}

TrimMapping ZoomWidget::MappingOf(const TrimView& view) const {
    return TrimMappingFor(CurrentOrientation(), size(), view.picture);
}

void ZoomWidget::UpdateTrimZone(QPoint position) {
    const TrimView view = CurrentTrimView();
    m_trimZone = TrimZoneAt(MappingOf(view).Mapped(view.frame), position);
    setCursor(TrimCursor(m_trimZone));
}

void ZoomWidget::TrimPress(QPoint position) {
    UpdateTrimZone(position);
    if (m_trimZone == TrimZone::None) {
        return;
    }
    m_trimStart = CurrentTrimView();
    m_trimDraft = Layout();
    m_pressedAt = position;
    m_drag = m_trimZone == TrimZone::Inside ? Drag::MoveFrame : Drag::SizeFrame;
    if (m_drag == Drag::MoveFrame) {
        Q_EMIT HideRemote(1);
    }
}

void ZoomWidget::TrimMove(QPoint position) {
    if (m_drag == Drag::None) {
        UpdateTrimZone(position);
        return;
    }
    // From where the drag began, so that what the picture's edge held back is made up for on the way back.
    const QPointF by = QPointF(position - m_pressedAt) / MappingOf(m_trimStart).scale;
    const QRectF frame = m_drag == Drag::MoveFrame
                             ? MovedFrame(m_trimStart, by)
                             : ResizedFrame(m_trimStart, m_trimZone, by, CurrentOrientation());
    StoreTrim(frame, CurrentOrientation(), m_trimDraft);
    update();
}

void ZoomWidget::TrimRelease(QPoint position) {
    if (m_drag != Drag::None) {
        m_drag = Drag::None;
        LayoutInForce(m_edited) = m_trimDraft;
        NoteEdit(By::Person);
    }
    UpdateTrimZone(position);
    update();
    Q_EMIT HideRemote(0);
}

void ZoomWidget::SetTrimFrame(const QRectF& frame, EditHistory::Kind kind) {
    StoreTrim(frame, CurrentOrientation(), LayoutInForce(m_edited));
    NoteEdit(By::Person, kind);
}

void ZoomWidget::wheelEvent(QWheelEvent* event) {
    if (!IsTrimming() || m_drag != Drag::None) {
        QWidget::wheelEvent(event);
        return;
    }
    // Fine wheels and touch pads send parts of a notch, too small for a whole panel pixel each.
    m_wheelRest += event->angleDelta().y();
    const int inset = m_wheelRest / kAnglePerInset;
    if (inset != 0) {
        m_wheelRest -= inset * kAnglePerInset;
        SetTrimFrame(ZoomedFrame(CurrentTrimView(), inset, CurrentOrientation()), EditHistory::Kind::Zoom);
        UpdateTrimZone(WholePosition(event->position()));
    }
    event->accept();
}

bool ZoomWidget::HandleTrimKey(const QKeyEvent& event) {
    if (m_drag != Drag::None) {
        if (event.key() == Qt::Key_Escape) {
            EndDrag();
        }
        return true;
    }
    constexpr double kSmallStep = 1;
    constexpr double kLargeStep = 10;
    const double step = (event.modifiers() & Qt::ShiftModifier) != 0 ? kLargeStep : kSmallStep;
    const TrimView view = CurrentTrimView();
    const auto move = [&](double x, double y) {
        SetTrimFrame(MovedFrame(view, QPointF(x, y)), EditHistory::Kind::Move);
        return true;
    };
    const auto zoom = [&](double inset) {
        SetTrimFrame(ZoomedFrame(view, inset, CurrentOrientation()), EditHistory::Kind::Zoom);
        return true;
    };
    switch (event.key()) {
        case Qt::Key_Left:
            return move(-step, 0);
        case Qt::Key_Right:
            return move(step, 0);
        case Qt::Key_Up:
            return move(0, -step);
        case Qt::Key_Down:
            return move(0, step);
        case Qt::Key_Plus:
        case Qt::Key_Equal:
            return zoom(kInsetPerKey);
        case Qt::Key_Minus:
        case Qt::Key_Underscore:
            return zoom(-kInsetPerKey);
        default:
            return false;
    }
}

}  // namespace kivo
