#pragma once

// One running copy of the program for a user. Every copy asks Start before it builds a window; the first one
// goes on and polls for requests, every other one wakes the first and ends. The copies meet in one byte of
// shared memory, which is only touched while holding a system-wide semaphore. One object a process, made
// after the application object, used on one thread.

#include <QString>
#include <memory>

class QSharedMemory;

namespace kivo {

class SingleInstance {
public:
    SingleInstance();
    // Lets go of the memory: the next copy that starts is the first one again.
    ~SingleInstance();
    Q_DISABLE_COPY(SingleInstance)

    // True: this is the first copy. False: another one runs and has been asked to come to the front; this one
    // should end. What a killed copy left behind is cleared away. Where semaphore or memory cannot be had the
    // copy counts as a first one, for a program that does not start is worse than two; one log line tells.
    // Call once.
    bool Start();

    // Whether another copy has asked this one to come to the front since the last call. To be called once a
    // second by the first copy.
    bool TakeWakeUpRequest();

    // What the two are known by, here with what keeps users of one system apart.
    static QString SemaphoreName();
    static QString MemoryName();

private:
    bool AttachToRunningCopy();

    std::unique_ptr<QSharedMemory> m_memory;
    int m_pollsUntilTouch = 0;
};

}  // namespace kivo
