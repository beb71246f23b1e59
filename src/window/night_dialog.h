#pragma once

// Asks from when until when the night is, for the tray menu. GUI thread.

#include <QDialog>
#include <QString>

class QTimeEdit;

namespace kivo {

// 1380: "23:00".
QString ClockText(int minutesOfDay);

class NightDialog : public QDialog {
    Q_OBJECT

public:
    explicit NightDialog(QWidget* parent = nullptr);

    // In sight, in front. Times that are being typed stay as they are where it was in sight already.
    void Ask(int fromMinute, int toMinute);

Q_SIGNALS:
    // Minutes since midnight.
    void chosen(int fromMinute, int toMinute);

private:
    void Choose();

    QTimeEdit* const m_from;
    QTimeEdit* const m_to;
};

}  // namespace kivo
