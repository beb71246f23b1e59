#include "config/first_run_marker.h"

#include <QString>

#include "config/first_run_marker_platform.h"
#include "config/marker_file.h"
#include "config/portable_folder.h"

namespace kivo {
namespace {

QString MarkerFileIn(const QString& portableFolder) {
    return portableFolder + QStringLiteral("/Kivo Config.ini");
}

}  // namespace

bool IsFirstRun() {
    const QString portable = PortableFolder();
    return !(portable.isEmpty() ? IsUserMarked() : HasMark(MarkerFileIn(portable)));
}

qint32 MarkInitialized() {
    const QString portable = PortableFolder();
    return portable.isEmpty() ? MarkUser() : WriteMark(MarkerFileIn(portable));
}

const QByteArray& MarkerBytes() {
    static const QByteArray bytes("true", sizeof("true"));
    return bytes;
}

bool MeansInitialized(quint32 type, const QByteArray& bytes) {
    return type == kMarkerTextType && bytes == MarkerBytes();
}

}  // namespace kivo
