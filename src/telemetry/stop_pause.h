#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>

namespace kivo {

// Pauses of a worker that end early when it is asked to stop.
class StopPause {
public:
    // isStop is the worker's flag and lives as long as this object.
    explicit StopPause(std::atomic<unsigned char>& isStop) : m_isStop(isStop) {}

    // Sets the flag and ends the pause that is under way. Any thread.
    void Stop() {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_isStop = 1;
        }
        m_stopped.notify_all();
    }

    // On the worker: comes back after that time, or at once where it is to stop.
    void Sleep(std::chrono::milliseconds time) {
        std::unique_lock<std::mutex> lock(m_mutex);
        m_stopped.wait_for(lock, time, [this] { return m_isStop != 0; });
    }

private:
    std::atomic<unsigned char>& m_isStop;
    std::mutex m_mutex;
    std::condition_variable m_stopped;
};

}  // namespace kivo
