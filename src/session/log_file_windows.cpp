#include <QStandardPaths>

#include "session/log_file.h"

namespace kivo {

// Nobody sees the standard error of a program with windows.
QString LogFilePath() {
    const QString local = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return local.isEmpty() ? QString() : local + QStringLiteral("/Kivo Tool/log.txt");
}

}  // namespace kivo
