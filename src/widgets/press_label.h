#pragma once

// A label that tells of left presses. With a focus policy it answers the space bar and Enter too. Assistive
// programs know it as a button. GUI thread.

#include <QLabel>

namespace kivo {

class PressLabel : public QLabel {
    Q_OBJECT

public:
    explicit PressLabel(QWidget* parent = nullptr) : QLabel(parent) {}

    // Whether a press opens something, and whether that is open: for assistive programs.
    enum class Opens { Nothing, Closed, Open };
    void SetOpens(Opens opens);
    Opens WhatItOpens() const { return m_opens; }

    // What a left press does.
    void Press() { Q_EMIT clicked(); }

Q_SIGNALS:
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    Opens m_opens = Opens::Nothing;
};

}  // namespace kivo
