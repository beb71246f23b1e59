#pragma once

// The window's side of screens that are plugged in and pulled out, and of a system that slept: what the
// hot-plug tells becomes a change that the session handles. GUI thread.

#include <QObject>
#include <chrono>
#include <functional>
#include <memory>

#include "telemetry/sleep_watch.h"

namespace kivo {

class Hotplug;
class LiveSession;

class ScreenWatch : public QObject {
    Q_OBJECT

public:
    using Clock = std::function<std::chrono::nanoseconds()>;

    // The two bytes are hotplugSuspended and screenAttached of the window: while suspended is not 0, nothing
    // is opened or closed; attached is set to 0 when the screen goes. The session and the bytes outlive it.
    // timeAsleep: see UntoldTimeAsleep.
    ScreenWatch(LiveSession& session, const quint8& suspended, quint8& attached, Clock timeAsleep);
    ~ScreenWatch() override;

    // Once. Listens to hotplug until its own end; a refusal is logged. nativeWindow: see Hotplug::Register.
    void Register(std::unique_ptr<Hotplug> hotplug, const std::function<quintptr()>& nativeWindow);

    // See LiveSession::HandleScreenChange.
    void HandleScreenChange(const QString& name, bool arrived);

    // To be called every now and then: a sleep between two calls counts as an arrival.
    void LookForWakeUp();

Q_SIGNALS:
    // The system has slept.
    void wokeUp();

private:
    void HandleArrival(const QString& name);
    void HandleRemoval(const QString& name);

    LiveSession& m_session;
    const quint8& m_suspended;
    const Clock m_timeAsleep;
    SleepWatch m_sleepWatch;
    std::unique_ptr<Hotplug> m_hotplug;
};

}  // namespace kivo
