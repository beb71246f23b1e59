#include "app/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QScreen>
#include <QThread>
#include <QTranslator>
#include <QWindow>

#include "app/helper_window.h"
#include "app/language.h"
#include "app/nimb_process_dialog.h"
#include "app/nimb_process_thread.h"
#include "app/single_instance.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "editor/color_bar.h"
#include "editor/edit_bar.h"
#include "ui_main_window.h"
#include "widgets/exit_message_box.h"

namespace kivo {

namespace {

constexpr std::chrono::milliseconds kThreadsAfter{500};
constexpr std::chrono::milliseconds kPollEvery{1000};
constexpr unsigned long kFirstRunPauseMs = 1000;
constexpr qint64 kLongestExposeMs = 500;

// Blocking pauses must not catch a window that was shown but not yet painted.
void PaintNow(QWidget& window) {
    QElapsedTimer timer;
    timer.start();
    while (window.windowHandle() != nullptr && !window.windowHandle()->isExposed() &&
           timer.elapsed() < kLongestExposeMs) {
        QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents, 10);
    }
    window.repaint();
    QCoreApplication::processEvents(QEventLoop::ExcludeUserInputEvents);
}

}  // namespace

MainWindow::MainWindow(const Parts& parts)
    : m_parts(parts),
      m_translator(std::make_unique<QTranslator>()),
      m_ui(std::make_unique<::Ui::MainWindow>()) {
    InstallLanguage(parts.locale);
    m_session = std::make_unique<LiveSession>(parts.hid, m_language);
    m_session->SetPanelStartsBlank(parts.panelStartsBlank);

    m_ui->setupUi(this);
    SetUpLooks();
    WirePages();
    WireTools();
    WirePictures();
    LoadState();

    m_session->OpenScreen();
    // The screen is opened by this name, so it is the same in every language.
    setWindowTitle(QCoreApplication::translate("MainWindow", "Kivo Screen"));
    WireShell();
    m_session->SendTimeSync();
    QTimer::singleShot(kThreadsAfter, this, &MainWindow::slotCreateThread);
    connect(&m_poll, &QTimer::timeout, this, &MainWindow::PollWakeUp);
    m_poll.start(kPollEvery);
}

MainWindow::~MainWindow() {
    hide();  // ends what is open, while the widgets that show it are there
    m_translator.reset();
    m_ui.reset();
    CloseHelperWindow();
}

void MainWindow::InstallLanguage(const QLocale& locale) {
    m_language = LanguageForLocale(locale);
    SetInterfaceLanguage(m_language);
    if (!InstallTranslation(*m_translator, m_language, m_parts.applicationDir)) {
        qWarning("The translations in %s/lang cannot be read; texts stay Chinese.",
                 qUtf8Printable(m_parts.applicationDir));
    }
}

void MainWindow::WireShell() {
    const QIcon logo(QStringLiteral("://skins/logo.ico"));
    setWindowIcon(logo);
    m_tray.SetTexts();
    connect(&m_tray, &Tray::activated, this, &MainWindow::iconActivated);
    connect(&m_tray, &Tray::showRequested, this, &MainWindow::BringToFront);
    connect(&m_tray, &Tray::exitRequested, this, &MainWindow::slotExit);
    m_tray.Show();
    connect(m_ui->btnExit, &QAbstractButton::clicked, this, &MainWindow::slotExit);
    connect(m_ui->btnMini, &QAbstractButton::clicked, this, &MainWindow::showMinimized);
    connect(m_ui->btnApply, &QAbstractButton::clicked, this, &MainWindow::slotApply);
}

void MainWindow::slotCreateThread() {
    if (!IsFirstRun()) {
        if (configFolderCreated == 0) {
            // A panel without a memory of its own needs the frame as well, quietly.
            if (!m_session->SendPendingFrame()) {
                StartRefresh();
            }
            m_live = true;
            return;
        }
        BringToFront();
    }
    FirstRunUpload();
    StartRefresh();
}

void MainWindow::FirstRunUpload() {
    PaintNow(*this);
    QThread::msleep(kFirstRunPauseMs);
    m_session->SendTimeSync();
    UploadWithProgress();
    MarkInitialized();
    PutAway();
    configFolderCreated = 0;
}

void MainWindow::UploadWithProgress() {
    m_uploading = true;
    NimbProcessDialog dialog(this, this);
    const auto connectDialog = [&dialog](NimbProcessThread& thread) {
        connect(&thread, &NimbProcessThread::DoProcessDlg, &dialog, &NimbProcessDialog::slotProcessDlg);
    };
    if (m_session->StartUpload(connectDialog) != nullptr) {
        dialog.exec();
    }
    m_uploading = false;
    if (m_exitWanted) {
        m_exitWanted = false;
        QTimer::singleShot(0, this, &MainWindow::slotExit);
    }
}

