#pragma once

// The program's one window and the owner of its session: language, pages, screen, tray, start and end. It
// wires; what a page, the editor or the session do stands there. GUI thread.

#include <QLocale>
#include <QMainWindow>
#include <QModelIndex>
#include <QSystemTrayIcon>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "device/native_result.h"
#include "panel/live_session.h"
#include "pictures/thumbnail_picture.h"
#include "session/away_watch.h"
#include "session/display.h"
#include "session/outside_control.h"
#include "session/untold_sleep.h"
#include "telemetry/local_time.h"
#include "telemetry/package_sensors.h"
#include "telemetry/thermal_zone_thread.h"
#include "window/fact_log.h"
#include "window/language.h"
#include "window/layout_sharing.h"
#include "window/tray.h"
#include "window/tray_host.h"
#include "window/window_ground.h"
#include "window/window_rest.h"

namespace Ui {
class MainWindow;
}

namespace kivo {

class AwayLight;
class ColorBar;
class CustomPage;
class EditBar;
class EditHint;
class FocusRing;
struct EditState;
class HidApi;
class Hotplug;
class PictureChoice;
class PictureList;
class PictureLooks;
class PictureNotice;
class RestoreOffer;
class ScreenWatch;
class SingleInstance;
enum class GivesWay;
class StateLine;
class ThemePage;
struct ThemeState;
class TwoWayChoice;
class WindowSensors;

class MainWindow : public QMainWindow {
    Q_OBJECT

public:
    // What the file of a layout is asked for.
    enum class LayoutFile { ToExport, ToImport };

    // What a window is made from. hid and instance outlive it.
    struct Parts {
        HidApi& hid;
        SingleInstance* instance = nullptr;  // null: nobody asks for the window
        QString applicationDir;              // default files and translations
        // A software panel gives way to a screen.
        LiveSession::PanelKind panel = LiveSession::PanelKind::Real;
        QLocale locale = QLocale::system();
        std::function<bool()> hasTray = &IsTrayThere;
        std::function<QStringList(QWidget*)> choosePictures = {};  // default: a file dialog; none: cancelled
        // Default: a file dialog; empty: cancelled. proposed: a name for what is exported.
        std::function<QString(QWidget*, LayoutFile use, const QString& proposed)> chooseLayoutFile = {};
        std::function<QString()> chooseReportFile = {};  // default: a file dialog; empty: cancelled
        std::function<PictureSource::Readers()> makePictureReaders = FileReaders;
        std::function<bool()> desktopPlacesWindows = &DesktopPlacesWindows;
        // Who tells of screens that come and go; default: nobody does.
        std::function<std::unique_ptr<Hotplug>()> makeHotplug = {};
        std::function<std::chrono::nanoseconds()> timeAsleep = &UntoldTimeAsleep;
        // Who tells that the person is away; default: nobody does.
        std::function<std::unique_ptr<AwayWatch>()> makeAwayWatch = {};
        // The clock on the wall.
        std::function<QTime()> localTime = [] { return ReadLocalTime().time; };
        PackageSensorsFactory makeSensors = MakePackageSensors;
        ThermalZoneThread::Reader readThermalZone = ReadThermalZoneTemperature;
        bool isWanted = false;  // the window is going to be shown as soon as it is there
        // After so long out of sight the window lets go of its pictures.
        std::chrono::milliseconds restsAfter = WindowRest::kUsualWait;
    };

    explicit MainWindow(const Parts& parts);

    // The session must have been stopped (Stop) before.
    ~MainWindow() override;

    LiveSession& Session() { return *m_session; }
    const PictureSource& Pictures() const { return m_source; }
    bool IsResting() const { return m_rest.IsResting(); }
    const WindowGround& Ground() const { return m_ground; }

    // A person wants the window: in front, and the panel bright whatever the system said before.
    void BringToFront();

    // Shows the window as a person wants it back, whoever asked for it: restored, in front, active.
    void ShowInFront();

