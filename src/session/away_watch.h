#pragma once

// The seam to whoever knows that the person is away: the system (away_watch_linux.cpp,
// away_watch_windows.cpp) or a test. GUI thread.

#include <QObject>
#include <chrono>
#include <memory>

namespace kivo {

class AwayWatch : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    // Whether the system is to wait for LetSleep before it sleeps, as long as it allows. Not at first.
    virtual void HoldSleep(bool hold) = 0;

    // What was to be done before the sleep is done. Nothing where the system does not wait.
    virtual void LetSleep() = 0;

    // The system sleeps as soon as the receivers of `sleeping` return, so they may take so long; zero where
    // it waits for LetSleep, and receivers return at once.
    virtual std::chrono::milliseconds LongestInSleeping() const = 0;

Q_SIGNALS:
    void lockedChanged(bool isLocked);
    void saverChanged(bool isOn);
    // About to sleep.
    void sleeping();
    void awake();
};

// The one of the system this is built for. What the system does not tell of is never signalled.
std::unique_ptr<AwayWatch> MakeSystemAwayWatch();

}  // namespace kivo
