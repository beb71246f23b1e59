#include "editor/device_frame.h"

#include <QEvent>
#include <QPainter>

#include "editor/screen_mapping.h"
#include "editor/zoom_widget.h"
#include "widgets/window_colors.h"

namespace kivo {

namespace {

// Of the case round the screen, window pixels. Standing, the screen leaves less room above and below.
constexpr int kBezel = 8;
constexpr int kStandingBezel = 4;
constexpr double kRadius = 14;
constexpr QColor kCaseTop(0x11, 0x17, 0x1E);
constexpr QColor kCaseFoot(0x0A, 0x0E, 0x13);

}  // namespace

DeviceFrame::DeviceFrame(ZoomWidget& editor) : QWidget(editor.parentWidget()), m_editor(editor) {
    setObjectName(QStringLiteral("deviceFrame"));
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setFocusPolicy(Qt::NoFocus);
    stackUnder(&editor);
    editor.installEventFilter(this);
    connect(&editor, &ZoomWidget::trimmingChanged, this, &DeviceFrame::Follow);
    editor.SetFramed(true);
    Follow();
}

bool DeviceFrame::eventFilter(QObject* /*watched*/, QEvent* event) {
    switch (event->type()) {
        case QEvent::Move:
        case QEvent::Resize:
        case QEvent::ShowToParent:
        case QEvent::HideToParent:
            Follow();
            break;
        default:
            break;
    }
    return false;
}

void DeviceFrame::Follow() {
    const Orientation orientation = m_editor.Edited().themes.orientation;
    const QRect screen =
        MappingFor(orientation, m_editor.size()).Mapped(QRect(QPoint(0, 0), CanvasSize(orientation)));
    const int bezel = orientation == Orientation::Portrait ? kStandingBezel : kBezel;
    setGeometry(screen.translated(m_editor.pos()).adjusted(-bezel, -bezel, bezel, bezel));
    setVisible(!m_editor.isHidden() && !m_editor.IsTrimming());
    // The focus ring lies round what is seen: the case, or the well of the editor.
    const bool isCased = !m_editor.IsTrimming();
    m_editor.setProperty("focusRect", isCased ? geometry().translated(-m_editor.pos()) : QVariant());
    m_editor.setProperty("focusRadius", isCased ? kRadius : ZoomWidget::kWellRadius);
}

// Lit from above, as everything in the window is.
void DeviceFrame::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    QLinearGradient body(0, 0, 0, height());
    body.setColorAt(0, kCaseTop);
    body.setColorAt(1, kCaseFoot);
    QLinearGradient edge(0, 0, 0, height());
    edge.setColorAt(0, window_colors::kThumbHover);
    edge.setColorAt(0.3, window_colors::kCardEdge);
    edge.setColorAt(1, window_colors::kButtonEdgeOff);
    painter.setPen(QPen(edge, 1));
    painter.setBrush(body);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), kRadius - 0.5, kRadius - 0.5);
}

}  // namespace kivo
