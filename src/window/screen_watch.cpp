#include "window/screen_watch.h"

#include <QLoggingCategory>
#include <utility>

#include "device/hotplug.h"
#include "panel/live_session.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(hotplugLog, "kivo.hotplug")

}  // namespace

ScreenWatch::ScreenWatch(LiveSession& session, const quint8& suspended, quint8& attached, Clock timeAsleep)
    : m_session(session), m_suspended(suspended), m_timeAsleep(std::move(timeAsleep)) {
    connect(&session, &LiveSession::screenChanged, this, [&attached](bool closed) {
        if (closed) {
            attached = 0;
        }
    });
}

ScreenWatch::~ScreenWatch() = default;

void ScreenWatch::Register(std::unique_ptr<Hotplug> hotplug, const std::function<quintptr()>& nativeWindow) {
    m_hotplug = std::move(hotplug);
    const bool registered = m_hotplug->Register(
        nativeWindow,
        [this](const DeviceChange& change) {
            if (change.arrived) {
                HandleArrival(change.name);
            } else {
                HandleRemoval(change.name);
            }
        },
        [this] { m_session.NoteArrival(); });
    if (!registered) {
        qCDebug(hotplugLog, "注册失败");
    }
}

// An empty name: what came is no interface.
void ScreenWatch::HandleArrival(const QString& name) {
    qCDebug(hotplugLog, "DBT_DEVICEARRIVAL\n");
    if (!name.isEmpty()) {
        HandleScreenChange(name, true);
        qCDebug(hotplugLog, "%s", name.toLocal8Bit().constData());
    }
}

void ScreenWatch::HandleRemoval(const QString& name) {
    if (!name.isEmpty()) {
        HandleScreenChange(name, false);
    }
    qCDebug(hotplugLog, "DBT_DEVICEREMOVECOMPLETE\n");
}

void ScreenWatch::HandleScreenChange(const QString& name, bool arrived) {
    const ArrivalPath pathFrom = m_hotplug ? m_hotplug->PathOfArrival() : ArrivalPath::Enumeration;
    m_session.HandleScreenChange({name, arrived}, m_suspended != 0, pathFrom);
}

void ScreenWatch::LookForWakeUp() {
    if (m_sleepWatch.HasSlept(m_timeAsleep())) {
        m_session.NoteArrival();
        Q_EMIT wokeUp();
    }
}

}  // namespace kivo
