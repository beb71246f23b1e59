#pragma once

// The program behind its window: opens the screen, brings whole frames to it and keeps its values live. Lives
// on the GUI thread, which calls every function, and owns all workers that write to the screen. Knows no
// widget and no settings: who uses it loads them and hands the states in.

#include <QDeadlineTimer>
#include <QObject>
#include <atomic>
#include <chrono>
#include <functional>
#include <memory>
#include <vector>

#include "compose/background_store.h"
#include "compose/live_screen.h"
#include "device/screen_session.h"
#include "device/transfers.h"
#include "telemetry/interface_language.h"
#include "telemetry/metric_snapshot.h"

class QThread;

namespace kivo {

class HidApi;
class NimbProcessThread;
class RefreshDataThread;

// What an upload waits before it composes.
struct UploadPauses {
    std::chrono::milliseconds behindDialog{1000};
    std::chrono::milliseconds silent{200};
};

class LiveSession : public QObject {
    Q_OBJECT

public:
    // How long the end of the program waits for workers at most, all together.
    static constexpr std::chrono::milliseconds kLongestStop{1500};

    // hid outlives the session.
    LiveSession(HidApi& hid, InterfaceLanguage language, UploadPauses pauses = {}, QObject* parent = nullptr);
    // Stops everything; whoever could not Stop it must have ended the process by now.
    ~LiveSession() override;

    // Fills the device table and opens the screen under this name, UTF-8; quietly does nothing where there is
    // none. Deliberate: at the start the name is the window's title as it is translated; under any other than
    // kScreenName no screen is opened.
    void OpenScreen(const QByteArray& name = kScreenName);
    ScreenSession& Screen() { return m_session; }
    bool SendTimeSync() { return m_transfers.SendTimeSync(); }

    // What was loaded at start: it counts as what the panel shows, unless that starts blank.
    void SetLoaded(const ScreenState& state);
    // What the next upload brings to the panel. To be called only right before StartUpload.
    void SetChosen(const ScreenState& state);
    ScreenState Applied() const { return m_screen.Applied(); }

    // Starts the refresh thread where none runs; while an upload runs, when that is over. A background that
    // is missing is composed again first, on that thread.
    void StartRefresh();
    // Tells the refresh thread to end and forgets it. It is waited for when the session ends only; meanwhile
    // it may finish the value it is at.
    void StopRefresh();
    // Takes every live value as never drawn: each is sent in full with the next round.
    void RedrawValues();
    // For a screen that came back, or a system that woke up: sends the pending frame, if there is one, and
    // redraws the values. The clock goes with the next round. A screen that did not take what it was sent,
    // and takes it again, gets the same by itself: it may answer later than the system says that it is there.
    void BringPanelUpToDate();

    // Starts the upload of the chosen state and gives its thread, which belongs to the session and must not
    // be stopped by the caller. beforeStart is called with the thread before it runs: the place to connect
    // its signal. Two uploads never mix: one behind a dialog runs after the one before it, and takes the
    // place of a silent one that has not begun to compose. Null after Stop.
    NimbProcessThread* StartUpload(const std::function<void(NimbProcessThread&)>& beforeStart = {});
    bool IsUploading() const { return !m_uploads.empty(); }

    // A panel without a memory of its own shows nothing of what was loaded: it needs a frame first.
    void SetPanelStartsBlank(bool isBlank) { m_isFramePending = m_isFramePending || isBlank; }
    // Whether the panel still lacks the frame that was uploaded last: it failed, or there was no screen, or
    // it is on its way. Remembered over the program's end.
    bool HasPendingFrame() const { return m_isFramePending; }
    // Sends the pending frame once more (as it was chosen then), without a dialog, and refreshes from then
    // on. While an upload runs, that is done in case it fails. To be called when a screen arrives, and at
    // start instead of StartRefresh. False, and nothing done, where no frame is pending.
    bool SendPendingFrame();

    // The newest power (watts) and temperature (degrees Celsius), kept across refresh threads. Deliberate:
    // the temperature arrives in the argument that is named after a clock.
    void SetCpuPowClock(qint32 iPow, qint32 iClock) { m_snapshot.SetCpuPowClock(iPow, iClock); }
    // Whether a temperature has been measured so far.
    bool HasTemperature() const { return m_snapshot.CpuTemp() > 0; }
    // The text of a live value at this moment (0..8; empty for the free texts).
    QString LiveText(int item) const { return m_snapshot.GetValueText(item); }
    // What the panel took last, item by item; empty for what it does not show.
    ItemTexts ShownTexts() const { return m_screen.ShownTexts(); }

    // Asks all workers to end and waits for them until the deadline: a screen that hangs holds a write up for
    // seconds. False when one is still in a write; then neither this object nor what it
    // was given may be destroyed, and all that is left is to end the process. Nothing can be started
    // afterwards.
    bool Stop(QDeadlineTimer deadline = QDeadlineTimer(kLongestStop));

Q_SIGNALS:
    // No upload runs any more; whether the panel took the newest one's frame.
    void uploadDone(bool success);

private:
    struct Upload {
        int number = 0;
        bool isSilent = false;
        std::unique_ptr<NimbProcessThread> thread;
    };
    NimbProcessThread* BeginUpload(bool isSilent, const std::function<void(NimbProcessThread&)>& beforeStart);
    void EndUpload(int number);
    void ReapRetired();
    void NoteRound(bool allTaken);  // refresh thread
    void SetPending(bool isPending);

    const InterfaceLanguage m_language;
    const UploadPauses m_pauses;
    ScreenSession m_session;
    Transfers m_transfers;
    MetricSnapshot m_snapshot;
    BackgroundStore m_backgrounds;
    LiveScreen m_screen;

    ScreenState m_uploadState;  // of the newest upload; before the first one, what was loaded
    bool m_isFramePending = false;
    std::atomic<bool> m_wasAway{false};  // the last round of the refresh thread was not taken as a whole
    bool m_sendAgain = false;            // a screen arrived while an upload ran
    bool m_refreshAfterUpload = false;   // a refresh was asked for while an upload ran
    bool m_stopped = false;
    int m_uploadCount = 0;
    std::vector<Upload> m_uploads;  // that have not reported, oldest first
    std::unique_ptr<RefreshDataThread> m_refresh;
    std::vector<std::unique_ptr<QThread>> m_retired;  // asked to end, or about to
};

}  // namespace kivo
