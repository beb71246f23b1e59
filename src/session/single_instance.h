#pragma once

// One running copy of the program for a user. Every copy asks Start before it builds a window. The first copy
// goes on and polls for requests; every other one asks the first for its window and waits for the answer. The
// copies meet in one byte of shared memory, which is only touched while holding a system-wide semaphore. One
// object a process, used on one thread.

#include <QDeadlineTimer>
#include <QString>
#include <chrono>
#include <functional>
#include <memory>
#include <optional>

class QSharedMemory;

namespace kivo {

// The request byte of the shared memory. A higher request outranks a lower one.
enum class InstanceRequest : quint8 {
    None = 0,
    ComeToFront = 1,
    // Come to the front, or end, if what stands there is a software panel: the screen waits for a copy.
    GiveWay = 2,
    // The answer to GiveWay, no request: the copy came to the front and goes on with its software panel.
    Stays = 3,
};

// Whether the running copy ends for one that uses the screen.
enum class GivesWay {
    Never,   // it uses the screen itself
    NotNow,  // something in its window would be lost
    Yes,
};

enum class InstanceAnswer {
    ComesToFront,
    Stays,      // it came to the front, but goes on with its software panel
    None,       // it does not answer
    TookPlace,  // it has ended: the asking copy is the first one now
};

class SingleInstance {
public:
    // How long a copy waits for an answer; the other one looks once a second.
    static constexpr std::chrono::milliseconds kLongestAnswer{5000};

    SingleInstance();
    // As LetGo.
    ~SingleInstance();
    Q_DISABLE_COPY(SingleInstance)

    // True: this is the first copy. False: another one runs and has been asked; AwaitAnswer tells what comes
    // of it. request is called only when another copy runs: what to ask it for (default: to come to the
    // front). What a killed copy left behind is cleared away. Where semaphore or memory cannot be had the
    // copy counts as a first one, for a program that does not start is worse than two; one log line tells.
    // Call once.
    bool Start(const std::function<InstanceRequest()>& request = {});

    // The same without asking the other copy for anything; may be called again and again. True: this is the
    // first copy, and Start is not to be called any more.
    bool BecomeFirstWhereNoneRuns() { return !MeetsRunningCopy(InstanceRequest::None); }

    // After a Start that was not the first: waits until the other copy has answered or ended, however it
    // ends. A copy that took its place has a request of its own to come to the front. Handles events
    // meanwhile; LetGo ends the waiting (None). A request without an answer does not make the other copy give
    // way later on.
    InstanceAnswer AwaitAnswer(QDeadlineTimer deadline = QDeadlineTimer(kLongestAnswer));

    // What another copy has asked this one for since the last call: None, ComeToFront or GiveWay. To be
    // called once a second by the first copy; never waits long. After GiveWay, which only GivesWay::Yes
    // brings, this copy has let go and must end.
    InstanceRequest TakeWakeUpRequest(GivesWay givesWay = GivesWay::Never);

    // The end of this copy begins: from now on the next one that starts is the first. What it was asked for
    // meanwhile is left to whoever asked.
    void LetGo();

    // What the two are known by, here with what keeps users of one system apart.
    static QString SemaphoreName();
    static QString MemoryName();

private:
    bool MeetsRunningCopy(InstanceRequest request);
    bool AttachToRunningCopy();
    void BecomeFirst(InstanceRequest pending);
    std::optional<InstanceAnswer> LookForAnswer();
    void WithdrawGiveWay();

    std::unique_ptr<QSharedMemory> m_memory;  // attached while this is the first copy
    InstanceRequest m_asked = InstanceRequest::None;
    bool m_hasLetGo = false;
    int m_pollsUntilTouch = 0;
};

}  // namespace kivo
