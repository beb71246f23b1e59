#include "window/night_dialog.h"

#include <QGridLayout>
#include <QHBoxLayout>
#include <QIcon>
#include <QLabel>
#include <QTimeEdit>

#include "widgets/exit_message_box.h"
#include "widgets/nimb_push_button.h"
#include "widgets/window_colors.h"
#include "window/window_text.h"

namespace kivo {

namespace colors = window_colors;

namespace {

constexpr int kMargin = 24;
constexpr int kGap = 12;
constexpr int kTextPixels = 13;
constexpr QSize kButton(100, 36);
const QString kClock = QStringLiteral("HH:mm");

QTime TimeOf(int minutesOfDay) {
    return QTime(minutesOfDay / 60, minutesOfDay % 60);
}

int MinutesOf(const QTime& time) {
    return time.hour() * 60 + time.minute();
}

}  // namespace

QString ClockText(int minutesOfDay) {
    return TimeOf(minutesOfDay).toString(kClock);
}

NightDialog::NightDialog(QWidget* parent)
    : QDialog(parent), m_from(new QTimeEdit(this)), m_to(new QTimeEdit(this)) {
    setObjectName(QStringLiteral("night"));
    setWindowTitle(WindowText(QT_TRANSLATE_NOOP("MainWindow", "夜间时段")));
    setWindowFlag(Qt::WindowContextHelpButtonHint, false);
    setWindowIcon(QIcon(QStringLiteral("://skins/logo.ico")));
    QPalette ground = palette();
    ground.setColor(QPalette::Window, colors::kCard);
    ground.setColor(QPalette::WindowText, colors::kTextBody);
    setPalette(ground);
    setAutoFillBackground(true);
    QFont text = font();
    text.setPixelSize(kTextPixels);
    setFont(text);

    auto* const grid = new QGridLayout(this);
    grid->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
    grid->setHorizontalSpacing(kGap);
    grid->setVerticalSpacing(kGap);
    grid->setSizeConstraint(QLayout::SetFixedSize);
    const auto addRow = [this, grid](int row, QTimeEdit* edit, const char* name, const QString& caption) {
        edit->setObjectName(QLatin1String(name));
        edit->setDisplayFormat(kClock);
        edit->setFont(font());
        auto* const label = new QLabel(caption, this);
        label->setTextFormat(Qt::PlainText);
        label->setBuddy(edit);
        grid->addWidget(label, row, 0);
        grid->addWidget(edit, row, 1);
    };
    addRow(0, m_from, "nightFrom",
           WindowText(PlacedText QT_TRANSLATE_NOOP3("MainWindow", "从", "the night begins")));
    addRow(1, m_to, "nightTo",
           WindowText(PlacedText QT_TRANSLATE_NOOP3("MainWindow", "到", "the night ends")));
    auto* const buttons = new QHBoxLayout;
    buttons->setSpacing(kGap);
    const auto addButton = [this, buttons](const char* name, const QString& caption,
                                           NimbPushButton::Look look) {
        auto* const button = new NimbPushButton(caption, this);
        button->setObjectName(QLatin1String(name));
        button->SetLook(look);
        button->SetTextPixelSize(kTextPixels);
        button->setFixedSize(kButton);
        button->setAutoDefault(false);
        buttons->addWidget(button);
        return button;
    };
    const auto* const cancel =
        addButton("nightCancel", ExitMessageBox::tr("取消"), NimbPushButton::Look::Quiet);
    auto* const ok = addButton("nightOk", ExitMessageBox::tr("确定"), NimbPushButton::Look::Primary);
    ok->setDefault(true);
    grid->addLayout(buttons, 2, 0, 1, 2);
    connect(ok, &QPushButton::clicked, this, &NightDialog::Choose);
    connect(cancel, &QPushButton::clicked, this, &QDialog::reject);
}

void NightDialog::Ask(int fromMinute, int toMinute) {
    if (!isVisible()) {
        m_from->setTime(TimeOf(fromMinute));
        m_to->setTime(TimeOf(toMinute));
    }
    showNormal();
    raise();
    activateWindow();
}

void NightDialog::Choose() {
    accept();
    Q_EMIT chosen(MinutesOf(m_from->time()), MinutesOf(m_to->time()));
}

}  // namespace kivo
