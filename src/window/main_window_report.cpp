// MainWindow: the report for support, about this very copy.

#include <QApplication>
#include <QDateTime>
#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>

#include "session/support_report.h"
#include "window/main_window.h"
#include "window/sensor_table.h"
#include "window/support_facts.h"
#include "window/window_text.h"

namespace kivo {

namespace {

QString SuggestedReportFile() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return QDir(QDir(folder).exists() ? folder : QDir::homePath())
        .filePath(SupportReportName(QDateTime::currentDateTime()));
}

}  // namespace

QString MainWindow::SupportReportText() const {
    GatheredFacts gathered = GatherSupportFacts(m_parts.applicationDir);
    gathered.facts.teller = SupportFacts::Teller::RunningCopy;
    gathered.facts.panel = ToSupportFacts(m_session->Facts());
    gathered.facts.sensors = SensorTableText(SensorTable(m_session->LiveTexts(), m_session->Readings()));
    return SupportReport(gathered.facts, gathered.names);
}

QString MainWindow::ChooseReportFile() {
    // A dialog of a window that is out of sight has nothing to stand over.
    return QFileDialog::getSaveFileName(
        isVisible() ? this : nullptr, WindowText(QT_TRANSLATE_NOOP("MainWindow", "保存支持报告")),
        SuggestedReportFile(), WindowText(QT_TRANSLATE_NOOP("MainWindow", "文本文件 (*.txt)")));
}

void MainWindow::SaveReport() {
    if (QWidget* const dialog = QApplication::activeModalWidget()) {
        dialog->raise();
        dialog->activateWindow();
        return;
    }
    // Before the dialog: it tells of the moment at which it was asked for.
    const QString report = SupportReportText();
    const QString file = m_parts.chooseReportFile ? m_parts.chooseReportFile() : ChooseReportFile();
    AskWantedExit();
    if (file.isEmpty()) {
        return;
    }
    const QString shown = QDir::toNativeSeparators(file);
    const QString trouble = SaveSupportReport(report, file);
    if (trouble.isEmpty()) {
        m_tray.Tell(WindowText(QT_TRANSLATE_NOOP("MainWindow", "报告已保存到 %1。")).arg(shown));
    } else {
        qWarning("The report cannot be saved to %s: %s", qUtf8Printable(shown), qUtf8Printable(trouble));
        m_tray.Tell(WindowText(QT_TRANSLATE_NOOP("MainWindow", "无法保存报告：%1")).arg(trouble),
                    QSystemTrayIcon::Warning);
    }
}

}  // namespace kivo
