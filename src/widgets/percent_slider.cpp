#include "widgets/percent_slider.h"

#include <QMouseEvent>
#include <QPainter>
#include <QSignalBlocker>
#include <QWheelEvent>

#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr int kMost = 100;
constexpr double kKnob = 12;
constexpr double kGroove = 4;
constexpr int kNotch = 120;

}  // namespace

PercentSlider::PercentSlider(QWidget* parent) : QSlider(Qt::Horizontal, parent) {
    setRange(0, kMost);
    setSingleStep(kStep);
    setPageStep(2 * kStep);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_Hover);
    setProperty("focusRadius", 6);
    connect(this, &QSlider::valueChanged, this, &PercentSlider::chosen);
}

void PercentSlider::Show(int percent) {
    const QSignalBlocker quiet(this);
    setValue(percent);
}

QSize PercentSlider::sizeHint() const {
    return QSize(64, 20);
}

QSize PercentSlider::minimumSizeHint() const {
    return QSize(40, 20);
}

// Qt's own slider looks for the part of its style's knob under the mouse; this one has one place to hover.
bool PercentSlider::event(QEvent* event) {
    if (event->type() == QEvent::HoverEnter || event->type() == QEvent::HoverLeave) {
        update();
    }
    return QSlider::event(event);
}

void PercentSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton) {
        event->ignore();
        return;
    }
    setSliderDown(true);
    Q_EMIT runBegun();
    MoveTo(event->pos().x());
}

void PercentSlider::mouseMoveEvent(QMouseEvent* event) {
    if (isSliderDown()) {
        MoveTo(event->pos().x());
    }
}

void PercentSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        LetGo();
    }
}

// Touch pads send parts of a notch. What lies below is not scrolled by what this one does not need.
void PercentSlider::wheelEvent(QWheelEvent* event) {
    event->accept();
    m_wheel += event->angleDelta().y() != 0 ? event->angleDelta().y() : event->angleDelta().x();
    const int notches = m_wheel / kNotch;
    m_wheel -= notches * kNotch;
    if (notches != 0 && !isSliderDown()) {
        setValue(value() + notches * kStep);
    }
}

void PercentSlider::hideEvent(QHideEvent* event) {
    LetGo();
    QSlider::hideEvent(event);
}

void PercentSlider::changeEvent(QEvent* event) {
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        LetGo();
    }
    QSlider::changeEvent(event);
}

void PercentSlider::MoveTo(int x) {
    const double share = (x - kKnob / 2) / (width() - kKnob);
    setValue(qBound(0, qRound(share * kMost / kStep), kMost / kStep) * kStep);
}

void PercentSlider::LetGo() {
    if (isSliderDown()) {
        setSliderDown(false);
        Q_EMIT runEnded();
    }
}

double PercentSlider::KnobAt() const {
    return kKnob / 2 + (width() - kKnob) * value() / kMost;
}

void PercentSlider::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const double middle = height() / 2.0;
    const QRectF groove(0, middle - kGroove / 2, width(), kGroove);
    painter.setBrush(isEnabled() ? colors::kThumb : colors::kButtonEdgeOff);
    painter.drawRoundedRect(groove, kGroove / 2, kGroove / 2);
    QRectF filled = groove;
    filled.setRight(KnobAt());
    painter.setBrush(isEnabled() ? colors::kAccentBright : colors::kChoiceOff);
    if (value() > 0) {
        painter.drawRoundedRect(filled, kGroove / 2, kGroove / 2);
    }
    const bool isLit = underMouse() || isSliderDown();
    painter.setBrush(!isEnabled()     ? colors::kChoiceOff
                     : isSliderDown() ? colors::kAccentBright
                     : isLit          ? QColor(Qt::white)
                                      : colors::kButtonText);
    // The card shows between knob and groove, so that the knob is seen on either end of it.
    painter.setPen(QPen(colors::kCard, 1.5));
    painter.drawEllipse(QPointF(KnobAt(), middle), kKnob / 2 - 0.75, kKnob / 2 - 0.75);
}

}  // namespace kivo
