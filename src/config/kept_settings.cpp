#include "config/kept_settings.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QtDebug>

#include "config/folders.h"
#include "config/numbered_name.h"
#include "config/replace_file.h"

namespace kivo {
namespace {

constexpr char kKept[] = ".kept";
constexpr char kReplaced[] = ".replaced";

QString NameOf(const char* family, int number) {
    return NumberedName(ConfigFilePath(), family, number);
}

// The highest number of a family that is there; 0: there is none.
int Newest(const char* family) {
    int number = kMostKeptFiles;
    while (number > 0 && !QFileInfo(NameOf(family, number)).isFile()) {
        --number;
    }
    return number;
}

QString NextName(const char* family) {
    return NameOf(family, qMin(Newest(family) + 1, kMostKeptFiles));
}

bool HaveSameContent(const QString& one, const QString& other) {
    QFile first(one);
    QFile second(other);
    return first.open(QIODevice::ReadOnly) && second.open(QIODevice::ReadOnly) &&
           first.size() == second.size() && first.readAll() == second.readAll();
}

// The file at `target` is complete or as it was. False, with a log line, where that fails.
bool Copy(const QString& source, const QString& target) {
    QFile file(source);
    const QString trouble = file.open(QIODevice::ReadOnly) ? ReplaceFile(target, &file) : file.errorString();
    if (!trouble.isEmpty()) {
        qWarning().noquote() << QStringLiteral("The settings cannot be kept: %1 to %2: %3")
                                    .arg(QDir::toNativeSeparators(source), QDir::toNativeSeparators(target),
                                         trouble);
    }
    return trouble.isEmpty();
}

}  // namespace

bool KeepSettings(const QString& defaultFile) {
    const QString config = ConfigFilePath();
    if (!QFileInfo(config).isFile() || HaveSameContent(config, defaultFile)) {
        return true;
    }
    const int newest = Newest(kKept);
    return (newest > 0 && HaveSameContent(config, NameOf(kKept, newest))) || Copy(config, NextName(kKept));
}

void TakeKeptCopyBack() {
    const int newest = Newest(kKept);
    if (newest > 0 && HaveSameContent(ConfigFilePath(), NameOf(kKept, newest))) {
        QFile::remove(NameOf(kKept, newest));
    }
}

bool HasKeptSettings() {
    return Newest(kKept) > 0;
}

bool RestoreKeptSettings() {
    const int newest = Newest(kKept);
    const QString config = ConfigFilePath();
    if (newest == 0 || (QFileInfo::exists(config) && !Copy(config, NextName(kReplaced))) ||
        !Copy(NameOf(kKept, newest), config)) {
        return false;
    }
    QFile::remove(NameOf(kKept, newest));
    return true;
}

void DismissKeptSettings() {
    for (int number = 1; number <= Newest(kKept); ++number) {
        const QString kept = NameOf(kKept, number);
        if (QFileInfo(kept).isFile() && Copy(kept, NextName(kReplaced))) {
            QFile::remove(kept);
        }
    }
}

}  // namespace kivo
