#pragma once

#include <QProcess>

namespace kivo::test {

// Whether the process has ended, or does so in time. waitForFinished() answers false for one whose end the
// event loop has seen before.
inline bool HasEnded(QProcess& process, int longestMs) {
    return process.state() == QProcess::NotRunning ? process.error() != QProcess::FailedToStart
                                                   : process.waitForFinished(longestMs);
}

// The exit code of a process that ends by itself and in time, or -1. Half a minute is QProcess's own
// patience.
inline int ExitCode(QProcess& process, int longestMs = 30000) {
    return HasEnded(process, longestMs) && process.exitStatus() == QProcess::NormalExit ? process.exitCode()
                                                                                        : -1;
}

}  // namespace kivo::test
