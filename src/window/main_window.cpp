#include "window/main_window.h"

#include <QApplication>
#include <QCloseEvent>
#include <QElapsedTimer>
#include <QMouseEvent>
#include <QScreen>
#include <QThread>
#include <QWindow>
#include <algorithm>
#include <initializer_list>

#include "config/away_rules.h"
#include "config/first_run_marker.h"
#include "config/settings_file.h"
#include "device/hotplug.h"
#include "pictures/layout_picture.h"
#include "session/helper_window.h"
#include "session/single_instance.h"
#include "widgets/focus_ring.h"
#include "window/away_light.h"
#include "window/screen_watch.h"
#include "window/upload_dialog.h"
#include "window/window_parts.h"
#include "window/window_place.h"
#include "window/window_sensors.h"

namespace kivo {

namespace {

constexpr std::chrono::milliseconds kThreadsAfter{500};
constexpr std::chrono::milliseconds kPollEvery{1000};
constexpr unsigned long kFirstRunPauseMs = 1000;
constexpr qint64 kLongestExposeMs = 500;
constexpr QPoint kStateLineCorner(140, 30);
constexpr int kHeadHeight = 100;  // what is above the pages, by which the window is dragged

QVector<QRect> Rooms() {
    QVector<QRect> rooms;
    const auto screens = QGuiApplication::screens();
    for (const QScreen* screen : screens) {
        rooms.append(screen->availableGeometry());
    }
    return rooms;
}

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

// On a worker.
std::optional<FramePicture> PictureForFrame(PictureSource& source, const ScreenState& state) {
    const std::optional<LayoutPicture> picture = AwaitLayoutPicture(source, state);
    if (!picture) {
        return std::nullopt;
    }
    return FramePicture{picture->image, picture->IsStandIn()};
}

}  // namespace

MainWindow::MainWindow(const Parts& parts)
    : m_parts(parts),
      m_translations(parts.locale, parts.applicationDir),
      m_language(m_translations.Language()),
      m_ui(std::make_unique<::Ui::MainWindow>()),
      m_source(parts.makePictureReaders()),
      m_ground(*this, QStringLiteral(":/skins/background_01.png")),
      m_rest(*this, parts.restsAfter, [this] { LetGoOfPictures(); }) {
    LiveSession::Options options{parts.panel};
    options.picture = [this](const ScreenState& state) { return PictureForFrame(m_source, state); };
    m_session = std::make_unique<LiveSession>(parts.hid, m_language, options);

    // Before it has its style sheet: Qt would apply that at once and decode the window's ground.
    setWindowFlags(Qt::Window | Qt::FramelessWindowHint | Qt::WindowSystemMenuHint |
                   Qt::WindowMinimizeButtonHint);
    m_ui->setupUi(this);
    const bool isAboutToBeShown = parts.isWanted || IsFirstRun();
    if (isAboutToBeShown) {
        m_ground.Fetch();
    }
    m_screenWatch =
        std::make_unique<ScreenWatch>(*m_session, hotplugSuspended, screenAttached, parts.timeAsleep);
    RegisterScreenNotification();
    // Before the rest of the window, so that the screen need not wait for it. It is opened by this name,
    // which is therefore the same in every language.
    const QString title = QCoreApplication::translate("MainWindow", "Kivo Screen");
    m_session->OpenScreen(title.toUtf8());
    DressWindow(*m_ui);
    m_stateLine = new StateLine(m_ui->centralwidget);
    m_stateLine->move(kStateLineCorner);
    m_sensors = std::make_unique<WindowSensors>(
        *m_session, *m_ui->pushButton, WindowSensors::Parts{parts.makeSensors, parts.readThermalZone});
    connect(m_sensors.get(), &WindowSensors::sampled, this, &MainWindow::slotCpuPowClock);
    connect(m_sensors.get(), &WindowSensors::readingsTaken, this,
            [this](const SensorReadings& readings) { m_factLog.NoteReadings(readings); });
    m_sensors->ShowTemperature();
    PlaceOnScreen();
    WirePictures();
    WirePages();
    WireTools();
    LoadState();
    if (isAboutToBeShown) {
        m_ui->zoomwidget->FetchPictures();
    }
    m_away = std::make_unique<AwayLight>(AwayLight::Parts{
        *m_session, *m_stateLine, parts.makeAwayWatch ? parts.makeAwayWatch() : nullptr, parts.localTime});
    connect(m_away.get(), &AwayLight::awake, m_screenWatch.get(), &ScreenWatch::LookForWakeUp);
    connect(m_screenWatch.get(), &ScreenWatch::wokeUp, m_away.get(), &AwayLight::NoteAwake);
    ShowPanelStatus(m_session->Status());
    connect(m_session.get(), &LiveSession::statusChanged, this, &MainWindow::ShowPanelStatus);
    setWindowTitle(title);
    WireShell();
    WireSharing();
    ProbeEnergyLibrary();
    QTimer::singleShot(kThreadsAfter, this, &MainWindow::slotCreateThread);
    connect(&m_poll, &QTimer::timeout, this, &MainWindow::Poll);
    m_poll.start(kPollEvery);
}

MainWindow::~MainWindow() {
    m_screenWatch.reset();
    // Hiding ends what is being typed or dragged, and that is told: not to a window that is half gone.
    hide();
    for (QObject* teller : std::initializer_list<QObject*>{m_ui->zoomwidget, m_editBar, m_colorBar,
                                                           m_ui->pictureList, m_pictures}) {
        teller->disconnect(this);
    }
    m_ui.reset();
    CloseHelperWindow();
}

void MainWindow::WireShell() {
    const QIcon logo(QStringLiteral("://skins/logo.ico"));
    setWindowIcon(logo);
    m_tray.SetTexts();
    m_tray.SetState(m_stateLine->Phrase());
    connect(m_stateLine, &StateLine::phraseChanged, &m_tray, &Tray::SetState);
    connect(&m_tray, &Tray::activated, this, &MainWindow::iconActivated);
    connect(&m_tray, &Tray::showRequested, this, &MainWindow::BringToFront);
    connect(&m_tray, &Tray::sensorsRequested, this, &MainWindow::ShowSensors);
    connect(&m_tray, &Tray::reportRequested, this, &MainWindow::SaveReport);
    connect(&m_tray, &Tray::exitRequested, this, &MainWindow::slotExit);
    m_tray.AddMenu(m_away->Menu());
    LookForTray();
    connect(m_ui->btnExit, &QAbstractButton::clicked, this, &MainWindow::slotExit);
    connect(m_ui->btnMini, &QAbstractButton::clicked, this, &MainWindow::showMinimized);
    connect(m_ui->btnApply, &QAbstractButton::clicked, this, &MainWindow::slotApply);
}

void MainWindow::on_ReadEC_clicked() {}

void MainWindow::on_pushButton_3_clicked() {
    SettingsWriter settings;
    settings.SetText(QString(keys::kTest.name), QStringLiteral("点击输入"));
    m_stateLine->NoteSaved(SettingsPart::Layout, settings.Commit());
}

void MainWindow::slotCreateThread() {
    if (m_waitsForUpload || QApplication::activeModalWidget() != nullptr) {
        QTimer::singleShot(kThreadsAfter, this, &MainWindow::slotCreateThread);
        return;
    }
    if (!IsFirstRun()) {
        if (configFolderCreated == 0) {
            StartPowerPoller();
            StartRefresh();
            return;
        }
        ShowInFront();
    }
    FirstRunUpload();
    StartPowerPoller();
    StartRefresh();
}

void MainWindow::FirstRunUpload() {
    m_waitsForUpload = true;
    PaintNow(*this);
    QThread::msleep(kFirstRunPauseMs);
    m_session->SendTimeSync();
    if (!UploadWithProgress()) {
        return;
    }
    MarkInitialized();
    PutAway();
    if (m_parts.hasTray()) {
        m_tray.TellWhereItIs(!m_session->Status().isFrameOwed);
    }
    configFolderCreated = 0;
}

bool MainWindow::UploadWithProgress() {
    m_waitsForUpload = true;
    const bool isOver = UploadBehindDialog(*this, *m_session);
    m_waitsForUpload = false;
    AskWantedExit();
    return isOver;
}

void MainWindow::AskWantedExit() {
    if (m_exitWanted) {
        m_exitWanted = false;
        QTimer::singleShot(0, this, &MainWindow::slotExit);
    }
}

void MainWindow::slotApply() {
    if (m_waitsForUpload) {
        return;
    }
    FinishEditing();
    // Whether it can be shown, the upload finds out.
    m_choice->Settle();
    StopRefresh();
    m_stateLine->NoteSaved(SettingsPart::Layout, m_ui->zoomwidget->CommitLayout());
    if (m_stateLine->Unsaved().testFlag(SettingsPart::Pictures)) {
        SavePictures();
    }
    if (m_stateLine->Unsaved().testFlag(SettingsPart::Away)) {
        m_stateLine->NoteSaved(SettingsPart::Away, SaveAwayRules(m_away->Rules()));
    }
    OpenEditing(false);
    UploadShown();
}

void MainWindow::UploadShown() {
    m_session->SetChosen(m_ui->zoomwidget->Shown());
    if (UploadWithProgress()) {
        StartRefresh();
    }
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
    m_away->End();
    const QDeadlineTimer deadline(LiveSession::kLongestStop);
    m_source.Stop();
    m_sensors->AskToStop();
    const bool hasSessionEnded = m_session->Stop(deadline);
    return m_sensors->HaveEnded(deadline) && hasSessionEnded;
}

void MainWindow::RegisterScreenNotification() {
    if (m_parts.makeHotplug) {
        m_screenWatch->Register(m_parts.makeHotplug(), [this] { return quintptr(winId()); });
    }
}

bool MainWindow::nativeEvent(const QByteArray& /*eventType*/, void* /*message*/, NativeResult* /*result*/) {
    return false;
}

bool MainWindow::HandleScreenChange(const QString& name, bool arrived) {
    m_screenWatch->HandleScreenChange(name, arrived);
    return true;
}

void MainWindow::ShowPanelStatus(const PanelStatus& status) {
    m_stateLine->Show(status);
    m_factLog.NotePanel(status);
}

void MainWindow::StartPowerPoller() {
    m_sensors->StartPowerPoller();
}

void MainWindow::StopPowerPoller() {
    m_sensors->StopPowerPoller();
}

void MainWindow::slotCpuPowClock(qint32 iPow, qint32 iClock, qint32 iGPow, qint32 iGClock) {
    Q_UNUSED(iGPow)
    Q_UNUSED(iGClock)
    m_session->SetCpuPowClock(iPow, iClock);
}

void MainWindow::on_pushButton_clicked() {
    m_sensors->ReadThermalZone();
}

void MainWindow::ShowSensors() {
    m_sensors->ShowList();
}

void MainWindow::Poll() {
    const InstanceRequest request = m_parts.instance != nullptr
                                        ? m_parts.instance->TakeWakeUpRequest(MayGiveWay())
                                        : InstanceRequest::None;
    if (request == InstanceRequest::GiveWay) {
        qInfo("A copy that uses the screen starts; this one, on a software panel, ends.");
        EndNow();
        return;
    }
    if (request == InstanceRequest::ComeToFront) {
        BringToFront();
    }
    LookForTray();
    m_screenWatch->LookForWakeUp();
    m_away->LookAtClock();
    ShowLiveTexts();
}

GivesWay MainWindow::MayGiveWay() const {
    if (m_parts.panel != LiveSession::PanelKind::Software) {
        return GivesWay::Never;
    }
    const bool isBusy = m_waitsForUpload || QApplication::activeModalWidget() != nullptr ||
                        QApplication::activePopupWidget() != nullptr;
    const ZoomWidget& editor = *m_ui->zoomwidget;
    const bool isAllSaved = m_choice->Open().isEmpty() && editor.Edited() == editor.Saved();
    return isBusy || editor.IsEditing() || !isAllSaved ? GivesWay::NotNow : GivesWay::Yes;
}

// At login the tray may come after the program.
void MainWindow::LookForTray() {
    m_isPutAway = m_isPutAway && isMinimized();
    if (m_hasTray || !m_parts.hasTray()) {
        return;
    }
    m_hasTray = true;
    m_tray.Show();
    if (m_isPutAway) {
        hide();
    }
}

void MainWindow::ShowLiveTexts() {
    if (!m_live || !isVisible() || isMinimized()) {
        return;
    }
    m_ui->zoomwidget->SetLiveTexts(m_session->LiveTexts());
    m_sensors->ShowTemperature();
}

// In the middle of the screen at first.
void MainWindow::PlaceOnScreen() {
    if (const QScreen* const screen = QGuiApplication::primaryScreen()) {
        move(CentredIn(screen->availableGeometry(), size()));
    }
    const auto watch = [this](QScreen* screen) {
        connect(screen, &QScreen::availableGeometryChanged, this, &MainWindow::KeepOnScreen);
    };
    const auto screens = QGuiApplication::screens();
    std::for_each(screens.begin(), screens.end(), watch);
    connect(qGuiApp, &QGuiApplication::screenAdded, this, watch);
    // Told before it goes.
    connect(qGuiApp, &QGuiApplication::screenRemoved, this, &MainWindow::KeepOnScreen, Qt::QueuedConnection);
}

// After a screen has become smaller or has gone; also while the window is hidden.
void MainWindow::KeepOnScreen() {
    move(BroughtInto(QRect(pos(), size()), Rooms()));
}

void MainWindow::BringToFront() {
    m_away->NotePerson();
    ShowInFront();
}

void MainWindow::ShowInFront() {
    if (!IsHeadInSight(QRect(pos(), size()), kHeadHeight, Rooms())) {
        KeepOnScreen();
    }
    m_ground.Fetch();
    m_isPutAway = false;
    // There a window comes in sight only when it is mapped anew; a dialog over it would be left behind it.
    if (m_parts.desktopPlacesWindows() && !isActiveWindow() && QApplication::activeModalWidget() == nullptr) {
        hide();
    }
    showNormal();
    activateWindow();
    raise();
}

void MainWindow::PutAway() {
    if (m_parts.hasTray()) {
        hide();
    } else {
        m_isPutAway = true;
        showMinimized();
    }
}

void MainWindow::iconActivated(QSystemTrayIcon::ActivationReason reason) {
    if (reason != QSystemTrayIcon::DoubleClick && reason != QSystemTrayIcon::Trigger) {
        return;
    }
    BringToFront();
}

void MainWindow::slotExit() {
    if (m_waitsForUpload) {
        m_exitWanted = true;
        return;
    }
    if (QWidget* dialog = QApplication::activeModalWidget()) {
        m_exitWanted = qobject_cast<ExitMessageBox*>(dialog) == nullptr;
        BringToFront();
        dialog->raise();
        dialog->activateWindow();
        return;
    }
    BringToFront();
    const ExitMessageBox::Question question{
        WindowText(QT_TRANSLATE_NOOP3("MainWindow", "温馨提示", "before the program ends")),
        WindowText(QT_TRANSLATE_NOOP("MainWindow", "退出软件PC端屏幕内容显示信息将不准，\n确定退出？")),
        WindowText(QT_TRANSLATE_NOOP3("MainWindow", "确定", "ends the program"))};
    if (!ExitMessageBox::Ask(this, question)) {
        return;
    }
    EndNow();
}

void MainWindow::EndNow() {
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
    if (m_focusRing == nullptr) {
        // Not before: it would have the style decode the window's ground, and most starts end in the tray.
        m_focusRing = new FocusRing(this);
    }
    ShowLiveTexts();
}

void MainWindow::mousePressEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton) {
        if (m_parts.desktopPlacesWindows() && windowHandle() != nullptr) {
            windowHandle()->startSystemMove();
            return;
        }
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
