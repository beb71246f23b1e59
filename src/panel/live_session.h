#pragma once

// The program behind its window: opens the screen, brings whole frames to it and keeps its values live. Lives
// on the GUI thread, which calls every function, and owns the workers that open the screen and write to it;
// only AwaitLight and Stop wait for a worker, for as long as they say, and StopRefresh for a moment, in which
// most rounds end. Knows no widget and no settings: whoever uses it loads them and hands the states in.

#include <QDeadlineTimer>
#include <QObject>
#include <QTimer>
#include <chrono>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <vector>

#include "device/screen_change.h"
#include "device/screen_session.h"
#include "device/transfers.h"
#include "model/interface_language.h"
#include "panel/device_queue.h"
#include "panel/frame_store.h"
#include "panel/panel_memory.h"
#include "panel/panel_sender.h"
#include "telemetry/metric_snapshot.h"

class QThread;

namespace kivo {

class HidApi;
class NimbProcessThread;
class RefreshDataThread;

class LiveSession : public QObject {
    Q_OBJECT

public:
    // How long the end of the program waits for workers at most, all together.
    static constexpr std::chrono::milliseconds kLongestStop{1500};

    enum class PanelKind {
        Real,      // keeps its picture while the program does not run; the session remembers what it took
        Software,  // starts blank in each process
    };
    struct Options {
        PanelKind panel = PanelKind::Real;
        // What an upload waits before it composes.
        std::chrono::milliseconds uploadPause{1000};
        // See PanelSender::Parts; has to be given.
        std::function<std::optional<FramePicture>(const ScreenState& state)> picture = {};
    };

    // hid outlives the session.
    LiveSession(HidApi& hid, InterfaceLanguage language, Options options, QObject* parent = nullptr);
    // Stops everything; whoever could not Stop it must have ended the process by now.
    ~LiveSession() override;

    // Has workers fill the device table, open the screen under this name (UTF-8) and set its clock, which
    // quietly does nothing where there is none. screensListed tells when the table is filled. Deliberate,
    // fixed: at the start the name is the window's title as it is translated; under any other than
    // kScreenName no screen is opened.
    void OpenScreen(const QByteArray& name = kScreenName);
    ScreenSession& Screen() { return m_session; }

    // An interface of any device arrived or went: has a worker bring the table up to date and open or close
    // the screen, see ApplyScreenChange. One change after the other; screenChanged tells of each.
    void HandleScreenChange(const DeviceChange& change, bool suspended, ArrivalPath pathFrom);

    // Has a worker set the panel's clock.
    void SendTimeSync();

    // What was loaded at start. StartRefresh brings it to a panel that does not have it.
    void SetLoaded(const ScreenState& state) { m_sender.SetLoaded(state); }
    // What the next upload brings to the panel. To be called only right before StartUpload.
    void SetChosen(const ScreenState& state) { m_sender.SetChosen(state); }
    ScreenState Applied() const { return m_sender.Applied(); }

    // Has a worker bring what the panel is to show in this light, at once; the refresh thread goes on with
    // what was not taken. Not kept over the end. What is uploaded while the panel is black is shown
    // afterwards. tried is called by the event loop when the worker is done, whatever came of it; not after
    // Stop.
    void SetLight(PanelLight light, const std::function<void()>& tried = {});
    // Waits until the panel has the light that was set last, or cannot be given it, but no longer than this.
    void AwaitLight(std::chrono::milliseconds longest) { m_lightQueue.AwaitIdle(longest); }

    // Starts the refresh thread where none runs; while an upload runs, when that is over. It sends whatever
    // the panel is owed, whole frames too.
    void StartRefresh();
    // Tells the refresh thread to end and forgets it. It is waited for when the session ends only; meanwhile
    // it may finish the value it is at.
    void StopRefresh();

    // A screen came (back), or the system woke up: what it shows is sent again with the next round.
    void NoteArrival() { m_sender.NoteArrival(); }

    // Starts the upload of the chosen state and gives its thread, which belongs to the session and must not
    // be stopped by the caller. beforeStart is called with the thread before it runs: the place to connect
    // its signal. Of two uploads at once each sends the state chosen last. Null after Stop.
    NimbProcessThread* StartUpload(const std::function<void(NimbProcessThread&)>& beforeStart = {});
    bool IsUploading() const { return !m_uploads.empty(); }

    PanelStatus Status() const { return m_sender.Status(); }
    PanelFacts Facts() const { return m_sender.Facts(); }

    // What the sensors said last, kept across refresh threads.
    void SetReadings(const SensorReadings& readings) { m_snapshot.SetReadings(readings); }
    // Values older than ten seconds are Silent.
    SensorReadings Readings() const { return m_snapshot.Readings(); }
    // The power (watts) and temperature (degrees Celsius) that belong to them. Deliberate, fixed: the
    // temperature arrives in the argument that is named after a clock.
    void SetCpuPowClock(qint32 iPow, qint32 iClock) { m_snapshot.SetCpuPowClock(iPow, iClock); }
    // Whether the temperature is known now.
    bool HasTemperature() const { return Readings()[Quantity::Temperature].value.has_value(); }
    // The text of a live value at this moment (empty for the free texts), and of all.
    QString LiveText(int item) const { return m_snapshot.GetValueText(item); }
    ItemTexts LiveTexts() const { return m_snapshot.ValueTexts(); }
    // What the panel took last, item by item; empty for what it does not show.
    ItemTexts ShownTexts() const { return m_sender.ShownTexts(); }

    // Asks all workers to end and waits for them until the deadline: a screen that hangs holds a write up for
    // seconds. False when one is still in a write; then neither this object nor what it was given may be
    // destroyed, and all that is left is to end the process. Nothing can be started afterwards.
    bool Stop(QDeadlineTimer deadline = QDeadlineTimer(kLongestStop));

Q_SIGNALS:
    // The devices were listed at the start; whether a screen is among them.
    void screensListed(bool isThere);
    // A change was handled; closed: the screen counts as gone.
    void screenChanged(bool closed);
    // What window and tray are to say has changed.
    void statusChanged(const kivo::PanelStatus& status);
    // No upload runs any more; whether the panel took the frame of the one that ended last.
    void uploadDone(bool success);

private:
    void NoteRecordChanged();  // any thread
    void TellStatus();
    void EndUpload(const NimbProcessThread* thread);
    void ReapRetired();

    const InterfaceLanguage m_language;
    const Options m_options;
    ScreenSession m_session;
    Transfers m_transfers;
    MetricSnapshot m_snapshot;
    FrameStore m_frames;
    PanelMemory m_memory;
    PanelSender m_sender;

    std::mutex m_statusMutex;
    PanelStatus m_status;  // as it was noted last, on whatever thread
    QTimer m_statusTimer;  // takes back what is told for a while only

    bool m_stopped = false;
    DeviceQueue m_devices;
    DeviceQueue m_lightQueue;
    std::vector<std::unique_ptr<NimbProcessThread>> m_uploads;  // that have not reported, oldest first
    std::unique_ptr<RefreshDataThread> m_refresh;               // not started yet while an upload runs
    std::vector<std::unique_ptr<QThread>> m_retired;            // that end by themselves, or were asked to
};

}  // namespace kivo
