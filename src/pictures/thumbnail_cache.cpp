#include "pictures/thumbnail_cache.h"

#include <QBuffer>
#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <utility>

#include "config/portable_folder.h"

namespace kivo {

namespace {

// A file is this line, the digest of what follows, and a PNG. Also raised when thumbnails begin to look
// different; it is part of the key.
const QByteArray& Magic() {
    static const QByteArray magic("Kivo thumbnail 1\n");
    return magic;
}

constexpr auto kDigest = QCryptographicHash::Sha1;
constexpr qint64 kLargestFile = qint64{1024} * 1024;  // one thumbnail; what is larger is none of ours

// The time of a file's last use is its time of change, set anew at most so often.
constexpr int kTouchAfterDays = 1;

QString Suffix() {
    return QStringLiteral(".thumb");
}

void MarkAsUsed(QFile& file) {
    const QDateTime now = QDateTime::currentDateTimeUtc();
    if (file.fileTime(QFileDevice::FileModificationTime).daysTo(now) >= kTouchAfterDays) {
        file.setFileTime(now, QFileDevice::FileModificationTime);
    }
}

}  // namespace

ThumbnailCache::ThumbnailCache(QString folder, qint64 mostBytes)
    : m_folder(std::move(folder)),
      m_mostBytes(mostBytes),
      // The first one that is stored in a run prunes what earlier runs left.
      m_storedSincePrune(mostBytes) {}

QString ThumbnailCache::DefaultFolder() {
    const QString portable = PortableFolder();
    return portable.isEmpty() ? UsersFolder() : portable + QStringLiteral("/thumbnails");
}

QString ThumbnailCache::FilePath(const QString& key) const {
    return m_folder + QLatin1Char('/') + key + Suffix();
}

QString ThumbnailCache::Key(const QString& path, const PictureVersion& version, QSize pixels) {
    const QString name = QStringLiteral("%1\n%2\n%3\n%4x%5")
                             .arg(version.modifiedMs)
                             .arg(version.bytes)
                             .arg(QFileInfo(path).absoluteFilePath())
                             .arg(pixels.width())
                             .arg(pixels.height());
    return QString::fromLatin1(QCryptographicHash::hash(Magic() + name.toUtf8(), kDigest).toHex());
}

QImage ThumbnailCache::Load(const QString& key, QSize pixels) {
    if (m_folder.isEmpty()) {
        return QImage();
    }
    QFile file(FilePath(key));
    if (!file.open(QIODevice::ReadWrite | QIODevice::ExistingOnly) && !file.open(QIODevice::ReadOnly)) {
        return QImage();
    }
    const QByteArray content = file.read(kLargestFile);
    const int digestLength = QCryptographicHash::hashLength(kDigest);
    const QByteArray png = content.mid(Magic().size() + digestLength);
    // The digest first: a decoder would complain about a damaged one in the log.
    if (!content.startsWith(Magic()) ||
        content.mid(Magic().size(), digestLength) != QCryptographicHash::hash(png, kDigest)) {
        return QImage();
    }
    const QImage thumbnail = QImage::fromData(png, "PNG");
    if (thumbnail.size() != pixels) {
        return QImage();
    }
    MarkAsUsed(file);
    return thumbnail.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

void ThumbnailCache::Store(const QString& key, const QImage& thumbnail) {
    if (m_folder.isEmpty()) {
        return;
    }
    if (!QFileInfo(m_folder).isDir()) {
        if (!QDir().mkpath(m_folder)) {
            return;
        }
        // Small pictures are pictures too: nobody else's business.
        QFile::setPermissions(m_folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    }
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    if (!thumbnail.save(&buffer, "PNG")) {
        return;
    }
    const QByteArray content = Magic() + QCryptographicHash::hash(png, kDigest) + png;
    // Deliberate: the disk is not waited for, which can take seconds while it is busy. The digest tells a
    // file that is only half there.
    QFile file(FilePath(key));
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        return;
    }
    // Looked through again after each tenth of what may be kept.
    constexpr int kPrunesUntilFull = 10;
    if (m_storedSincePrune.fetch_add(content.size()) + content.size() > m_mostBytes / kPrunesUntilFull) {
        m_storedSincePrune = 0;
        Prune();
    }
}

bool ThumbnailCache::IsKnownAsBroken(const QString& key) const {
    const std::lock_guard lock(m_brokenMutex);
    return m_broken.contains(key);
}

void ThumbnailCache::RememberAsBroken(const QString& key) {
    const std::lock_guard lock(m_brokenMutex);
    m_broken.insert(key);
}

void ThumbnailCache::Prune() const {
    // Newest first. Only our own files, whatever else somebody may have put there.
    const QFileInfoList files = QDir(m_folder).entryInfoList({QLatin1Char('*') + Suffix()},
                                                             QDir::Files | QDir::NoSymLinks, QDir::Time);
    qint64 bytes = 0;
    for (const QFileInfo& file : files) {
        bytes += file.size();
    }
    if (bytes <= m_mostBytes) {
        return;
    }
    // Down to three quarters, so that the next one does not begin it all again.
    const qint64 keptBytes = m_mostBytes / 4 * 3;
    bytes = 0;
    for (const QFileInfo& file : files) {
        bytes += file.size();
        if (bytes > keptBytes) {
            QFile::remove(file.absoluteFilePath());
        }
    }
}

}  // namespace kivo
