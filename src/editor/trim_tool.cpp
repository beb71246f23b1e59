#include "editor/trim_tool.h"

#include <QWheelEvent>

namespace kivo {

namespace {

// Panel pixels of the frame's long side.
constexpr int kInsetPerNotch = 8;
constexpr double kInsetPerKey = 4;
constexpr int kAnglePerInset = QWheelEvent::DefaultDeltasPerStep / kInsetPerNotch;

}  // namespace

void TrimTool::SetPlace(QSize picture, QSize widget) {
    m_picture = picture;
    m_widget = widget;
}

TrimView TrimTool::View() const {
    LayoutRecord layout = m_editor.Layout();
    if (m_isDragging) {
        StoreTrim(m_draft, m_editor.Lying(), layout);
    }
    return MakeTrimView(m_picture, m_editor.Lying(), layout);
}

TrimMapping TrimTool::Mapping() const {
    return TrimMappingFor(m_editor.Lying(), m_widget, View().picture);
}

void TrimTool::Hover(QPoint position) {
    if (!m_isDragging) {
        m_zone = TrimZoneAt(Mapping().Mapped(View().frame), position);
    }
}

bool TrimTool::Press(QPoint position) {
    GiveUp();
    Hover(position);
    if (m_zone == TrimZone::None) {
        return false;
    }
    m_start = View();
    m_draft = m_start.frame;
    m_pressedAt = position;
    m_isDragging = true;
    return true;
}

void TrimTool::Move(QPoint position) {
    if (!m_isDragging) {
        Hover(position);
        return;
    }
    // From where the drag began, so that what the picture's edge held back is made up for on the way back.
    const QPointF by = QPointF(position - m_pressedAt) / Mapping().scale;
    m_draft = m_zone == TrimZone::Inside ? MovedFrame(m_start, by)
                                         : ResizedFrame(m_start, m_zone, by, m_editor.Lying());
}

bool TrimTool::Release(QPoint position) {
    const bool hadDraft = m_isDragging;
    m_isDragging = false;
    const bool changes = hadDraft && m_draft != m_start.frame;
    if (changes) {
        m_editor.SetTrim(m_draft);
    }
    Hover(position);
    return changes;
}

void TrimTool::GiveUp() {
    m_isDragging = false;
}

void TrimTool::Leave() {
    GiveUp();
    m_zone = TrimZone::None;
    m_zoomed = QRectF();
    m_wheelRest = 0;
}

bool TrimTool::Wheel(int angle, QPointF position) {
    if (m_isDragging) {
        return false;
    }
    // Fine wheels and touch pads send parts of a notch, too small for a whole panel pixel each.
    m_wheelRest += angle;
    const int inset = m_wheelRest / kAnglePerInset;
    if (inset == 0) {
        return false;
    }
    m_wheelRest -= inset * kAnglePerInset;
    const QRectF frame = Mapping().Mapped(View().frame);
    Zoom(inset, QPointF((position.x() - frame.left()) / frame.width(),
                        (position.y() - frame.top()) / frame.height()));
    Hover(WholePosition(position));
    return true;
}

// Goes on from where zooming led: each notch rounded by itself, the picture would creep away from the mouse.
void TrimTool::Zoom(double inset, QPointF about) {
    TrimView view = View();
    LayoutRecord zoomed = m_editor.Layout();
    StoreTrim(m_zoomed, m_editor.Lying(), zoomed);
    if (zoomed == m_editor.Layout() && !m_zoomed.isEmpty()) {
        view.frame = m_zoomed;
    }
    m_zoomed = ZoomedFrame(view, inset, m_editor.Lying(), about);
    m_editor.SetTrim(m_zoomed, EditHistory::Kind::Zoom);
}

bool TrimTool::Key(int key, Qt::KeyboardModifiers modifiers) {
    constexpr double kSmallStep = 1;
    constexpr double kLargeStep = 10;
    constexpr QPointF kMiddle(0.5, 0.5);
    const double step = modifiers.testFlag(Qt::ShiftModifier) ? kLargeStep : kSmallStep;
    const auto move = [this](double x, double y) {
        m_editor.SetTrim(MovedFrame(View(), QPointF(x, y)), EditHistory::Kind::Move);
        return true;
    };
    switch (key) {
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
            Zoom(kInsetPerKey, kMiddle);
            return true;
        case Qt::Key_Minus:
        case Qt::Key_Underscore:
            Zoom(-kInsetPerKey, kMiddle);
            return true;
        default:
            return false;
    }
}

}  // namespace kivo
