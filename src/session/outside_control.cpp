#include "session/outside_control.h"

#include <QLoggingCategory>
#include <QPointer>
#include <algorithm>
#include <chrono>
#include <utility>

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(outsideLog, "kivo.outside")

constexpr std::chrono::seconds kTryAgainAfter{1};

}  // namespace

OutsideControl::OutsideControl(QObject* parent) : QObject(parent) {
    m_tryAgain.setSingleShot(true);
    connect(&m_tryAgain, &QTimer::timeout, this, &OutsideControl::Listen);
}

OutsideControl::~OutsideControl() {
    Close();
}

void OutsideControl::Open(Take take) {
    m_take = std::move(take);
    Listen();
}

void OutsideControl::Close() {
    m_tryAgain.stop();
    m_listener.reset();
    m_callers.clear();
}

void OutsideControl::Listen() {
    QString trouble;
    m_listener = ChannelListener::Listen(
        [this](std::unique_ptr<ChannelPeer> peer) { Welcome(std::move(peer)); }, trouble);
    if (m_listener) {
        return;
    }
    if (std::exchange(m_trouble, trouble) != trouble) {
        qCInfo(outsideLog).noquote() << "Other starts cannot hand their arguments over yet:" << trouble;
    }
    m_tryAgain.start(kTryAgainAfter);
}

void OutsideControl::Welcome(std::unique_ptr<ChannelPeer> peer) {
    if (CallerCount() >= kMostCallers) {
        const auto idle = std::find_if(m_callers.begin(), m_callers.end(), [](const auto& caller) {
            return caller.second.phase != Phase::Waits;
        });
        if (idle == m_callers.end()) {
            return;
        }
        m_callers.erase(idle);
    }
    const quint64 number = ++m_lastNumber;
    Caller& caller = m_callers[number];
    caller.peer = std::move(peer);
    caller.peer->Start([this, number](const QByteArray& bytes) { Read(number, bytes); },
                       [this, number] { Dismiss(number); });
}

// Called by the peer: what may take it away comes with the next event.
void OutsideControl::Read(quint64 number, const QByteArray& bytes) {
    Caller& caller = m_callers[number];
    if (caller.phase != Phase::Asks) {
        Dismiss(number);
        return;
    }
    caller.bytes += bytes;
    const OutsideMessage::State state = LookAtOutsideMessage(caller.bytes).state;
    if (state == OutsideMessage::State::Garbage) {
        Dismiss(number);
    } else if (state == OutsideMessage::State::Whole) {
        caller.phase = Phase::Waits;
        QMetaObject::invokeMethod(
            this, [this, number] { Ask(number); }, Qt::QueuedConnection);
    }
}

void OutsideControl::Ask(quint64 number) {
    if (!IsAwaited(number)) {
        return;
    }
    const std::optional<OutsideCommands> commands =
        ReadOutsideRequest(LookAtOutsideMessage(m_callers[number].bytes).body);
    if (!commands) {
        Answer(number, {false, QStringLiteral("The running copy does not understand this request.")});
        return;
    }
    const QPointer<OutsideControl> control(this);
    m_take(*commands, {[control, number] { return control && control->IsAwaited(number); },
                       [control, number](const OutsideAnswer& answer) {
                           if (control) {
                               control->Answer(number, answer);
                           }
                       }});
}

void OutsideControl::Dismiss(quint64 number) {
    QMetaObject::invokeMethod(
        this, [this, number] { m_callers.erase(number); }, Qt::QueuedConnection);
}

bool OutsideControl::IsAwaited(quint64 number) {
    const auto found = m_callers.find(number);
    return found != m_callers.end() && found->second.peer->IsThere();
}

// The caller lets go once it has read it.
void OutsideControl::Answer(quint64 number, const OutsideAnswer& answer) {
    const auto found = m_callers.find(number);
    if (found == m_callers.end()) {
        return;
    }
    found->second.phase = Phase::IsAnswered;
    if (!found->second.peer->Send(OutsideAnswerMessage(answer))) {
        Dismiss(number);
    }
}

}  // namespace kivo