    // Out of sight, but within reach: hidden where there is a tray, else minimised until there is one.
    void PutAway();

    // Ends the workers, the sensors' too; see LiveSession::Stop. Nothing is uploaded any more.
    bool Stop();

    // Says what state the screen is in, in the window and in the tool tip of the tray.
    void ShowPanelStatus(const PanelStatus& status);

    // An interface of any device arrived or went: has the table brought up to date, the screen opened or
    // closed, beside the window (LiveSession::HandleScreenChange). Always true.
    bool HandleScreenChange(const QString& name, bool arrived);

    // While non-zero, what arrives is not opened and what goes is not closed. Deliberate: nothing in the
    // program sets it.
    quint8 hotplugSuspended = 0;
    // Cleared when the screen goes. Deliberate: nothing in the program sets it; whether there is a screen is
    // told by the device table.
    quint8 screenAttached = 0;

    // Does what a second start, or this one's own command line, asks for: saves it and brings it to the
    // panel, without a dialog. What is being edited stays as it is, and waits.
    void TakeFromOutside(const OutsideCommands& commands, const OutsideReply& reply);

    // Refresh thread on and off.
    void StartRefresh();
    void StopRefresh();

    // Power and temperature on and off: see WindowSensors.
    void StartPowerPoller();
    void StopPowerPoller();

public Q_SLOTS:
    void slotCreateThread();
    void iconActivated(QSystemTrayIcon::ActivationReason reason);
    // A new sample of the power poller. Deliberate: the temperature arrives in the argument that is named
    // after a clock. The last two are reserved.
    void slotCpuPowClock(qint32 iPow, qint32 iClock, qint32 iGPow, qint32 iGClock);
    // The read-out was clicked: reads the firmware's thermal zone, beside the window, and shows it there.
    void on_pushButton_clicked();  // clazy:exclude=connect-by-name
    // Opens the list of sensors, or brings it to the front.
    void ShowSensors();
    // Asks for a file and puts a report for support there; the tray says what came of it.
    void SaveReport();
    // Asks whether to end the program, and ends it.
    void slotExit();
    void slotApply();
    // Deliberate: does nothing. No embedded controller is read; the button of that name has no place, it only
    // keeps Qt from looking for one in vain.
    void on_ReadEC_clicked();  // clazy:exclude=connect-by-name
    // Deliberate: writes a fixed text into the settings, to see that they can be written. Its button has no
    // place either.
    void on_pushButton_3_clicked();  // clazy:exclude=connect-by-name

    // Picture list.
    void itemClickedImage(const QModelIndex& index);
    void slotRightClick();
    void SlotDeletePix(int row);

