#pragma once

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

namespace kivo::test {

// A folder made like the kernel's, which goes with the test.
class MadeUpSysfs {
public:
    // Open to everybody, as the kernel's is.
    MadeUpSysfs() {
        QFile::setPermissions(m_dir.path(), QFile::permissions(m_dir.path()) | QFile::ReadGroup |
                                                QFile::ExeGroup | QFile::ReadOther | QFile::ExeOther);
    }

    QString Path(const QString& relative) const { return m_dir.filePath(relative); }

    // A file as the kernel writes them, with a line end.
    void Write(const QString& relative, const QByteArray& content) const {
        const QString path = Path(relative);
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        if (!file.open(QIODevice::WriteOnly) || file.write(content + '\n') != content.size() + 1) {
            qFatal("The test cannot write %s.", qUtf8Printable(path));
        }
    }

    void Remove(const QString& relative) const { QDir(Path(relative)).removeRecursively(); }

private:
    const QTemporaryDir m_dir;
};

}  // namespace kivo::test
