#pragma once

// The way from a second start to the running copy, as each system has it: a socket in the user's own runtime
// folder (Linux), a pipe that is the user's alone (Windows). Bytes go through it; what they mean stands in
// outside_commands.h. Nobody but the same user gets through, and neither side follows a link.

#include <QByteArray>
#include <QDeadlineTimer>
#include <QString>
#include <functional>
#include <memory>

namespace kivo {

// One caller, on the side of the running copy. Everything happens on the thread, and with the event loop, on
// which the listener was made; no call waits. Destroying it ends the connection.
class ChannelPeer {
public:
    virtual ~ChannelPeer() = default;

    // Begins to listen to the caller. received gets what has arrived, gone is called once when the caller has
    // let go or broken off. The peer must not be destroyed inside of either.
    virtual void Start(std::function<void(const QByteArray& bytes)> received, std::function<void()> gone) = 0;
    // Whether the caller still waits, as far as the system knows at this moment.
    virtual bool IsThere() = 0;
    // A message of a few hundred bytes at most; false where it was not taken as a whole.
    virtual bool Send(const QByteArray& bytes) = 0;
};

class ChannelListener {
public:
    using Arrived = std::function<void(std::unique_ptr<ChannelPeer> peer)>;

    virtual ~ChannelListener() = default;

    // Null where the channel cannot be had, with the reason in trouble: another copy has it, or its place is
    // not the user's own. What a copy that was killed left behind is cleared away.
    static std::unique_ptr<ChannelListener> Listen(Arrived arrived, QString& trouble);
};

// The side of the second start. Waits.
struct ChannelReply {
    enum class State {
        Nobody,   // no copy listens
        Silent,   // the deadline has passed, or the copy broke off
        Answered  // with this
    } state = State::Nobody;
    QByteArray bytes;
};
// Sends the bytes and reads what comes back until isWhole says that this is all.
ChannelReply CallChannel(const QByteArray& bytes, const std::function<bool(const QByteArray&)>& isWhole,
                         QDeadlineTimer deadline);

}  // namespace kivo
