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

// Frees the last number: what is there moves up to the numbers that are free, and of nine the oldest goes.
void MakeRoom(const char* family) {
    int count = 0;
    for (int number = 1; number <= kMostKeptFiles; ++number) {
        count += QFileInfo(NameOf(family, number)).isFile() ? 1 : 0;
    }
    if (count == kMostKeptFiles) {
        QFile::remove(NameOf(family, 1));
    }
    for (int number = 2; number <= kMostKeptFiles; ++number) {
        int free = 1;
        while (free < number && QFileInfo::exists(NameOf(family, free))) {
            ++free;
        }
        if (free < number && QFileInfo(NameOf(family, number)).isFile()) {
            QFile::rename(NameOf(family, number), NameOf(family, free));
        }
    }
}

QString NextName(const char* family) {
    if (Newest(family) == kMostKeptFiles) {
        MakeRoom(family);
    }
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
    const QString trouble = ReplaceFileByCopy(target, source);
    if (!trouble.isEmpty()) {
        qWarning().noquote() << QStringLiteral("The settings cannot be kept: %1 to %2: %3")
                                    .arg(QDir::toNativeSeparators(source), QDir::toNativeSeparators(target),
                                         trouble);
    }
    return trouble.isEmpty();
}

// What is kept last already is not kept again.
bool Keep(const QString& file, const char* family) {
    const int newest = Newest(family);
    return (newest > 0 && HaveSameContent(file, NameOf(family, newest))) || Copy(file, NextName(family));
}

// Whether the settings that are there may be replaced: there are none, or nobody has made them, or they are
// kept.
bool GiveWayToKept(const QString& defaultFile) {
    const QString config = ConfigFilePath();
    return !QFileInfo::exists(config) || HaveSameContent(config, defaultFile) || Keep(config, kReplaced);
}

}  // namespace

bool KeepSettings(const QString& defaultFile) {
    const QString config = ConfigFilePath();
    return !QFileInfo(config).isFile() || HaveSameContent(config, defaultFile) || Keep(config, kKept);
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

bool RestoreKeptSettings(const QString& defaultFile) {
    const int newest = Newest(kKept);
    if (newest == 0 || !GiveWayToKept(defaultFile) || !Copy(NameOf(kKept, newest), ConfigFilePath())) {
        return false;
    }
    QFile::remove(NameOf(kKept, newest));
    DismissKeptSettings();
    return true;
}

void DismissKeptSettings() {
    for (int number = 1; number <= kMostKeptFiles; ++number) {
        const QString kept = NameOf(kKept, number);
        if (QFileInfo(kept).isFile() && Keep(kept, kReplaced)) {
            QFile::remove(kept);
        }
    }
}

}  // namespace kivo
