#include <QStandardPaths>

#include "config/portable_folder.h"
#include "session/log_file.h"

namespace kivo {

// Nobody sees the standard error of a program with windows.
QString LogFilePath() {
    const QString portable = PortableFolder();
    if (!portable.isEmpty()) {
        return portable + QStringLiteral("/log.txt");
    }
    const QString local = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    return local.isEmpty() ? QString() : local + QStringLiteral("/Kivo Tool/log.txt");
}

}  // namespace kivo
