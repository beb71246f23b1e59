#include "window/sensors_dialog.h"

#include <QCoreApplication>
#include <QGridLayout>
#include <QIcon>
#include <QLabel>
#include <chrono>
#include <utility>

#include "widgets/window_colors.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr std::chrono::milliseconds kEvery{1000};
constexpr int kMargin = 24;
constexpr int kColumnGap = 20;
constexpr int kRowGap = 4;
constexpr int kValuePixels = 15;
constexpr int kSourcePixels = 13;
constexpr int kHelpPixels = 12;
constexpr int kNowWidth = 84;      // room for a date, so that a value that grows moves nothing
constexpr int kSourceWidth = 360;  // what would help is broken into lines of this width

}  // namespace

SensorsDialog::SensorsDialog(Rows rows, QWidget* parent)
    : QDialog(parent), m_rows(std::move(rows)), m_grid(new QGridLayout(this)) {
    setObjectName(QStringLiteral("sensors"));
    setWindowTitle(QCoreApplication::translate("MainWindow", "传感器"));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowIcon(QIcon(QStringLiteral("://skins/logo.ico")));
    QPalette ground = palette();
    ground.setColor(QPalette::Window, colors::kCard);
    setPalette(ground);
    setAutoFillBackground(true);
    m_grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    m_grid->setHorizontalSpacing(kColumnGap);
    m_grid->setVerticalSpacing(kRowGap);
    m_grid->setColumnMinimumWidth(1, kNowWidth);
    m_grid->setSizeConstraint(QLayout::SetFixedSize);
    m_timer.setInterval(kEvery);
    connect(&m_timer, &QTimer::timeout, this, &SensorsDialog::Refresh);
    Refresh();
}

QLabel* SensorsDialog::AddLabel(int row, int column, const QColor& color, int pixels) {
    auto* label = new QLabel(this);
    label->setTextFormat(Qt::PlainText);
    QFont labelFont = font();
    labelFont.setPixelSize(pixels);
    label->setFont(labelFont);
    QPalette labelPalette = label->palette();
    labelPalette.setColor(QPalette::WindowText, color);
    label->setPalette(labelPalette);
    m_grid->addWidget(label, row, column, Qt::AlignLeft | Qt::AlignBaseline);
    return label;
}

void SensorsDialog::BringToFront() {
    showNormal();
    raise();
    activateWindow();
}

void SensorsDialog::Refresh() {
    const std::vector<SensorRow> rows = m_rows();
    while (m_lines.size() < rows.size()) {
        const int row = 2 * int(m_lines.size());
        Line line{AddLabel(row, 0, colors::kTextMid, kSourcePixels),
                  AddLabel(row, 1, colors::kTextHigh, kValuePixels),
                  AddLabel(row, 2, colors::kTextBody, kSourcePixels),
                  AddLabel(row + 1, 2, colors::kWarning, kHelpPixels)};
        for (QLabel* label : {line.source, line.help}) {
            label->setFixedWidth(kSourceWidth);
            label->setWordWrap(true);
            label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
        }
        m_lines.push_back(line);
    }
    for (size_t k = 0; k < rows.size(); ++k) {
        const SensorRow& row = rows[k];
        const Line& line = m_lines[k];
        line.name->setText(row.name);
        line.now->setText(row.now);
        line.source->setText(row.source);
        line.help->setText(row.help);
        line.help->setVisible(!row.help.isEmpty());
        // One sentence for whoever listens instead of looking, and only what is new: it is told each time.
        const QString name = row.name + QLatin1Char(' ') + row.now;
        const QString description =
            row.help.isEmpty() ? row.source : row.source + QStringLiteral(". ") + row.help;
        if (name != line.now->accessibleName()) {
            line.now->setAccessibleName(name);
        }
        if (description != line.now->accessibleDescription()) {
            line.now->setAccessibleDescription(description);
        }
    }
}

void SensorsDialog::showEvent(QShowEvent* event) {
    Refresh();
    m_timer.start();
    QDialog::showEvent(event);
}

void SensorsDialog::hideEvent(QHideEvent* event) {
    m_timer.stop();
    QDialog::hideEvent(event);
}

}  // namespace kivo
