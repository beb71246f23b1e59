#pragma once

// A label that tells of left presses. With a focus policy it answers the space bar and Enter too. GUI thread.

#include <QLabel>

namespace kivo {

class PressLabel : public QLabel {
    Q_OBJECT

public:
    explicit PressLabel(QWidget* parent = nullptr) : QLabel(parent) {}

Q_SIGNALS:
    void clicked();

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
};

}  // namespace kivo
