#pragma once

// Thumbnails kept on disk, so that a picture is decoded once and not at every start. Any thread, several at a
// time.

#include <QImage>
#include <QSet>
#include <QSize>
#include <QString>

#include <atomic>
#include <mutex>

#include "pictures/picture.h"

namespace kivo {

class ThumbnailCache {
public:
    // The user's cache folder (Linux: "~/.cache"; Windows: the local application data, as the uninstaller
    // has it too) followed by "/Kivo Tool/thumbnails"; with a portable folder "thumbnails" in that. Empty
    // where there is none.
    static QString DefaultFolder();
    // Thousands of pictures on a sharp screen.
    static constexpr qint64 kDefaultMostBytes = 64LL * 1024 * 1024;

    // Nothing is read or made yet. An empty folder: nothing is kept.
    explicit ThumbnailCache(QString folder = DefaultFolder(), qint64 mostBytes = kDefaultMostBytes);

    // Names a thumbnail by the picture's path, its version and the size in device pixels: a picture that has
    // changed has another key.
    static QString Key(const QString& path, const PictureVersion& version, QSize pixels);

    // Null when there is none, when it is damaged or has another size.
    QImage Load(const QString& key, QSize pixels);
    // What a program that ends meanwhile has written counts as damaged. A failure is silent, it only costs
    // time. From time to time throws the longest unused ones away.
    void Store(const QString& key, const QImage& thumbnail);
    // Throws the longest unused ones away when all together are larger than they may be.
    void Prune() const;

    // Pictures that were found to be none, for as long as this object lives.
    bool IsKnownAsBroken(const QString& key) const;
    void RememberAsBroken(const QString& key);

private:
    static QString UsersFolder();
    QString FilePath(const QString& key) const;

    const QString m_folder;
    const qint64 m_mostBytes;
    std::atomic<qint64> m_storedSincePrune;
    mutable std::mutex m_brokenMutex;
    QSet<QString> m_broken;
};

}  // namespace kivo
