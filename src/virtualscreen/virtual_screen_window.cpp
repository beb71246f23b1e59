#include "virtualscreen/virtual_screen_window.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>

namespace kivo {

namespace {

constexpr int kScale = 2;
constexpr int kRefreshMs = 100;
constexpr int kRateMs = 1000;

constexpr QRgb kUnplugged = qRgb(0x0a, 0x0a, 0x0b);

QString StyleSheet() {
    return QStringLiteral(
        "QWidget { background: #1b1d21; color: #b9bdc6; }"
        "QPushButton { background: #2b2e35; border: 1px solid #3b3f48; border-radius: 4px; padding: 5px "
        "16px; }"
        "QPushButton:hover { background: #363a43; }"
        "QPushButton:focus { border-color: #5b8def; }"
        "QPushButton:disabled { color: #5c606a; background: #202228; }");
}

QString RateText(quint64 reports, quint64 bytes, qint64 elapsedMs) {
    const auto perSecond = [elapsedMs](quint64 count) {
        return qRound64(static_cast<double>(count) * 1000.0 / static_cast<double>(elapsedMs));
    };
    return VirtualScreenWindow::tr("%1 报告/秒   %2 字节/秒").arg(perSecond(reports)).arg(perSecond(bytes));
}

}  // namespace

// The panel itself: whole pixels, twice as large.
class PanelView : public QWidget {
public:
    explicit PanelView(QWidget* parent) : QWidget(parent) {}

    // A null image stands for a screen that is pulled out. `key` changes with every picture of the panel.
    void Show(const QImage& image, quint64 key) {
        if (key == m_key && image.size() == m_image.size()) {
            return;
        }
        m_key = key;
        m_image = image;
        if (!image.isNull()) {
            setFixedSize(image.size() * kScale);
        }
        update();
    }

protected:
    void paintEvent(QPaintEvent* /*event*/) override {
        QPainter painter(this);
        if (m_image.isNull()) {
            painter.fillRect(rect(), QColor(kUnplugged));
            painter.drawText(rect(), Qt::AlignCenter, VirtualScreenWindow::tr("未连接"));
        } else {
            painter.drawImage(rect(), m_image);
        }
    }

private:
    QImage m_image;
    quint64 m_key = 0;
};

VirtualScreenWindow::VirtualScreenWindow(VirtualHidApi& screen, QWidget* parent)
    : QWidget(parent),
      m_screen(screen),
      m_view(new PanelView(this)),
      m_unplugButton(new QPushButton(tr("拔出"), this)),
      m_plugButton(new QPushButton(tr("插入"), this)),
      m_trafficLabel(new QLabel(this)) {
    setWindowTitle(tr("虚拟屏幕"));
    setStyleSheet(StyleSheet());

    auto* const buttons = new QHBoxLayout;
    buttons->addWidget(m_unplugButton);
    buttons->addWidget(m_plugButton);
    buttons->addStretch();
    buttons->addWidget(m_trafficLabel);

    auto* const layout = new QVBoxLayout(this);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(m_view, 0, Qt::AlignHCenter);
    layout->addLayout(buttons);

    connect(m_unplugButton, &QPushButton::clicked, this, &VirtualScreenWindow::Unplug);
    connect(m_plugButton, &QPushButton::clicked, this, &VirtualScreenWindow::PlugIn);
    connect(&m_refreshTimer, &QTimer::timeout, this, &VirtualScreenWindow::Refresh);
    m_refreshTimer.setInterval(kRefreshMs);
    m_rateTime.start();
    m_trafficLabel->setText(RateText(0, 0, kRateMs));
    Refresh();

    m_listener = m_screen.AddListener([this](VirtualScreenEvent /*event*/) {
        // Any number of events until the window looks makes one message.
        if (!m_noted.exchange(true)) {
            QMetaObject::invokeMethod(this, &VirtualScreenWindow::StartRefreshing, Qt::QueuedConnection);
        }
    });
}

VirtualScreenWindow::~VirtualScreenWindow() {
    m_screen.RemoveListener(m_listener);
}

void VirtualScreenWindow::StartRefreshing() {
    m_noted = false;
    if (m_refreshTimer.isActive()) {
        return;
    }
    m_rateTime.start();
    m_refreshTimer.start();
    Refresh();
}

void VirtualScreenWindow::Refresh() {
    const PanelState state = m_screen.State();
    const bool plugged = m_screen.IsPlugged();
    // Nothing else changes a pixel.
    const quint64 pictureKey = state.counts.frames + state.counts.areas;
    m_view->Show(plugged ? state.UprightImage() : QImage(), pictureKey);
    m_unplugButton->setEnabled(plugged);
    m_plugButton->setEnabled(!plugged);
    if (MeasureRate(state.counts)) {
        m_refreshTimer.stop();
    }
}

// True when a whole measure saw no report: then there is nothing left to show.
bool VirtualScreenWindow::MeasureRate(const PanelCounts& counts) {
    const qint64 elapsedMs = m_rateTime.elapsed();
    if (elapsedMs < kRateMs) {
        return false;
    }
    const quint64 reports = counts.reports - m_measuredReports;
    const quint64 bytes = counts.bytes - m_measuredBytes;
    m_measuredReports = counts.reports;
    m_measuredBytes = counts.bytes;
    m_rateTime.start();
    m_trafficLabel->setText(RateText(reports, bytes, elapsedMs));
    return reports == 0;
}

}  // namespace kivo
