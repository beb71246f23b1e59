#pragma once

// The virtual screen to look at: the panel at double size, buttons to pull it out and plug it in, and a line
// that says how much is being sent. GUI thread.

#include <QElapsedTimer>
#include <QTimer>
#include <QWidget>
#include <atomic>

#include "virtualscreen/virtual_hid_api.h"

class QLabel;
class QPushButton;

namespace kivo {

class PanelView;

class VirtualScreenWindow : public QWidget {
    Q_OBJECT

public:
    // The screen must outlive the window.
    explicit VirtualScreenWindow(VirtualHidApi& screen, QWidget* parent = nullptr);
    ~VirtualScreenWindow() override;

private:
    void TakeNote();
    void Refresh();
    void ShowRates(const PanelCounts& counts);

    VirtualHidApi& m_screen;
    PanelView* m_view;
    QPushButton* m_unplugButton;
    QPushButton* m_plugButton;
    QLabel* m_trafficLabel;
    QTimer m_refreshTimer;  // runs while there is something to show, no longer
    std::atomic<bool> m_noted{false};
    int m_listener = 0;
};

}  // namespace kivo
