// MainWindow: a layout as a file, out and in.

#include <QApplication>
#include <QDir>
#include <QFileDialog>
#include <QStandardPaths>

#include "compose/shared_layout.h"
#include "config/folders.h"
#include "pictures/picture_copy.h"
#include "pictures/picture_list.h"
#include "pictures/picture_path.h"
#include "ui_main_window.h"
#include "widgets/exit_message_box.h"
#include "window/layout_sharing.h"
#include "window/main_window.h"
#include "window/picture_choice.h"
#include "window/sharing_buttons.h"
#include "window/state_line.h"
#include "window/window_text.h"

namespace kivo {

namespace {

constexpr std::chrono::milliseconds kTryAgainAfter{300};

// Of the program's own data: the pictures that came with layouts.
QString PictureFolder() {
    return SettingsFolder() + QStringLiteral("/Pictures");
}

QString DocumentsFolder() {
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
    return !folder.isEmpty() && QDir(folder).exists() ? folder : QDir::homePath();
}

QString Suffix() {
    return QLatin1String(kSharedLayoutSuffix);
}

QString FileFilter() {
    return WindowText(QT_TRANSLATE_NOOP("MainWindow", "布局文件")) + QStringLiteral(" (*.%1)").arg(Suffix());
}

QString Sentence(LayoutSharing::Trouble trouble, bool isImport) {
    switch (trouble) {
        case LayoutSharing::Trouble::NoLayout:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "此文件不是布局文件，或已损坏。"));
        case LayoutSharing::Trouble::Newer:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "此布局由更新版本的程序创建。"));
        case LayoutSharing::Trouble::BadPicture:
            return isImport ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "此布局中的图片无法显示。"))
                            : WindowText(QT_TRANSLATE_NOOP("MainWindow", "背景图片无法打开，布局未导出。"));
        case LayoutSharing::Trouble::CannotBeSaved:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "无法保存此布局。"));
        default:
            return isImport ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "无法读取此文件。"))
                            : WindowText(QT_TRANSLATE_NOOP("MainWindow", "无法保存此布局。"));
    }
}

}  // namespace

void MainWindow::WireSharing() {
    m_sharing = new LayoutSharing(PictureFolder(), this);
    auto* const buttons = new SharingButtons(m_ui->centralwidget);
    setTabOrder(m_ui->btnApply, buttons->First());
    setTabOrder(buttons->First(), buttons->Last());
    setTabOrder(buttons->Last(), m_ui->btnMini);
    connect(buttons, &SharingButtons::exportWanted, this, &MainWindow::ExportLayout);
    connect(buttons, &SharingButtons::importWanted, this, &MainWindow::ImportLayout);
}

QString MainWindow::ChooseLayoutFile(LayoutFile use, const QString& proposed) {
    if (m_parts.chooseLayoutFile) {
        return m_parts.chooseLayoutFile(this, use, proposed);
    }
    const bool isImport = use == LayoutFile::ToImport;
    QFileDialog dialog(this,
                       isImport ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "导入布局"))
                                : WindowText(QT_TRANSLATE_NOOP("MainWindow", "导出布局")),
                       DocumentsFolder(), FileFilter());
    dialog.setAcceptMode(isImport ? QFileDialog::AcceptOpen : QFileDialog::AcceptSave);
    dialog.setFileMode(isImport ? QFileDialog::ExistingFile : QFileDialog::AnyFile);
    dialog.setDefaultSuffix(Suffix());
    dialog.selectFile(proposed);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

void MainWindow::ExportLayout() {
    if (m_waitsForUpload) {
        return;
    }
    FinishEditing();
    // What is chosen is what goes, and not what was there before it had been looked at.
    m_choice->Settle();
    ShowState();
    const ScreenState shown = m_ui->zoomwidget->Shown();
    const QString name = shown.custom ? m_ui->btnImage->text() : WindowText(FactsOf(shown.theme).name);
    const QString file =
        ChooseLayoutFile(LayoutFile::ToExport, PlainFileTitle(name) + QLatin1Char('.') + Suffix());
    AskWantedExit();
    if (file.isEmpty()) {
        return;
    }
    const int row = m_pictures->RowOf(PicturePath(shown));
    m_sharing->Export(shown, m_pictures->NameAt(row), file, [this](const LayoutSharing::Outcome& outcome) {
        if (outcome.trouble != LayoutSharing::Trouble::None) {
            qWarning("The layout is not exported. %s", qUtf8Printable(outcome.reason));
            TellOfSharing(Sentence(outcome.trouble, false));
        }
    });
}

void MainWindow::ImportLayout() {
    if (m_waitsForUpload) {
        return;
    }
    const QString file = ChooseLayoutFile(LayoutFile::ToImport, QString());
    AskWantedExit();
    if (!file.isEmpty()) {
        m_sharing->Import(file, [this](const LayoutSharing::Outcome& outcome) { TakeImported(outcome); });
    }
}

void MainWindow::TakeImported(const LayoutSharing::Outcome& outcome) {
    if (!outcome.layout) {
        qWarning("The layout is not imported. %s", qUtf8Printable(outcome.reason));
        TellOfSharing(Sentence(outcome.trouble, true));
        return;
    }
    if (m_waitsForUpload || QApplication::activeModalWidget() != nullptr) {
        QTimer::singleShot(kTryAgainAfter, this, [this, outcome] { TakeImported(outcome); });
        return;
    }
    FinishEditing();
    m_choice->Settle();
    const QString trouble = SaveImported(
        outcome, [this](const ScreenState& layout) { return m_ui->zoomwidget->TakeLayout(layout); });
    OpenEditing(false);
    if (!trouble.isEmpty()) {
        qWarning("The layout is not imported. %s", qUtf8Printable(trouble));
        TellOfSharing(Sentence(LayoutSharing::Trouble::CannotBeSaved, true));
        return;
    }
    StopRefresh();
    UploadShown();
}

// All of it or nothing.
QString MainWindow::SaveImported(const LayoutSharing::Outcome& outcome,
                                 const std::function<bool(const ScreenState& layout)>& save) {
    const QString& picture = outcome.layout->layout.picture;
    const bool isListed = IsResource(picture) || m_pictures->RowOf(picture) > 0;
    if (!isListed && !AddOutsidePicture(picture)) {
        LayoutSharing::Forget(outcome);
        return QStringLiteral("There are too many pictures to add another one.");
    }
    const bool isSaved = save(*outcome.layout);
    if (isSaved) {
        m_stateLine->NoteSaved(SettingsPart::Layout, true);
        // A copy of that name may have been missed before.
        m_source.Check(picture);
        return {};
    }
    if (!isListed) {
        m_pictures->RemoveUserPicture(m_pictures->RowOf(picture));
        SavePictures();
    }
    LayoutSharing::Forget(outcome);
    return QStringLiteral("The settings cannot be saved.");
}

void MainWindow::TellOfSharing(const QString& text) {
    // Over another question, nobody reads it; the log has it.
    if (isVisible() && QApplication::activeModalWidget() == nullptr) {
        ExitMessageBox::Tell(this, text);
    }
}

}  // namespace kivo
