#include "session/log_file.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace kivo {

namespace {

QByteArray ContentOf(const QString& path, qint64 longest) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.read(longest) : QByteArray();
}

}  // namespace

LogFile::LogFile(QString path, qint64 largest) : m_path(std::move(path)), m_largest(largest) {}

// Whether a half has room for so many bytes, now that an older one may have gone.
bool LogFile::MakeRoom(qint64 bytes) const {
    const qint64 half = m_largest / 2;
    if (bytes > half) {
        return false;
    }
    if (QFileInfo(m_path).size() + bytes <= half) {
        return true;
    }
    QFile::remove(OlderHalf());
    return QFile::rename(m_path, OlderHalf());
}

void LogFile::Append(const QString& line) {
    const QByteArray bytes = line.toUtf8() + '\n';
    QDir().mkpath(QFileInfo(m_path).path());
    QFile file(m_path);
    if (!MakeRoom(bytes.size())) {
        return;
    }
    const bool isNew = !file.exists();
    if (file.open(QIODevice::WriteOnly | QIODevice::Append)) {
        if (isNew) {
            file.setPermissions(QFile::ReadOwner | QFile::WriteOwner);
        }
        file.write(bytes);
    }
}

QStringList LogFile::LastLines(int count) const {
    const QByteArray content = ContentOf(OlderHalf(), m_largest) + ContentOf(m_path, m_largest);
    const QStringList lines = QString::fromUtf8(content).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    return lines.mid(qMax(0, lines.size() - count));
}

}  // namespace kivo