void MainWindow::slotApply() {
    if (m_uploading) {
        return;
    }
    FinishEditing();
    StopRefresh();
    ZoomWidget* editor = m_ui->zoomwidget;
    ThemeState themes = editor->Edited().themes;
    if (IsCustomPage()) {
        editor->CommitLayout();
        OpenEditing(false);
    } else {
        // What is being made of the custom layouts is not asked for yet.
        for (int variant = 0; variant < kVariantCount; ++variant) {
            const size_t layout = size_t(CustomLayoutIndex(variant));
            themes.layouts[layout] = m_savedThemes.layouts[layout];
        }
    }
    SaveThemeState(themes);
    m_savedThemes = themes;
    m_session->SetChosen(editor->Shown());
    UploadWithProgress();
    StartRefresh();
}

void MainWindow::StartRefresh() {
    m_session->StartRefresh();
    m_live = true;
}

void MainWindow::StopRefresh() {
    m_session->StopRefresh();
}

bool MainWindow::Stop() {
    m_poll.stop();
    return m_session->Stop();
}

void MainWindow::slotCpuPowClock(qint32 iPow, qint32 iClock, qint32 iGPow, qint32 iGClock) {
    Q_UNUSED(iGPow)
    Q_UNUSED(iGClock)
    m_session->SetCpuPowClock(iPow, iClock);
}

void MainWindow::PollWakeUp() {
    if (m_parts.instance != nullptr && m_parts.instance->TakeWakeUpRequest()) {
        BringToFront();
    }
    ShowLiveTexts();
}

void MainWindow::ShowLiveTexts() {
    if (!m_live || !isVisible() || isMinimized()) {
        return;
    }
    ItemTexts texts;
    for (int item = 0; item < kLiveValueCount; ++item) {
        texts[size_t(item)] = m_session->LiveText(item);
    }
    m_ui->zoomwidget->SetLiveTexts(texts);
    // A machine without a sensor has no temperature to tell.
    m_ui->pushButton->setText(m_session->HasTemperature() ? texts[CpuTemperature] : QString());
}

void MainWindow::BringToFront() {
    showNormal();
    activateWindow();
    raise();
}

void MainWindow::PutAway() {
    if (m_parts.hasTray()) {
        hide();
    } else {
        showMinimized();
    }
}

void MainWindow::iconActivated(QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::DoubleClick && reason != QSystemTrayIcon::Trigger) {
        return;
    }
    if (!isVisible() || isMinimized()) {
        showNormal();
    }
    raise();
    activateWindow();
}

void MainWindow::slotExit() {
    if (m_uploading) {
        m_exitWanted = true;
        return;
    }
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        dialog->raise();
        dialog->activateWindow();
        return;
    }
    BringToFront();
    const QString question =
        QCoreApplication::translate("MainWindow", "退出软件PC端屏幕内容显示信息将不准，\n确定退出？");
    if (!ExitMessageBox::Ask(this, question)) {
        return;
    }
    StopRefresh();
    m_exitConfirmed = true;
    close();
}

void MainWindow::closeEvent(QCloseEvent* event) {
    if (m_exitConfirmed) {
        event->accept();
        QCoreApplication::quit();
        return;
    }
    if (qApp->isSavingSession()) {
        event->accept();  // the end of the person's session is never held up
        return;
    }
    event->ignore();
    if (m_parts.hasTray()) {
        hide();
    } else {
        QTimer::singleShot(0, this, &MainWindow::slotExit);
    }
}

void MainWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    ShowLiveTexts();
    // A low screen cuts the foot of the window off, never its head.
    const QRect room = screen()->availableGeometry();
    if (!event->spontaneous() && !room.contains(geometry())) {
        const int x = qBound(room.left(), pos().x(), qMax(room.left(), room.right() + 1 - width()));
        const int y = qBound(room.top(), pos().y(), qMax(room.top(), room.bottom() + 1 - height()));
        move(x, y);
    }
}

void MainWindow::hideEvent(QHideEvent* event) {
    m_ui->zoomwidget->solteditingFinished();
    QMainWindow::hideEvent(event);
}

void MainWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        m_dragging = true;
        m_dragOffset = event->globalPos() - pos();
    }
    QMainWindow::mousePressEvent(event);
}

void MainWindow::mouseMoveEvent(QMouseEvent* event) {
    if (m_dragging && event->buttons() != Qt::NoButton) {
        move(event->globalPos() - m_dragOffset);
    }
    QMainWindow::mouseMoveEvent(event);
}

void MainWindow::mouseReleaseEvent(QMouseEvent* event) {
    m_dragging = false;
    QMainWindow::mouseReleaseEvent(event);
}

}  // namespace kivo
