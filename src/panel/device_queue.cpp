#include "panel/device_queue.h"

#include <utility>

namespace kivo {

DeviceQueue::~DeviceQueue() {
    Stop();
    wait();
    static_cast<void>(m_end.IsMarked());
}

void DeviceQueue::Do(std::function<void()> job) {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (m_isStopped) {
            return;
        }
        m_jobs.push_back(std::move(job));
    }
    m_changed.notify_all();
    if (!isRunning()) {
        start(QThread::InheritPriority);
    }
}

bool DeviceQueue::AwaitIdle(std::chrono::milliseconds longest) {
    std::unique_lock<std::mutex> lock(m_mutex);
    return m_changed.wait_for(lock, longest, [this] { return m_jobs.empty() && !m_isBusy; });
}

void DeviceQueue::Stop() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_isStopped = true;
        m_jobs.clear();
    }
    m_changed.notify_all();
}

void DeviceQueue::run() {
    const ThreadEndMarker marker(m_end);
    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_isStopped || !m_jobs.empty(); });
        if (m_isStopped) {
            return;
        }
        const std::function<void()> job = std::move(m_jobs.front());
        m_jobs.pop_front();
        m_isBusy = true;
        lock.unlock();
        job();
        lock.lock();
        m_isBusy = false;
        m_changed.notify_all();
    }
}

}  // namespace kivo
