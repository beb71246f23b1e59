#pragma once

// The small round sign that turns while a whole frame goes to the panel. Modal; closes by itself when the
// upload reports. GUI thread.

#include <QDialog>

class QLabel;
class QMovie;

namespace kivo {

class NimbProcessDialog : public QDialog {
    Q_OBJECT

public:
    // Stands in the middle of mainWindow (where the system puts it, if that is null), which is looked at only
    // now. The shape comes from "/skin/process.png" beside the program; a square where that is missing.
    explicit NimbProcessDialog(const QWidget* mainWindow, QWidget* parent = nullptr);

    // Escape and closing do nothing while the upload runs.
    void reject() override {}

public Q_SLOTS:
    // The upload has reported: closes the dialog (exec gives Accepted) from its own event loop.
    void slotProcessDlg();
    void updateProgress();
    // Counts 1 to 100 and again from 1, for all dialogs of the process, and logs the number. Deliberate:
    // nothing is connected to it.
    void timerDone();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void ShowFrame();

    QMovie* m_movie;
    QLabel* m_label;
};

}  // namespace kivo
