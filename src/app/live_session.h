#pragma once

// The program without its window: opens the screen, shows a first frame and keeps its values live until it is
// stopped. Lives on the GUI thread and owns both workers.

#include <QObject>
#include <memory>

#include "compose/background_store.h"
#include "compose/live_screen.h"
#include "device/screen_session.h"
#include "device/transfers.h"
#include "telemetry/interface_language.h"
#include "telemetry/metric_snapshot.h"

namespace kivo {

class FrameUploadThread;
class HidApi;
class RefreshDataThread;

class LiveSession : public QObject {
    Q_OBJECT

public:
    // hid outlives the session. applicationDir holds the default files that a first run copies.
    LiveSession(HidApi& hid, InterfaceLanguage language, QString applicationDir, QObject* parent = nullptr);
    ~LiveSession() override;

    // Loads the settings, opens the screen, uploads a first frame and starts refreshing when that is done.
    void Start();

    // Asks both workers to end and waits for them, but not for ever: a screen that hangs holds a write up for
    // seconds. False when a worker is still in one; then neither this object nor what it was given may be
    // destroyed, and all that is left is to end the process. Start may not be called again.
    bool Stop();

    // What the panel took last, item by item; empty for what it does not show.
    ItemTexts ShownTexts() const;

Q_SIGNALS:
    void firstFrameDone(bool success);

private:
    void LoadState();
    void StartRefresh();

    const InterfaceLanguage m_language;
    const QString m_applicationDir;
    ScreenSession m_session;
    Transfers m_transfers;
    MetricSnapshot m_snapshot;
    BackgroundStore m_backgrounds;
    LiveScreen m_screen;
    bool m_stopped = false;
    std::unique_ptr<FrameUploadThread> m_upload;
    std::unique_ptr<RefreshDataThread> m_refresh;
};

}  // namespace kivo
