#pragma once

// A second start hands what it was told on the command line to the running copy.

#include <QDeadlineTimer>
#include <QString>

#include "session/outside_commands.h"
#include "session/single_instance.h"

namespace kivo {

struct HandOver {
    enum class Outcome {
        IsFirst,  // no copy runs: this one has become the first and does it itself
        Taken,
        NotTaken,
    } outcome = Outcome::IsFirst;
    QString line;  // NotTaken: why, as one sentence
};

// Waits until the deadline at most. No window and no display are needed.
HandOver HandOverCommands(SingleInstance& instance, const OutsideCommands& commands,
                          QDeadlineTimer deadline = QDeadlineTimer(SingleInstance::kLongestAnswer));

}  // namespace kivo
