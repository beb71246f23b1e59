#include "session/single_instance.h"

#include <QCoreApplication>
#include <QLoggingCategory>
#include <QSharedMemory>
#include <QSystemSemaphore>
#include <QThread>

#include "session/single_instance_platform.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(instanceLog, "kivo.instance")

constexpr int kMemoryBytes = 1;
constexpr int kMostLeft = 3;
// The memory's key file is touched about once an hour.
constexpr int kPollsPerTouch = 3600;
// A start may wait for a copy that is slow. The running window must not: a whole poll has to stay under 50
// ms.
constexpr std::chrono::milliseconds kLongestStartWait{5000};
constexpr std::chrono::milliseconds kLongestWait{25};
constexpr unsigned long kLookForAnswerEveryMs = 50;

// Deliberate: never destroyed. Qt takes a semaphore away from the system with the object that made it, also
// from under a copy that holds it, which then goes on with a new one of the wrong count. What stays is one
// semaphore a user, until the system is restarted.
QSystemSemaphore& Semaphore() {
    static QSystemSemaphore* const semaphore =
        new QSystemSemaphore(SingleInstance::SemaphoreName(), 1, QSystemSemaphore::Open);
    return *semaphore;
}

// Holds the semaphore, if it can be had, until the scope is left, whichever way. Qt waits for a semaphore
// without a limit, and Windows does not release it for a copy that is killed: the guard around it mends both.
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

InstanceRequest& RequestByte(QSharedMemory& memory) {
    return *static_cast<InstanceRequest*>(memory.data());
}

// A higher request of another copy is left alone.
void Raise(InstanceRequest& byte, InstanceRequest request) {
    if (byte == InstanceRequest::Stays || byte < request) {
        byte = request;
    }
}

// The memory goes by the system's name for it: given Qt's own key it would guard itself with a second
// semaphore, which a copy killed at the wrong moment leaves locked.
std::unique_ptr<QSharedMemory> MakeMemory() {
    auto memory = std::make_unique<QSharedMemory>();
    memory->setNativeKey(QSharedMemory(SingleInstance::MemoryName()).nativeKey());
    return memory;
}

// On Unix the memory goes by the number of its key file, and a new file may get one whose memory a killed
// copy left behind. Whoever lets go of that as the last one takes it away. What detach() answers is no help:
// some versions of Qt answer false when they have taken a memory away.
void TakeAwayWhatIsLeft() {
    const std::unique_ptr<QSharedMemory> left = MakeMemory();
    left->attach(QSharedMemory::ReadWrite);
    left->detach();
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
    LetGo();
}

bool SingleInstance::Start(const std::function<InstanceRequest()>& request) {
    if (!MeetsRunningCopy(InstanceRequest::None)) {
        return true;
    }
    // Without the semaphore in hand: it may take a while.
    m_asked = request ? request() : InstanceRequest::ComeToFront;
    return !MeetsRunningCopy(m_asked);
}

// Becomes the first copy where none runs; else asks the one that does.
bool SingleInstance::MeetsRunningCopy(InstanceRequest request) {
    const SemaphoreHold hold(kLongestStartWait);
    if (!hold.IsHeld()) {
        qCWarning(instanceLog).noquote() << "Other copies of the program cannot be found:" << hold.Trouble();
        return false;
    }
    if (!AttachToRunningCopy()) {
        BecomeFirst(InstanceRequest::None);
        return false;
    }
    if (request != InstanceRequest::None) {
        LetRunningCopyComeToFront();
        Raise(RequestByte(*m_memory), request);
    }
    m_memory.reset();
    return true;
}

bool SingleInstance::AttachToRunningCopy() {
    m_memory = MakeMemory();
    if (!m_memory->attach(QSharedMemory::ReadWrite)) {
        return false;
    }
    // On Unix the memory of a killed copy stays until somebody who was attached lets go of it as the last
    // one. So whoever is still there after that belongs to a copy that runs.
    m_memory->detach();
    return m_memory->attach(QSharedMemory::ReadWrite);
}

