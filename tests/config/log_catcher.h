#pragma once

#include <QStringList>
#include <QtGlobal>

namespace kivo::test {

// Collects what is logged while it lives, instead of printing it. One at a time.
class LogCatcher {
public:
    LogCatcher() {
        Lines().clear();
        m_former = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { Lines().append(line); });
    }
    ~LogCatcher() { qInstallMessageHandler(m_former); }
    Q_DISABLE_COPY(LogCatcher)

    const QStringList& lines() const { return Lines(); }

private:
    static QStringList& Lines() {
        static QStringList lines;
        return lines;
    }

    QtMessageHandler m_former = nullptr;
};

}  // namespace kivo::test
