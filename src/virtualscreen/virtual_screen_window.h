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
    void Unplug() { m_screen.Unplug(); }
    void PlugIn() { m_screen.Plug(); }
    void StartRefreshing();
    void Refresh();
    bool MeasureRate(const PanelCounts& counts);

    VirtualHidApi& m_screen;
    PanelView* m_view;
    QPushButton* m_unplugButton;
    QPushButton* m_plugButton;
    QLabel* m_trafficLabel;
    QTimer m_refreshTimer{this};  // runs while reports arrive, and until the rates have come down to zero
    QElapsedTimer m_rateTime;
    quint64 m_measuredReports = 0;
    quint64 m_measuredBytes = 0;
    std::atomic<bool> m_noted{false};  // a message to this window is on its way
    int m_listener = 0;
};

}  // namespace kivo