void SingleInstance::BecomeFirst(InstanceRequest pending) {
    bool isMade = m_memory->create(kMemoryBytes, QSharedMemory::ReadWrite);
    for (int left = 0; left < kMostLeft && !isMade && m_memory->error() == QSharedMemory::AlreadyExists;
         ++left) {
        TakeAwayWhatIsLeft();
        m_memory = MakeMemory();  // with the key file that is there now
        isMade = m_memory->create(kMemoryBytes, QSharedMemory::ReadWrite);
    }
    if (isMade) {
        RequestByte(*m_memory) = pending;
        return;
    }
    qCWarning(instanceLog).noquote() << "Other copies of the program will not find this one:"
                                     << m_memory->errorString();
}

InstanceAnswer SingleInstance::AwaitAnswer(QDeadlineTimer deadline) {
    while (!m_hasLetGo) {
        if (const std::optional<InstanceAnswer> answer = LookForAnswer()) {
            return *answer;
        }
        if (deadline.hasExpired()) {
            break;
        }
        QThread::msleep(kLookForAnswerEveryMs);
        QCoreApplication::processEvents();
    }
    WithdrawGiveWay();
    return InstanceAnswer::None;
}

std::optional<InstanceAnswer> SingleInstance::LookForAnswer() {
    const SemaphoreHold hold(kLongestWait);
    if (!hold.IsHeld()) {
        return std::nullopt;
    }
    if (!AttachToRunningCopy()) {
        // Another start that waits as well goes by this request: it is answered by this copy.
        BecomeFirst(InstanceRequest::ComeToFront);
        return InstanceAnswer::TookPlace;
    }
    InstanceRequest& byte = RequestByte(*m_memory);
    std::optional<InstanceAnswer> answer;
    if (byte == InstanceRequest::None) {
        answer = InstanceAnswer::ComesToFront;
    } else if (byte == InstanceRequest::Stays) {
        // It stands there for every start that waits, until the running copy looks again.
        answer = m_asked == InstanceRequest::GiveWay ? InstanceAnswer::Stays : InstanceAnswer::ComesToFront;
    } else {
        Raise(byte, m_asked);
    }
    m_memory.reset();
    return answer;
}

// A copy that hung and goes on later must not end for a start that has long gone.
void SingleInstance::WithdrawGiveWay() {
    const SemaphoreHold hold(kLongestWait);
    if (m_asked != InstanceRequest::GiveWay || !hold.IsHeld() || !AttachToRunningCopy()) {
        return;
    }
    if (RequestByte(*m_memory) == InstanceRequest::GiveWay) {
        RequestByte(*m_memory) = InstanceRequest::ComeToFront;
    }
    m_memory.reset();
}

InstanceRequest SingleInstance::TakeWakeUpRequest(GivesWay givesWay) {
    // What this copy has not made, or has let go of, may be another copy's.
    if (!m_memory || !m_memory->isAttached()) {
        return InstanceRequest::None;
    }
    const SemaphoreHold hold(kLongestWait);
    if (!hold.IsHeld()) {
        return InstanceRequest::None;
    }
    const std::unique_ptr<QSharedMemory> memory = MakeMemory();
    if (--m_pollsUntilTouch < 0) {
        m_pollsUntilTouch = kPollsPerTouch;
        KeepKeyFile(memory->nativeKey());
    }
    if (!memory->attach(QSharedMemory::ReadWrite)) {
        return InstanceRequest::None;
    }
    InstanceRequest& byte = RequestByte(*memory);
    const InstanceRequest request = byte;
    if (request == InstanceRequest::GiveWay && givesWay == GivesWay::Yes) {
        // The request stays in the byte: whoever asked takes the place.
        m_memory.reset();
        return request;
    }
    byte = request == InstanceRequest::GiveWay && givesWay == GivesWay::NotNow ? InstanceRequest::Stays
                                                                               : InstanceRequest::None;
    const bool isRequest = request != InstanceRequest::None && request != InstanceRequest::Stays;
    return isRequest ? InstanceRequest::ComeToFront : InstanceRequest::None;
}

void SingleInstance::LetGo() {
    m_hasLetGo = true;
    if (m_memory) {
        // Where the semaphore cannot be had, a start that asks at this moment finds out when it looks next.
        const SemaphoreHold hold(kLongestWait);
        m_memory.reset();
    }
}

}  // namespace kivo
