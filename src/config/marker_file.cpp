#include "config/marker_file.h"

#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QSettings>

#include "config/first_run_marker.h"
#include "config/replace_file.h"

namespace kivo {
namespace {

// The codes Windows gives for the same troubles.
constexpr qint32 kSuccess = 0;
constexpr qint32 kPathNotFound = 3;
constexpr qint32 kAccessDenied = 5;

// The data as the registry would hold it: a text carries its closing zero.
QByteArray AsRegistryText(const QString& text) {
    return text.toUtf8() + '\0';
}

}  // namespace

bool HasMark(const QString& path) {
    const QSettings file(path, QSettings::IniFormat);
    const QVariant value = file.value(QStringLiteral("isInitialized"));
    const bool isText = value.userType() == QMetaType::QString;
    return MeansInitialized(isText ? kMarkerTextType : 0, AsRegistryText(value.toString()));
}

qint32 WriteMark(const QString& path) {
    if (!QDir().mkpath(QFileInfo(path).path())) {
        return kPathNotFound;
    }
    // Not by QSettings: it would remember a mark that it failed to write, and HasMark would believe it.
    QBuffer content;
    content.setData(QByteArrayLiteral("[General]\nisInitialized=true\n"));
    content.open(QIODevice::ReadOnly);
    return ReplaceFile(path, &content).isEmpty() ? kSuccess : kAccessDenied;
}

}  // namespace kivo
