#pragma once

// The made-up energy libraries, and environments that lead to them.

#include <QDir>
#include <QFile>
#include <QString>
#include <QTemporaryDir>

#include "support/built_paths.h"
#include "telemetry/energy_library.h"

namespace kivo::test {

inline const QString kLibraryName = QStringLiteral("EnergyLib64.dll");

// Folder of a variant: "complete", "start_fails", ...
inline QString LibraryFolder(const char* variant) {
    // With its drive, where there are drives.
    const QString folder =
        QDir(InTestFolder("energy_libraries")).absoluteFilePath(QString::fromLatin1(variant));
    if (!QFile::exists(folder + QLatin1Char('/') + kLibraryName)) {
        qFatal("There is no library in %s.", qUtf8Printable(folder));
    }
    return folder;
}

// An environment with these two values, and nothing else.
inline EnvironmentReader Environment(const QString& folder, const QString& version = QStringLiteral("3.6")) {
    return [folder, version](const char* name) {
        if (qstrcmp(name, "IPG_Dir") == 0) {
            return folder;
        }
        return qstrcmp(name, "IPG_Ver") == 0 ? version : QString();
    };
}

// What the made-up libraries note while this lives (KIVO_TEST_LIBRARY_LOG).
class LibraryNotes {
public:
    LibraryNotes() { qputenv("KIVO_TEST_LIBRARY_LOG", QFile::encodeName(Path())); }
    ~LibraryNotes() { qunsetenv("KIVO_TEST_LIBRARY_LOG"); }
    Q_DISABLE_COPY(LibraryNotes)

    QByteArrayList Lines() const {
        QFile file(Path());
        if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
            return {};
        }
        QByteArrayList lines = file.readAll().split('\n');
        lines.removeLast();  // what stands behind the last line's end
        return lines;
    }

private:
    QString Path() const { return m_folder.filePath(QStringLiteral("notes")); }

    const QTemporaryDir m_folder;
};

// A folder into which a library can be put, once or one after the other.
class LibraryPlace {
public:
    QString Folder() const { return m_dir.path(); }
    bool Put(const char* variant) const {
        const QString path = m_dir.filePath(kLibraryName);
        QFile::remove(path);
        return QFile::copy(LibraryFolder(variant) + QLatin1Char('/') + kLibraryName, path);
    }
    bool PutNoLibrary() const {
        QFile file(m_dir.filePath(kLibraryName));
        return file.open(QIODevice::WriteOnly) && file.write("no library") > 0;
    }

private:
    const QTemporaryDir m_dir;
};

}  // namespace kivo::test
