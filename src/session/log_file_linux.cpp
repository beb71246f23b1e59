#include "session/log_file.h"
#include "session/runtime_folder_linux.h"

namespace kivo {

// Standard error goes into the journal of the desktop's session, or stands before whoever typed the command;
// a report that another process writes could have it from neither.
QString LogFilePath() {
    const QString folder = RuntimeFolderPath();
    QString trouble;
    return OpenOwnFolder(folder, trouble) ? folder + QStringLiteral("/kivo-screen.log") : QString();
}

}  // namespace kivo
