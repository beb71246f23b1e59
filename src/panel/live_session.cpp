#include "panel/live_session.h"

#include <QThread>
#include <algorithm>
#include <utility>

#include "panel/nimb_process_thread.h"
#include "panel/refresh_data_thread.h"
#include "telemetry/local_time.h"
#include "telemetry/thread_end.h"

namespace kivo {

namespace {

constexpr unsigned long kStopGraceMs = 10;

// Sets the panel's clock once, beside the GUI thread.
class ClockThread final : public QThread {
public:
    explicit ClockThread(PanelSender& sender) : m_sender(sender) {}
    ~ClockThread() override {
        wait();
        static_cast<void>(m_end.IsMarked());
    }

protected:
    void run() override {
        const ThreadEndMarker marker(m_end);
        m_sender.SendTimeSync();
    }

private:
    PanelSender& m_sender;
    ThreadEnd m_end;
};

}  // namespace

LiveSession::LiveSession(HidApi& hid, InterfaceLanguage language, Options options, QObject* parent)
    : QObject(parent),
      m_language(language),
      m_options(std::move(options)),
      m_session(hid),
      m_transfers(m_session, [] { return ReadLocalTime().time; }),
      m_snapshot(language),
      m_sender({m_session,
                m_transfers,
                m_frames,
                m_options.panel == PanelKind::Real ? &m_memory : nullptr,
                [this](int item) { return m_snapshot.GetValueText(item); },
                m_options.picture,
                {},
                [this] { NoteRecordChanged(); }}),
      m_status(m_sender.Status()) {
    if (RemoveFormerMark()) {
        m_memory.Forget();
    }
    m_statusTimer.setSingleShot(true);
    connect(&m_statusTimer, &QTimer::timeout, this, &LiveSession::NoteRecordChanged);
}

LiveSession::~LiveSession() {
    if (!Stop()) {
        qFatal("A worker is still writing to the screen.");
    }
}

void LiveSession::OpenScreen(const QByteArray& name) {
    m_session.InitDeviceTable();
    ReapRetired();
    m_retired.push_back(std::make_unique<ClockThread>(m_sender));
    // Started from there: this thread is busy with the window for a while.
    m_devices.Do([this, name, clock = m_retired.back().get()] {
        // Some systems open every device to list it, and any of them may hang.
        m_session.EnumerateScreens();
        // With this object's events, so that nobody who connects right after this call misses it.
        QMetaObject::invokeMethod(this, "screensListed", Qt::QueuedConnection,
                                  Q_ARG(bool, m_session.Entry(0).dataFound != 0));
        clock->start(QThread::InheritPriority);
        m_session.OpenScreenByName(name);
        m_session.WarnIfDenied();
    });
}

void LiveSession::HandleScreenChange(const DeviceChange& change, bool suspended, ArrivalPath pathFrom) {
    m_devices.Do([this, change, suspended, pathFrom] {
        const ScreenChangeOutcome outcome = ApplyScreenChange(m_session, change, suspended, pathFrom);
        if (outcome.dataArrived) {
            m_sender.NoteArrival();
        }
        QMetaObject::invokeMethod(
            this, [this, closed = outcome.closed] { Q_EMIT screenChanged(closed); }, Qt::QueuedConnection);
    });
}

void LiveSession::SetLight(PanelLight light, const std::function<void()>& tried) {
    m_sender.SetLight(light);
    m_lightQueue.Do([this, tried] {
        m_sender.BeginRound();
        if (tried) {
            QMetaObject::invokeMethod(this, tried, Qt::QueuedConnection);
        }
    });
}

void LiveSession::SendTimeSync() {
    if (m_stopped) {
        return;
    }
    ReapRetired();
    m_retired.push_back(std::make_unique<ClockThread>(m_sender));
    m_retired.back()->start(QThread::InheritPriority);
}

void LiveSession::StartRefresh() {
    if (m_refresh || m_stopped) {
        return;
    }
    m_refresh =
        std::make_unique<RefreshDataThread>(RefreshDataThread::Parts{m_sender, m_snapshot, m_language});
    if (!IsUploading()) {
        m_refresh->start(QThread::InheritPriority);
    }
}

void LiveSession::StopRefresh() {
    if (!m_refresh) {
        return;
    }
    m_refresh->isStop = 1;
    QThread::msleep(kStopGraceMs);
    m_refresh->stop();
    m_retired.push_back(std::move(m_refresh));
    ReapRetired();
}

NimbProcessThread* LiveSession::StartUpload(const std::function<void(NimbProcessThread&)>& beforeStart) {
    if (m_stopped) {
        return nullptr;
    }
    ReapRetired();
    m_uploads.push_back(std::make_unique<NimbProcessThread>(
        NimbProcessThread::Parts{m_sender, m_snapshot, m_options.uploadPause}));
    NimbProcessThread* const thread = m_uploads.back().get();
    // Before any receiver of the caller's, so that the outcome is known when that one is called.
    connect(thread, &NimbProcessThread::DoProcessDlg, this, [this, thread] { EndUpload(thread); });
    if (beforeStart) {
        beforeStart(*thread);
    }
    thread->start(QThread::InheritPriority);
    return thread;
}

void LiveSession::EndUpload(const NimbProcessThread* thread) {
    const auto found = std::find_if(m_uploads.begin(), m_uploads.end(),
                                    [thread](const auto& upload) { return upload.get() == thread; });
    if (found == m_uploads.end() || m_stopped) {
        return;
    }
    const bool success = thread->Succeeded();
    m_retired.push_back(std::move(*found));
    m_uploads.erase(found);
    if (IsUploading()) {
        return;
    }
    if (m_refresh && !m_refresh->isRunning()) {
        m_refresh->start(QThread::InheritPriority);
    }
    Q_EMIT uploadDone(success);
}

void LiveSession::NoteRecordChanged() {
    const PanelStatus status = m_sender.Status();
    {
        const std::lock_guard<std::mutex> lock(m_statusMutex);
        if (std::exchange(m_status, status) == status) {
            return;
        }
    }
    QMetaObject::invokeMethod(this, &LiveSession::TellStatus, Qt::QueuedConnection);
}

void LiveSession::TellStatus() {
    const PanelStatus status = m_sender.Status();
    if (status.condition == PanelCondition::Sent) {
        m_statusTimer.start(kSentIsToldFor);
    }
    Q_EMIT statusChanged(status);
}

void LiveSession::ReapRetired() {
    m_retired.erase(std::remove_if(m_retired.begin(), m_retired.end(),
                                   [](const auto& thread) { return thread->isFinished(); }),
                    m_retired.end());
}

bool LiveSession::Stop(QDeadlineTimer deadline) {
    m_stopped = true;
    m_transfers.StopTransfers();
    m_devices.Stop();
    m_lightQueue.Stop();
    if (m_refresh) {
        m_refresh->stop();
    }
    for (const auto& upload : m_uploads) {
        upload->stop();
    }
    // First: it may be about to start one of those that have retired.
    bool allEnded = m_devices.wait(deadline);
    allEnded = (!m_refresh || m_refresh->wait(deadline)) && allEnded;
    for (const auto& upload : m_uploads) {
        allEnded = upload->wait(deadline) && allEnded;
    }
    for (const auto& thread : m_retired) {
        allEnded = thread->wait(deadline) && allEnded;
    }
    return m_lightQueue.wait(deadline) && allEnded;
}

}  // namespace kivo
