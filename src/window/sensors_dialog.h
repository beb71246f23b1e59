#pragma once

// The small list behind "Sensors..." in the tray menu: what each value says now, who says it, and what would
// help. It refreshes itself every second while it is seen. GUI thread.

#include <QDialog>
#include <QTimer>
#include <functional>
#include <vector>

#include "window/sensor_table.h"

class QGridLayout;
class QLabel;

namespace kivo {

class SensorsDialog : public QDialog {
    Q_OBJECT

public:
    // rows is asked now and every second.
    using Rows = std::function<std::vector<SensorRow>()>;
    explicit SensorsDialog(Rows rows, QWidget* parent = nullptr);

    // In sight, in front.
    void BringToFront();

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    struct Line {
        QLabel* name;
        QLabel* now;
        QLabel* source;
        QLabel* help;
    };

    QLabel* AddLabel(int row, int column, const QColor& color, int pixels);
    void Refresh();

    const Rows m_rows;
    QGridLayout* const m_grid;
    std::vector<Line> m_lines;
    QTimer m_timer;
};

}  // namespace kivo
