#pragma once

// Copies of the program as processes of their own (instance_copy.cpp), told what to do line by line.

#include <QProcess>
#include <QtGlobal>

#include "support/built_paths.h"
#include "support/process_end.h"

namespace kivo::test {

class Copy {
public:
    Copy() {
        m_process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
        m_process.start(TestHelper("instance_copy"), QStringList());
    }
    ~Copy() {
        m_process.kill();
        m_process.waitForFinished(kAnswerMs);
    }
    Q_DISABLE_COPY(Copy)

    void Tell(const char* what) { m_process.write(QByteArray(what) + '\n'); }
    QByteArray Answer() {
        while (!m_process.canReadLine()) {
            if (!m_process.waitForReadyRead(kAnswerMs)) {
                return "no answer";
            }
        }
        return m_process.readLine().trimmed();
    }
    // Looks for a moment only.
    bool HasAnswer() { return m_process.canReadLine() || m_process.waitForReadyRead(kGlanceMs); }
    QByteArray Ask(const char* what) {
        Tell(what);
        return Answer();
    }
    // By itself, as a process that was not killed; its exit code, or -1.
    int End() {
        m_process.closeWriteChannel();
        return ExitCode(m_process, kAnswerMs);
    }
    bool Kill() {
        m_process.kill();
        return m_process.waitForFinished(kAnswerMs);
    }
    bool WaitStarted() { return m_process.waitForStarted(kAnswerMs); }

private:
    static constexpr int kAnswerMs = 60000;
    static constexpr int kGlanceMs = 10;

    QProcess m_process;
};

}  // namespace kivo::test
