#pragma once

#include <QWidget>

namespace kivo {

// Dims a window while something else stands over it that has to be waited for. Shown as long as it lives.
// GUI thread.
class Scrim : public QWidget {
public:
    explicit Scrim(QWidget& window);

protected:
    void paintEvent(QPaintEvent* event) override;
};

}  // namespace kivo
