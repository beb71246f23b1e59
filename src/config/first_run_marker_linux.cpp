#include <QStandardPaths>

#include "config/first_run_marker_platform.h"
#include "config/marker_file.h"

namespace kivo {
namespace {

QString MarkerFilePath() {
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/Kivo Tool/Kivo Config.ini");
}

}  // namespace

bool IsUserMarked() {
    return HasMark(MarkerFilePath());
}

qint32 MarkUser() {
    return WriteMark(MarkerFilePath());
}

}  // namespace kivo
