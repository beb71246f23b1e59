#include "widgets/nimb_push_button.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPointer>
#include <utility>

namespace kivo {

// While it lives, what the base class tells comes from the mouse. The button may go meanwhile.
class NimbPushButton::ByMouse {
public:
    explicit ByMouse(NimbPushButton* button) : m_button(button) { button->m_byMouse = true; }
    ~ByMouse() {
        if (m_button) {
            m_button->m_byMouse = false;
        }
    }
    Q_DISABLE_COPY_MOVE(ByMouse)

private:
    QPointer<NimbPushButton> m_button;
};

NimbPushButton::NimbPushButton(QWidget* parent)
    : QPushButton(parent),
      m_textColors{QColor(130, 130, 130), QColor(225, 225, 225), QColor(255, 255, 255), QColor(100, 100, 100),
                   QColor(100, 100, 100)},
      m_backColors{Qt::transparent, Qt::transparent, Qt::transparent, Qt::transparent, Qt::transparent} {
    // Presses that do not come from the mouse (space, a shortcut, click(), assistive programs) count as well.
    connect(this, &QPushButton::pressed, this, &NimbPushButton::TakePressWithoutMouse);
    connect(this, &QPushButton::released, this, &NimbPushButton::LetGoWithoutMouse);
    connect(this, &QPushButton::toggled, this, &NimbPushButton::TakeToggle);
}

NimbPushButton::NimbPushButton(const QString& text, QWidget* parent) : NimbPushButton(parent) {
    setText(text);
}

void NimbPushButton::SetLook(Look look) {
    m_look = look;
    update();
}

void NimbPushButton::SetToggleMode(bool on) {
    m_toggleMode = on;
    TellChecked();
    update();
}

void NimbPushButton::SetPressed(bool pressed) {
    m_checked = pressed;
    m_paintState = pressed ? Pressed : Normal;
    TellChecked();
    update();
}

void NimbPushButton::SetButtonEnabled(bool enabled) {
    m_enabledFlag = enabled;
    m_paintState = enabled ? Normal : Disabled;
    // Deliberate: a toggle that is on is lit, whether it can be used or not, until the mouse leaves it.
    if (m_toggleMode && m_checked) {
        m_paintState = Hover;
    }
    setEnabled(enabled);
    update();
}

void NimbPushButton::SetCurIndex(int index) {
    if (index != m_curIndex) {
        m_curIndex = index;
        Q_EMIT curIndexChanged(index);
    }
}

void NimbPushButton::SetTextPixelSize(int pixels) {
    m_textPixelSize = pixels;
    updateGeometry();
    update();
}

void NimbPushButton::SetTextFont(const QFont& font) {
    m_textFont = font;
    m_hasTextFont = true;
    updateGeometry();
    update();
}

void NimbPushButton::SetTextColors(const QVector<QColor>& colors) {
    Q_ASSERT(colors.size() >= kStateCount);
    m_textColors = colors;
    update();
}

void NimbPushButton::SetBackColors(const QVector<QColor>& colors) {
    Q_ASSERT(colors.size() >= kStateCount);
    m_backColors = colors;
    update();
}

void NimbPushButton::SetEllipse(bool on) {
    m_ellipse = on;
    update();
}

void NimbPushButton::SetUsesPictures(bool on) {
    m_usesPictures = on;
    update();
}

void NimbPushButton::SetPictures(const QString& normal, const QString& hover, const QString& pressed,
                                 const QString& disabled) {
    // The normal one alone would not tell that the button is off.
    const SharpPicture off = disabled == normal ? SharpPicture() : SharpPicture(disabled);
    m_pictures = {SharpPicture(normal), SharpPicture(hover), SharpPicture(pressed), off};
    SetUsesPictures(true);
}

void NimbPushButton::SetIcons(const QString& normal, const QString& pressed, const QSize& size) {
    m_iconNormal = SharpPicture(normal);
    m_iconPressed = SharpPicture(pressed);
    m_iconSize = size;
    updateGeometry();
    update();
}

void NimbPushButton::SetIconDrawing(IconDrawing drawing, const QSize& size) {
    m_iconDrawing = std::move(drawing);
    m_iconSize = size;
    updateGeometry();
    update();
}

void NimbPushButton::SetCornerRadius(qreal radius) {
    m_cornerRadius = radius;
    setProperty("focusRadius", radius);
    update();
}

void NimbPushButton::enterEvent(EnterEvent* event) {
    const QPointer<NimbPushButton> guard(this);
    Q_EMIT OverSignal(this, true);
    if (!guard) {
        return;
    }
    if (!m_toggleMode && m_enabledFlag) {
        m_paintState = Hover;
    }
    if (m_enabledFlag) {
        update();
    }
    QPushButton::enterEvent(event);
}

void NimbPushButton::leaveEvent(QEvent* event) {
    const QPointer<NimbPushButton> guard(this);
    if (m_leftSincePress) {
        Q_EMIT OverSignal(this, false);
    }
    if (!guard) {
        return;
    }
    m_leftSincePress = true;
    if (m_toggleMode) {
        m_paintState = m_checked ? Pressed : Normal;
    } else if (m_enabledFlag) {
        m_paintState = Normal;
    }
    if (m_toggleMode || m_enabledFlag) {
        update();
    }
    QPushButton::leaveEvent(event);
}

// False when whoever was told has deleted the button.
bool NimbPushButton::TakePress(QMouseEvent* event) {
    const QPointer<NimbPushButton> guard(this);
    Q_EMIT mousePressSignal(event);
    if (!guard) {
        return false;
    }
    m_checked = !m_checked;
    m_paintState = m_toggleMode && !m_checked ? Normal : Pressed;
    TellChecked();
    update();
    Q_EMIT EnterSignal(this);
    if (!guard) {
        return false;
    }
    m_leftSincePress = false;
    return true;
}

// The base class's own checked state is what assistive programs are told. It says the same as m_checked, and
// nobody is to take it for a change of its own.
void NimbPushButton::TellChecked() {
    const QSignalBlocker blocker(this);
    setCheckable(m_toggleMode);
    setChecked(m_checked);
}

// Somebody has changed the base class's state without a press, as assistive programs do: that is a click.
void NimbPushButton::TakeToggle(bool checked) {
    if (checked == m_checked) {
        return;
    }
    const QPointer<NimbPushButton> guard(this);
    click();
    if (guard) {
        TellChecked();
    }
}

void NimbPushButton::mousePressEvent(QMouseEvent* event) {
    if (!m_enabledFlag) {
        event->ignore();
        return;
    }
    const ByMouse byMouse(this);
    if (event->button() == Qt::LeftButton && !TakePress(event)) {
        return;
    }
    QPushButton::mousePressEvent(event);
}

// The base class tells of a press again when the mouse comes back with its button held; that is no new one.
void NimbPushButton::mouseMoveEvent(QMouseEvent* event) {
    const ByMouse byMouse(this);
    QPushButton::mouseMoveEvent(event);
}

void NimbPushButton::mouseReleaseEvent(QMouseEvent* event) {
    if (!m_enabledFlag) {
        event->ignore();
        return;
    }
    const ByMouse byMouse(this);
    QPushButton::mouseReleaseEvent(event);
}

// Enter works on every button, not only in dialogs.
void NimbPushButton::keyPressEvent(QKeyEvent* event) {
    const bool isEnter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    if (!isEnter) {
        QPushButton::keyPressEvent(event);
        return;
    }
    if (!event->isAutoRepeat()) {
        click();
    }
}

void NimbPushButton::TakePressWithoutMouse() {
    if (m_byMouse || !m_enabledFlag) {
        return;
    }
    const QPointF middle = QRectF(rect()).center();
    QMouseEvent press(QEvent::MouseButtonPress, middle, mapToGlobal(middle.toPoint()), Qt::LeftButton,
                      Qt::LeftButton, Qt::NoModifier);
    TakePress(&press);
}

// The mouse's going ends a press by mouse; this ends the others.
void NimbPushButton::LetGoWithoutMouse() {
    if (m_byMouse || m_toggleMode || !m_enabledFlag) {
        return;
    }
    m_paintState = underMouse() ? Hover : Normal;
    update();
}

}  // namespace kivo
