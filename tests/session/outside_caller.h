#pragma once

// A second start as far as the running copy can tell: calls on a thread of its own, for it waits.

#include <QThread>
#include <QtTest>
#include <memory>

#include "session/outside_channel.h"
#include "session/outside_commands.h"

namespace kivo::test {

inline OutsideCommands Asked(OutsideKind kind, const char* value = "") {
    OutsideCommands commands;
    commands[size_t(kind)] = QString::fromUtf8(value);
    return commands;
}

inline bool IsWholeMessage(const QByteArray& bytes) {
    return LookAtOutsideMessage(bytes).state != OutsideMessage::State::Partial;
}

class OutsideCaller {
public:
    explicit OutsideCaller(const QByteArray& bytes, int longestMs = 30000)
        : m_thread(QThread::create([this, bytes, longestMs] {
              m_reply = CallChannel(bytes, IsWholeMessage, QDeadlineTimer(longestMs));
          })) {
        m_thread->start();
    }
    explicit OutsideCaller(const OutsideCommands& commands) : OutsideCaller(OutsideRequest(commands)) {}
    ~OutsideCaller() { m_thread->wait(); }
    Q_DISABLE_COPY(OutsideCaller)

    bool IsOver() const { return m_thread->isFinished(); }
    // Once it is over.
    ChannelReply::State State() const { return m_reply.state; }
    std::optional<OutsideAnswer> Answer() const {
        return ReadOutsideAnswer(LookAtOutsideMessage(m_reply.bytes).body);
    }

private:
    ChannelReply m_reply;
    const std::unique_ptr<QThread> m_thread;
};

// A folder for the channel that no other program has. One at a time.
class OutsideFolder {
public:
    OutsideFolder() {
        qputenv("XDG_RUNTIME_DIR", QFile::encodeName(m_folder.path()));
        qputenv("TMPDIR", QFile::encodeName(m_folder.path()));
    }
    ~OutsideFolder() {
        qputenv("XDG_RUNTIME_DIR", m_formerRuntime);
        qputenv("TMPDIR", m_formerTemporary);
    }
    Q_DISABLE_COPY(OutsideFolder)
    bool IsValid() const { return m_folder.isValid(); }
    QString Path(const char* name) const { return m_folder.filePath(QString::fromLatin1(name)); }

private:
    const QByteArray m_formerRuntime = qgetenv("XDG_RUNTIME_DIR");
    const QByteArray m_formerTemporary = qgetenv("TMPDIR");
    const QTemporaryDir m_folder;
};

}  // namespace kivo::test
