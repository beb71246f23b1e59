#include "app/live_session.h"

#include <QDeadlineTimer>
#include <QThread>
#include <algorithm>
#include <utility>

#include "app/nimb_process_thread.h"
#include "app/refresh_data_thread.h"
#include "config/pending_frame.h"
#include "telemetry/local_time.h"

namespace kivo {

namespace {

constexpr unsigned long kStopGraceMs = 10;

}  // namespace

LiveSession::LiveSession(HidApi& hid, InterfaceLanguage language, UploadPauses pauses, QObject* parent)
    : QObject(parent),
      m_language(language),
      m_pauses(pauses),
      m_session(hid),
      m_transfers(m_session, [] { return ReadLocalTime().time; }),
      m_snapshot(language),
      m_screen(m_transfers, m_backgrounds, [this](int item) { return m_snapshot.GetValueText(item); }),
      m_isFramePending(IsFramePending()) {}

LiveSession::~LiveSession() {
    if (!Stop()) {
        qFatal("A worker is still writing to the screen.");
    }
}

void LiveSession::OpenScreen(const QByteArray& name) {
    m_session.InitDeviceTable();
    m_session.EnumerateScreens();
    m_session.OpenScreenByName(name);
    m_session.WarnIfDenied();
}

void LiveSession::SetLoaded(const ScreenState& state) {
    m_uploadState = state;
    m_screen.SetLoaded(state);
}

void LiveSession::SetChosen(const ScreenState& state) {
    m_screen.SetChosen(state);
}

void LiveSession::StartRefresh() {
    if (m_refresh || m_stopped) {
        return;
    }
    if (IsUploading()) {
        m_refreshAfterUpload = true;
        return;
    }
    RefreshDataThread::Parts parts{m_transfers, m_snapshot, liveItemRenderer, m_language};
    parts.prepare = [this] { m_screen.RestoreBackground(); };
    parts.roundDone = [this](bool allTaken) { NoteRound(allTaken); };
    m_refresh = std::make_unique<RefreshDataThread>(std::move(parts));
    m_refresh->start(QThread::InheritPriority);
}

void LiveSession::StopRefresh() {
    m_refreshAfterUpload = false;
    if (!m_refresh) {
        return;
    }
    m_refresh->isStop = 1;
    QThread::msleep(kStopGraceMs);
    m_refresh->stop();
    m_retired.push_back(std::move(m_refresh));
    ReapRetired();
}

void LiveSession::RedrawValues() {
    m_screen.ForgetDrawnTexts();
    if (m_refresh) {
        m_refresh->ForgetSentTexts();
    }
}

void LiveSession::BringPanelUpToDate() {
    m_wasAway = false;
    RedrawValues();
    SendPendingFrame();
}

void LiveSession::NoteRound(bool allTaken) {
    if (m_wasAway.exchange(!allTaken) && allTaken) {
        QMetaObject::invokeMethod(this, &LiveSession::BringPanelUpToDate, Qt::QueuedConnection);
    }
}

NimbProcessThread* LiveSession::StartUpload(const std::function<void(NimbProcessThread&)>& beforeStart) {
    // A silent one that is overtaken need not report: nobody waits for it.
    for (Upload& upload : m_uploads) {
        if (upload.isSilent) {
            upload.thread->stop();
            m_retired.push_back(std::move(upload.thread));
        }
    }
    m_uploads.erase(std::remove_if(m_uploads.begin(), m_uploads.end(),
                                   [](const Upload& upload) { return !upload.thread; }),
                    m_uploads.end());
    m_uploadState = m_screen.Chosen();
    return BeginUpload(false, beforeStart);
}

bool LiveSession::SendPendingFrame() {
    if (!m_isFramePending || m_stopped) {
        return false;
    }
    if (IsUploading()) {
        m_sendAgain = true;
        return true;
    }
    StopRefresh();
    m_refreshAfterUpload = true;
    m_screen.SetChosen(m_uploadState);
    BeginUpload(true, {});
    return true;
}

NimbProcessThread* LiveSession::BeginUpload(bool isSilent,
                                            const std::function<void(NimbProcessThread&)>& beforeStart) {
    if (m_stopped) {
        return nullptr;
    }
    ReapRetired();
    SetPending(true);
    m_sendAgain = false;
    const int number = ++m_uploadCount;
    m_uploads.push_back(
        {number, isSilent,
         std::make_unique<NimbProcessThread>(NimbProcessThread::Parts{
             m_screen, m_transfers, m_snapshot, isSilent ? m_pauses.silent : m_pauses.behindDialog})});
    NimbProcessThread* const thread = m_uploads.back().thread.get();
    // Before any receiver of the caller's, so that the outcome is known when that one is called.
    connect(thread, &NimbProcessThread::DoProcessDlg, this, [this, number] { EndUpload(number); });
    if (beforeStart) {
        beforeStart(*thread);
    }
    thread->start(QThread::InheritPriority);
    return thread;
}

void LiveSession::EndUpload(int number) {
    const auto found = std::find_if(m_uploads.begin(), m_uploads.end(),
                                    [number](const Upload& upload) { return upload.number == number; });
    if (found == m_uploads.end() || m_stopped) {
        return;
    }
    if (number == m_uploadCount) {
        SetPending(!found->thread->Succeeded());
    }
    m_retired.push_back(std::move(found->thread));
    m_uploads.erase(found);
    if (IsUploading()) {
        return;
    }
    const bool sendAgain = std::exchange(m_sendAgain, false);
    if (m_isFramePending && sendAgain) {
        SendPendingFrame();
        return;
    }
    // What a thread that went on handed over meanwhile was left out.
    if (m_refresh) {
        m_refresh->ForgetSentTexts();
    }
    if (std::exchange(m_refreshAfterUpload, false)) {
        StartRefresh();
    }
    Q_EMIT uploadDone(!m_isFramePending);
}

void LiveSession::SetPending(bool isPending) {
    m_isFramePending = isPending;
    SetFramePending(isPending);
}

void LiveSession::ReapRetired() {
    m_retired.erase(std::remove_if(m_retired.begin(), m_retired.end(),
                                   [](const auto& thread) { return thread->isFinished(); }),
                    m_retired.end());
}

bool LiveSession::Stop(QDeadlineTimer deadline) {
    m_stopped = true;
    m_transfers.StopTransfers();
    if (m_refresh) {
        m_refresh->stop();
    }
    for (const Upload& upload : m_uploads) {
        upload.thread->stop();
    }
    bool allEnded = !m_refresh || m_refresh->wait(deadline);
    for (const Upload& upload : m_uploads) {
        allEnded = upload.thread->wait(deadline) && allEnded;
    }
    for (const auto& thread : m_retired) {
        allEnded = thread->wait(deadline) && allEnded;
    }
    return allEnded;
}

}  // namespace kivo
