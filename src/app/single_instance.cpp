#include "app/single_instance.h"

#include <QLoggingCategory>
#include <QSharedMemory>
#include <QSystemSemaphore>

#include "app/single_instance_platform.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(instanceLog, "kivo.instance")

constexpr int kMemoryBytes = 1;
// The memory's key file is touched about once an hour.
constexpr int kPollsPerTouch = 3600;
// A start may wait for a copy that is slow; the running window must not.
constexpr std::chrono::milliseconds kLongestStartWait{5000};
constexpr std::chrono::milliseconds kLongestWait{50};

// Deliberate: never destroyed. Qt takes a semaphore away from the system with the object that made it, also
// from under a copy that holds it, which then goes on with a new one of the wrong count. What stays is one
// semaphore a user, until the system is restarted.
QSystemSemaphore& Semaphore() {
    static QSystemSemaphore* const semaphore =
        new QSystemSemaphore(SingleInstance::SemaphoreName(), 1, QSystemSemaphore::Open);
    return *semaphore;
}

// Holds the semaphore, if it can be had, until the scope is left, whichever way. Unix releases it for a copy
// that is killed; Windows does not, so there is a guard around it that tells of such a copy.
class SemaphoreHold {
public:
    explicit SemaphoreHold(std::chrono::milliseconds longest) : m_guard(TakeInstanceGuard(longest)) {
        if (m_guard == InstanceGuard::Refused) {
            return;
        }
        if (m_guard == InstanceGuard::Abandoned) {
            // Perhaps it had not come to the semaphore; once too often does no harm inside the guard.
            Semaphore().release();
        }
        m_held = Semaphore().acquire();
    }
    ~SemaphoreHold() {
        if (m_held) {
            Semaphore().release();
        }
        if (m_guard != InstanceGuard::Refused) {
            ReleaseInstanceGuard();
        }
    }
    Q_DISABLE_COPY(SemaphoreHold)
    bool IsHeld() const { return m_held; }
    QString Trouble() const {
        return m_guard == InstanceGuard::Refused ? QStringLiteral("another copy keeps them locked")
                                                 : Semaphore().errorString();
    }

private:
    const InstanceGuard m_guard;
    bool m_held = false;
};

quint8& RequestByte(QSharedMemory& memory) {
    return *static_cast<quint8*>(memory.data());
}

// The memory goes by the system's name for it: given Qt's own key it would guard itself with a second
// semaphore, which a copy killed at the wrong moment leaves locked.
std::unique_ptr<QSharedMemory> MakeMemory() {
    auto memory = std::make_unique<QSharedMemory>();
    memory->setNativeKey(QSharedMemory(SingleInstance::MemoryName()).nativeKey());
    return memory;
}

}  // namespace

QString SingleInstance::SemaphoreName() {
    return QStringLiteral("Kivo Screen Setting Semaphore") + InstanceNameSuffix();
}

QString SingleInstance::MemoryName() {
    return QStringLiteral("Kivo Screen Setting Memory") + InstanceNameSuffix();
}

SingleInstance::SingleInstance() = default;

SingleInstance::~SingleInstance() {
    if (m_memory && m_memory->isAttached()) {
        const SemaphoreHold hold(kLongestWait);
        m_memory->detach();
    }
}

bool SingleInstance::Start() {
    const SemaphoreHold hold(kLongestStartWait);
    if (!hold.IsHeld()) {
        qCWarning(instanceLog).noquote() << "Other copies of the program cannot be found:" << hold.Trouble();
        return true;
    }
    m_memory = MakeMemory();
    if (AttachToRunningCopy()) {
        LetRunningCopyComeToFront();
        RequestByte(*m_memory) = 1;
        m_memory->detach();
        return false;
    }
    if (m_memory->create(kMemoryBytes, QSharedMemory::ReadWrite)) {
        RequestByte(*m_memory) = 0;
        return true;
    }
    qCWarning(instanceLog).noquote() << "Other copies of the program will not find this one:"
                                     << m_memory->errorString();
    return true;
}

bool SingleInstance::AttachToRunningCopy() {
    if (!m_memory->attach(QSharedMemory::ReadWrite)) {
        return false;
    }
    // On Unix the memory of a killed copy stays until somebody who was attached lets go of it as the last
    // one. So whoever is still there after that belongs to a copy that runs.
    m_memory->detach();
    return m_memory->attach(QSharedMemory::ReadWrite);
}

bool SingleInstance::TakeWakeUpRequest() {
    const SemaphoreHold hold(kLongestWait);
    if (!hold.IsHeld()) {
        return false;
    }
    const std::unique_ptr<QSharedMemory> memory = MakeMemory();
    if (--m_pollsUntilTouch < 0) {
        m_pollsUntilTouch = kPollsPerTouch;
        KeepKeyFile(memory->nativeKey());
    }
    if (!memory->attach(QSharedMemory::ReadWrite)) {
        return false;
    }
    const bool requested = RequestByte(*memory) != 0;
    RequestByte(*memory) = 0;
    memory->detach();
    return requested;
}

}  // namespace kivo
