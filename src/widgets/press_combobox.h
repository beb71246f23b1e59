#pragma once

// A chooser that tells when it is about to open its list. Draws itself and its list in the window's colours.
// GUI thread.

#include <QComboBox>

#include "widgets/enter_event.h"

namespace kivo {

class PressCombobox : public QComboBox {
    Q_OBJECT

public:
    explicit PressCombobox(QWidget* parent = nullptr);

    void showPopup() override;

    // Where the text of what is chosen stands. A longer one ends in dots.
    QRect TextRect() const { return rect().adjusted(kTextLeft, 0, -kTextRight, 0); }

Q_SIGNALS:
    // A left press, or a key that opens the list; the list opens afterwards.
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void enterEvent(EnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr int kTextLeft = 10;
    static constexpr int kTextRight = 22;  // room for the chevron, from the right edge

    bool m_atKey = false;  // the base class is at work on a key
};

}  // namespace kivo