    // Text and colour tools.
    void slotEdit(quint8 iEdit);
    void slotFontColor(quint8 iColor);
    void slotFontSize(quint8 iSize);
    void slotShowColorbar(quint8 iShow);
    void slotReset();
    void slotSizeClick();
    void SetRemoteHide(quint8 iHide);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void showEvent(QShowEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Deliberate, fixed: reads no message and takes none away from Qt. Those that tell of devices are read
    // before they come here (hotplug_windows.cpp).
    bool nativeEvent(const QByteArray& eventType, void* message, NativeResult* result) override;

private:
    void WirePages();
    void WireTools();
    void WirePictures();
    void WireShell();
    void WireSharing();
    void LoadState();
    void ReadState();
    void RestoreSettings();

    void ChangeThemes(const std::function<void(ThemeState&)>& change);
    void ShowState();
    void ShowPageChoice(bool custom, const ThemeState& themes);
    void ShowToolBar();
    void ShowWays();
    void FollowTrimMode();
    void ShowChosenPicture();
    void GoBackOnceLeft();
    void ShowLooks();
    void OpenEditing(bool open);
    void FinishEditing();
    void GoOnTyping();
    bool IsCustomPage() const;

    void RegisterScreenNotification();

    void PlaceOnScreen();
    void KeepOnScreen();
    void Poll();  // every now and then: another copy's requests, the tray, a wake-up, the live texts
    GivesWay MayGiveWay() const;
    void EndNow();
    void LookForTray();
    QString SupportReportText() const;
    QString ChooseReportFile();
    void ShowLiveTexts();
    void FirstRunUpload();
    // False when the program ends meanwhile.
    bool UploadWithProgress();
    // What the editor shows; the values go on afterwards.
    void UploadShown();
    void AskWantedExit();
    void TakePicture(const QString& path, const QString& inPlaceOf);
    void RefusePicture(const QString& path, const QString& inPlaceOf);
    void TakePictureOut(const QString& removed, int row);
    QStringList ChoosePictures();
    void AddPictures(const QStringList& paths);
    void SavePictures();
    void ShowPictureNotice();
    void LetGoOfPictures();

    QString ChooseLayoutFile(LayoutFile use, const QString& proposed);
    void ExportLayout();
    void ImportLayout();
    void TakeImported(const LayoutSharing::Outcome& outcome);
    // With its picture in the list. Why it cannot be saved, as one sentence in English; then nothing has
    // changed.
    QString SaveImported(const LayoutSharing::Outcome& outcome,
                         const std::function<bool(const ScreenState& layout)>& save);
    void TellOfSharing(const QString& text);

    // A request that waits until its picture has been looked at.
    struct OutsidePicture {
        QString path;
        OutsideCommands commands;
        OutsideReply reply;
    };
    void TakeOutsidePicture(const QString& path);
    OutsideAnswer DoFromOutside(const OutsideCommands& commands);
    // What does not change the layout.
    OutsideAnswer DoBesides(const OutsideCommands& commands);
    OutsideAnswer ApplyImported(const LayoutSharing::Outcome& outcome, const OutsideCommands& commands);
    bool AddOutsidePicture(const QString& path);
    bool ApplyFromOutside(const EditState& next);

    const Parts m_parts;
    WindowLanguage m_translations;
    const InterfaceLanguage m_language;
    std::unique_ptr<::Ui::MainWindow> m_ui;
    PictureSource m_source;  // outlives the session, whose workers ask it
    std::unique_ptr<LiveSession> m_session;

    EditBar* m_editBar = nullptr;
    ColorBar* m_colorBar = nullptr;
    EditHint* m_hint = nullptr;
    ThemePage* m_themePage = nullptr;
    CustomPage* m_customPage = nullptr;
    TwoWayChoice* m_tabs = nullptr;
    TwoWayChoice* m_orientation = nullptr;
    TwoWayChoice* m_pageChoice = nullptr;
    PictureList* m_pictures = nullptr;
    PictureChoice* m_choice = nullptr;
    PictureNotice* m_pictureNotice = nullptr;
    PictureLooks* m_looks = nullptr;
    LayoutSharing* m_sharing = nullptr;
    StateLine* m_stateLine = nullptr;
    RestoreOffer* m_restoreOffer = nullptr;
    FocusRing* m_focusRing = nullptr;
    WindowGround m_ground;
    WindowRest m_rest;
    std::unique_ptr<AwayLight> m_away;
    Tray m_tray{this};  // has a menu of the former's
    FactLog m_factLog;
    QTimer m_poll;
    std::unique_ptr<ScreenWatch> m_screenWatch;
    std::unique_ptr<WindowSensors> m_sensors;

    std::vector<OutsidePicture> m_outsidePictures;

    bool m_live = false;  // workers run, so that there are live texts to show
    // Behind its dialog. The session may go on with an upload whose dialog has ended.
    bool m_waitsForUpload = false;
    bool m_hasTray = false;     // it has been there
    bool m_isPutAway = false;   // minimised for want of a tray; a person who minimises the window may stay
    bool m_exitWanted = false;  // asked for while something else went on
    bool m_exitConfirmed = false;
    bool m_dragging = false;
    QPoint m_dragOffset;
};

}  // namespace kivo
