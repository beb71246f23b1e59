#pragma once

#include <atomic>

namespace kivo {

// The end of a worker's run, marked by its last statement and looked at after QThread::wait. The wait already
// orders the two; the mark makes that order visible to the thread sanitizer, for which Qt's own locks are
// opaque.
class ThreadEnd {
public:
    void Mark() { m_ended.store(true, std::memory_order_release); }
    bool IsMarked() const { return m_ended.load(std::memory_order_acquire); }

private:
    std::atomic<bool> m_ended{false};
};

// Marks the end when a scope is left, whichever way.
class ThreadEndMarker {
public:
    explicit ThreadEndMarker(ThreadEnd& end) : m_end(end) {}
    ~ThreadEndMarker() { m_end.Mark(); }
    ThreadEndMarker(const ThreadEndMarker&) = delete;
    ThreadEndMarker& operator=(const ThreadEndMarker&) = delete;

private:
    ThreadEnd& m_end;
};

}  // namespace kivo
