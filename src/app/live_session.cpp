#include "app/live_session.h"

#include <QDeadlineTimer>
#include <chrono>

#include "app/frame_upload_thread.h"
#include "app/refresh_data_thread.h"
#include "compose/theme_state.h"
#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "config/settings_file.h"
#include "telemetry/local_time.h"

namespace kivo {

namespace {

constexpr std::chrono::milliseconds kLongestStop{1500};

}  // namespace

LiveSession::LiveSession(HidApi& hid, InterfaceLanguage language, QString applicationDir, QObject* parent)
    : QObject(parent),
      m_language(language),
      m_applicationDir(std::move(applicationDir)),
      m_session(hid),
      m_transfers(m_session, [] { return ReadLocalTime().time; }),
      m_snapshot(language),
      m_screen(m_transfers, m_backgrounds, [this](int item) { return m_snapshot.GetValueText(item); }) {}

LiveSession::~LiveSession() {
    // Whoever could not stop it has ended the process by now.
    if (!Stop()) {
        qFatal("A worker is still writing to the screen.");
    }
}

void LiveSession::LoadState() {
    SeedDefaultProfile(m_applicationDir);
    ThemeState themes = LoadThemeState(m_language);
    const SlotTable slotTable = LoadSlotTable();
    TickPlacedItems(themes, slotTable);
    m_screen.SetLoaded(MakeScreenState(themes, slotTable, LoadCurRectId(), m_language));
}

void LiveSession::Start() {
    LoadState();
    m_session.InitDeviceTable();
    m_session.EnumerateScreens();
    m_session.OpenScreenByName(kScreenName);
    m_transfers.SendTimeSync();

    m_upload = std::make_unique<FrameUploadThread>(m_screen, m_transfers, m_snapshot);
    connect(m_upload.get(), &FrameUploadThread::uploaded, this, [this](bool success) {
        if (m_stopped) {
            return;
        }
        MarkInitialized();
        configFolderCreated = 0;
        StartRefresh();
        Q_EMIT firstFrameDone(success);
    });
    m_upload->start(QThread::InheritPriority);
}

void LiveSession::StartRefresh() {
    if (m_refresh || m_stopped) {
        return;
    }
    m_refresh = std::make_unique<RefreshDataThread>(
        RefreshDataThread::Parts{m_transfers, m_snapshot, liveItemRenderer, m_language});
    m_refresh->start(QThread::InheritPriority);
}

bool LiveSession::Stop() {
    m_stopped = true;
    m_transfers.StopTransfers();
    if (m_refresh) {
        m_refresh->stop();
    }
    if (m_upload) {
        m_upload->stop();
    }
    const QDeadlineTimer deadline(kLongestStop);
    const bool refreshEnded = !m_refresh || m_refresh->wait(deadline);
    const bool uploadEnded = !m_upload || m_upload->wait(deadline);
    return refreshEnded && uploadEnded;
}

ItemTexts LiveSession::ShownTexts() const {
    return m_screen.ShownTexts();
}

}  // namespace kivo
