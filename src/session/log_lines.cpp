#include "session/log_lines.h"

#include <QRegularExpression>
#include <atomic>
#include <memory>

#include "session/log_file.h"

namespace kivo {

namespace {

// What the message handler, a plain function, writes to.
struct Log {
    LogRing ring;
    std::mutex mutex;  // of the file
    std::unique_ptr<LogFile> file;
    QtMessageHandler former = nullptr;
    std::atomic<bool> keepsDebug{false};
};

// Never destroyed: threads may log while the process ends.
Log& TheLog() {
    static Log* const log = new Log;
    return *log;
}

void HandleMessage(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const QStringList lines = LinesOfMessage(message);
    for (const QString& line : lines) {
        if (type != QtDebugMsg || TheLog().keepsDebug) {
            KeepLogLine(qFormatLogMessage(type, context, line));
        }
        if (TheLog().former != nullptr) {
            TheLog().former(type, context, line);
        }
    }
}

}  // namespace

QStringList LinesOfMessage(const QString& message) {
    // Never destroyed, as the log itself.
    static const QRegularExpression& ends =
        *new QRegularExpression(QStringLiteral("[\\r\\n\\x{2028}\\x{2029}]+"));
    QStringList lines;
    const QStringList parts = message.split(ends, Qt::SkipEmptyParts);
    for (const QString& part : parts) {
        QString line = part;
        while (!line.isEmpty() && (line.back().isSpace() || line.back().isNull())) {
            line.chop(1);
        }
        if (!line.isEmpty()) {
            lines.append(line);
        }
    }
    return lines;
}

QString StampedLine(const QDateTime& at, const QString& line) {
    return at.toString(QStringLiteral("yyyy-MM-dd HH:mm:ss.zzz ")) + line;
}

void LogRing::Add(const QString& stampedLine) {
    const std::lock_guard lock(m_mutex);
    m_lines.append(stampedLine);
    if (m_lines.size() > kKept) {
        m_lines.removeFirst();
    }
}

QStringList LogRing::Lines() const {
    const std::lock_guard lock(m_mutex);
    return m_lines;
}

void StartLog(const QString& file) {
    Log& log = TheLog();
    {
        const std::lock_guard lock(log.mutex);
        const bool isFirst = log.file == nullptr;
        log.file = file.isEmpty() ? nullptr : std::make_unique<LogFile>(file);
        const QStringList before = isFirst && log.file ? log.ring.Lines() : QStringList();
        for (const QString& line : before) {
            log.file->Append(line);
        }
    }
    log.keepsDebug = !qEnvironmentVariableIsEmpty("QT_LOGGING_RULES");
    const QtMessageHandler former = qInstallMessageHandler(HandleMessage);
    if (former != HandleMessage) {
        log.former = former;
    }
}

void KeepLogLine(const QString& line) {
    Log& log = TheLog();
    const QString stamped = StampedLine(QDateTime::currentDateTime(), line);
    log.ring.Add(stamped);
    // What Qt says while the file is written is not written to it.
    thread_local bool isWriting = false;
    if (isWriting) {
        return;
    }
    isWriting = true;
    {
        const std::lock_guard lock(log.mutex);
        if (log.file) {
            log.file->Append(stamped);
        }
    }
    isWriting = false;
}

QStringList KeptLogLines() {
    return TheLog().ring.Lines();
}

}  // namespace kivo
