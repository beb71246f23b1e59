#pragma once

// The button of the window: tabs, plain and primary buttons, halves of a switch, buttons that are a picture.
// It tells of presses and of the mouse coming and going, and can stay pressed. GUI thread.

#include <QColor>
#include <QFont>
#include <QPushButton>
#include <QSize>
#include <QVector>
#include <array>
#include <functional>

#include "widgets/enter_event.h"
#include "widgets/sharp_picture.h"

namespace kivo {

class NimbPushButton : public QPushButton {
    Q_OBJECT
    Q_PROPERTY(int curIndex READ CurIndex WRITE SetCurIndex NOTIFY curIndexChanged)

public:
    enum class Look {
        Quiet,    // plate with an edge
        Primary,  // plate in the accent; one a view
        Delete,   // plate in the colour of what cannot be undone
        Tab,      // text, when on a fill and an accent bar
        Choice,   // half of a two-way switch
        Bare,     // picture or colour of the state, and the text in the colours of the button
    };
    // Values of PaintState().
    enum State { Normal = 0, Hover = 1, Pressed = 2, Disabled = 3 };
    static constexpr int kStateCount = 4;

    // Draws an icon: its rectangle in the button's coordinates, the colour of the state, the state. The
    // painter has antialiasing on and is restored afterwards.
    using IconDrawing =
        std::function<void(QPainter& painter, const QRectF& rect, const QColor& color, State state)>;

    explicit NimbPushButton(QWidget* parent = nullptr);
    explicit NimbPushButton(const QString& text, QWidget* parent = nullptr);

    // Bare at first. A picture of the state takes the place of the plate in every look.
    void SetLook(Look look);

    // In toggle mode a press turns the button on, the next one off; assistive programs know it as a check
    // box.
    void SetToggleMode(bool on);

    // One of several choices, of which its owner keeps exactly one on: assistive programs know it as a radio
    // button. In toggle mode.
    void SetExclusive(bool on) { m_exclusive = on; }
    bool IsExclusive() const { return m_exclusive; }

    // Puts the button on or off without any signal.
    void SetPressed(bool pressed);
    bool IsPressed() const { return m_checked; }

    // A button that is off ignores the mouse. Use this in place of setEnabled.
    void SetButtonEnabled(bool enabled);

    // A State. What is drawn may differ: a toggle that is off is lit under the mouse, and outside Bare a
    // button that cannot be used always looks so.
    int PaintState() const { return m_paintState; }

    // A number for the owner's use.
    int CurIndex() const { return m_curIndex; }
    void SetCurIndex(int index);

    // 15 at first. A text that is too wide is drawn smaller, and at last elided.
    void SetTextPixelSize(int pixels);
    int TextPixelSize() const { return m_textPixelSize; }

    // Family and weight of the text; the size is the one above. The widget's font at first.
    void SetTextFont(const QFont& font);

    // Colours by State, for Bare; greys for the text and no background at first. At least kStateCount of
    // them.
    void SetTextColors(const QVector<QColor>& colors);
    void SetBackColors(const QVector<QColor>& colors);

    // The background of Bare: an ellipse instead of a rectangle; pictures instead of colours (on by
    // SetPictures).
    void SetEllipse(bool on);
    void SetUsesPictures(bool on);

    // Paths, each drawn over the whole button. A state without a picture is drawn as the look draws it, and
    // one that is off, without a picture of its own, as the normal one dimmed.
    void SetPictures(const QString& normal, const QString& hover, const QString& pressed,
                     const QString& disabled);

    // An icon before the text, or in the middle where there is no text; pressed counts for "on" too.
    void SetIcons(const QString& normal, const QString& pressed, const QSize& size);
    // The same drawn instead of loaded.
    void SetIconDrawing(IconDrawing drawing, const QSize& size);

    // Corner radius of the plate in pixels; the look's own at first.
    void SetCornerRadius(qreal radius);

    QSize sizeHint() const override;

Q_SIGNALS:
    void curIndexChanged(int index);
    // A left press, before anything changes. The event lives as long as the call.
    void mousePressSignal(QMouseEvent* event);
    // After the press has been taken in: IsPressed() tells the new state.
    void EnterSignal(kivo::NimbPushButton* button);
    // The mouse came (true) or went (false); a leave that follows a press is not told.
    void OverSignal(kivo::NimbPushButton* button, bool bType);

protected:
    void enterEvent(EnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    // Empty: what is on is decided at the press.
    void nextCheckState() override {}

private:
    class ByMouse;

    bool TakePress(QMouseEvent* event);
    void TellChecked();
    void TakeToggle(bool checked);
    void TakePressWithoutMouse();
    void LetGoWithoutMouse();
    State DrawnState() const;
    QColor TextColor(State state) const;
    QColor IconColor(State state) const;
    qreal CornerRadius() const;
    QFont FittedFont(qreal width) const;
    void DrawPlate(QPainter& painter, State state) const;
    void DrawBareGround(QPainter& painter, State state) const;
    void DrawContents(QPainter& painter, State state) const;
    void DrawIcon(QPainter& painter, const QRectF& rect, State state) const;

    Look m_look = Look::Bare;
    bool m_toggleMode = false;
    bool m_exclusive = false;
    bool m_checked = false;
    bool m_enabledFlag = true;
    // Set at first: until there is a press, each coming of the mouse has its going.
    bool m_leftSincePress = true;
    bool m_ellipse = false;
    bool m_usesPictures = false;
    bool m_byMouse = false;  // the base class is at work on a mouse event
    int m_paintState = Normal;
    int m_curIndex = 0;
    int m_textPixelSize = 15;
    qreal m_cornerRadius = -1;
    QFont m_textFont;
    bool m_hasTextFont = false;
    QVector<QColor> m_textColors;
    QVector<QColor> m_backColors;
    std::array<SharpPicture, kStateCount> m_pictures;
    SharpPicture m_iconNormal;
    SharpPicture m_iconPressed;
    IconDrawing m_iconDrawing;
    QSize m_iconSize;
};

}  // namespace kivo
