#pragma once

#include <QFile>
#include <QTemporaryDir>

namespace kivo::test {

// For tests to derive from: makes files of a given content in a folder that goes with the test.
class FileMaker {
protected:
    ~FileMaker() = default;

    QString NewPath() { return m_dir.filePath(QStringLiteral("%1.ini").arg(++m_files)); }

    QString FileWith(const QByteArray& content) {
        QFile file(NewPath());
        if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
            qFatal("The test cannot write its file.");
        }
        return file.fileName();
    }

    QTemporaryDir m_dir;

private:
    int m_files = 0;
};

}  // namespace kivo::test
