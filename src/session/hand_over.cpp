#include "session/hand_over.h"

#include <QThread>

#include "session/outside_channel.h"
#include "session/single_instance_platform.h"

namespace kivo {

namespace {

constexpr unsigned long kTryEveryMs = 50;

HandOver NotTaken(const QString& line) {
    return {HandOver::Outcome::NotTaken, line};
}

}  // namespace

HandOver HandOverCommands(SingleInstance& instance, const OutsideCommands& commands,
                          QDeadlineTimer deadline) {
    const auto isWhole = [](const QByteArray& bytes) {
        return LookAtOutsideMessage(bytes).state != OutsideMessage::State::Partial;
    };
    // A copy that just starts, or ends, has no channel: whichever it is shows in a moment.
    while (!instance.BecomeFirstWhereNoneRuns()) {
        if (ValueOf(commands, OutsideKind::Show)) {
            LetRunningCopyComeToFront();
        }
        const ChannelReply reply = CallChannel(OutsideRequest(commands), isWhole, deadline);
        if (reply.state == ChannelReply::State::Answered) {
            const std::optional<OutsideAnswer> answer =
                ReadOutsideAnswer(LookAtOutsideMessage(reply.bytes).body);
            if (!answer) {
                return NotTaken(QStringLiteral("The running copy answers in another way than this one."));
            }
            return answer->isTaken ? HandOver{HandOver::Outcome::Taken, {}} : NotTaken(answer->line);
        }
        if (deadline.hasExpired()) {
            return NotTaken(QStringLiteral("Already running, but that copy does not answer."));
        }
        QThread::msleep(kTryEveryMs);
    }
    return {};
}

}  // namespace kivo
