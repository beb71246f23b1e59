#include "config/log_once.h"

#include <QMutex>
#include <QMutexLocker>
#include <QSet>
#include <QtDebug>

namespace kivo {

void WarnOnce(const QString& line) {
    static QMutex mutex;
    static QSet<QString> said;
    {
        const QMutexLocker locker(&mutex);
        if (said.contains(line)) {
            return;
        }
        said.insert(line);
    }
    qWarning().noquote() << line;
}

}  // namespace kivo
