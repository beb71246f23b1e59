#pragma once

// A small slider from 0 to 100 percent in the window's look, in steps of ten. GUI thread.

#include <QSlider>

namespace kivo {

class PercentSlider : public QSlider {
    Q_OBJECT

public:
    static constexpr int kStep = 10;

    explicit PercentSlider(QWidget* parent = nullptr);

    // Follows a value that somebody else decides. No signal; a number that is no step stays what it is.
    void Show(int percent);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    // A person chose another value, by mouse, wheel or key.
    void chosen(int percent);
    // The mouse takes or lets go of the knob: what lies between belongs together.
    void runBegun();
    void runEnded();

protected:
    bool event(QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void changeEvent(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void MoveTo(int x);
    void LetGo();
    double KnobAt() const;  // its middle

    int m_wheel = 0;  // eighths of a degree that are no notch yet
};

}  // namespace kivo
