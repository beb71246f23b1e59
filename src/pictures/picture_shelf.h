#pragma once

// The pictures that were read last, within a bound in bytes. Plain values; whoever owns it guards it.

#include <QHash>
#include <QString>
#include <QStringList>

#include "pictures/picture.h"

namespace kivo {

class PictureShelf {
public:
    // No picture that is put here is larger than the bound.
    explicit PictureShelf(qint64 mostBytes) : m_mostBytes(mostBytes) {}

    // What is known of that picture, image or failure; null where it is not known, or not any more.
    const Picture* Find(const QString& path) const;
    // The same, and counts as used.
    const Picture* Use(const QString& path);
    // In the place of what was known. Lets go of the longest unused others.
    void Put(const QString& path, const Picture& picture);
    // Lets go of every image but those of the paths in kept. Failures stay: they weigh nothing.
    void RemoveImages(const QStringList& kept);

    qint64 Bytes() const { return m_bytes; }
    int Count() const { return m_places.size(); }

private:
    struct Place {
        Picture picture;
        quint64 usedAt = 0;
    };
    void RemoveOldest();

    const qint64 m_mostBytes;
    qint64 m_bytes = 0;
    quint64 m_uses = 0;
    QHash<QString, Place> m_places;
};

}  // namespace kivo
