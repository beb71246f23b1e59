#pragma once

// A queue of jobs with a thread of its own, for what may wait for a screen that hangs as long as a write to
// it does: opening, closing and listing devices, or darkening the screen. Jobs run one after the other, in
// the order in which they were handed over.

#include <QThread>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <functional>
#include <mutex>

#include "telemetry/thread_end.h"

namespace kivo {

class DeviceQueue final : public QThread {
public:
    DeviceQueue() = default;
    // Stops the thread and waits for it.
    ~DeviceQueue() override;

    // Has the job done; the first one starts the thread. Nothing after Stop. The thread's owner only.
    void Do(std::function<void()> job);

    // Waits until nothing is left to do, or for so long. Any thread but this one.
    bool AwaitIdle(std::chrono::milliseconds longest);

    // Asks the thread to end after the job it is at; those that wait are dropped. Any thread.
    void Stop();

protected:
    void run() override;

private:
    std::mutex m_mutex;
    std::condition_variable m_changed;
    std::deque<std::function<void()>> m_jobs;
    bool m_isBusy = false;
    bool m_isStopped = false;
    ThreadEnd m_end;
};

}  // namespace kivo
