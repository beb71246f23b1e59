#include "pictures/picture_shelf.h"

#include <algorithm>

namespace kivo {

namespace {

// Failures weigh nothing, but they are not to be collected for ever.
constexpr int kMostPlaces = 64;

}  // namespace

const Picture* PictureShelf::Find(const QString& path) const {
    const auto found = m_places.constFind(path);
    return found == m_places.constEnd() ? nullptr : &found->picture;
}

const Picture* PictureShelf::Use(const QString& path) {
    const auto found = m_places.find(path);
    if (found == m_places.end()) {
        return nullptr;
    }
    found->usedAt = ++m_uses;
    return &found->picture;
}

void PictureShelf::Put(const QString& path, const Picture& picture) {
    Place& place = m_places[path];
    m_bytes += picture.image.sizeInBytes() - place.picture.image.sizeInBytes();
    place = {picture, ++m_uses};
    while (m_places.size() > 1 && (m_bytes > m_mostBytes || m_places.size() > kMostPlaces)) {
        RemoveOldest();
    }
}

void PictureShelf::RemoveImages(const QStringList& kept) {
    for (auto place = m_places.begin(); place != m_places.end();) {
        if (place->picture.image.isNull() || kept.contains(place.key())) {
            ++place;
            continue;
        }
        m_bytes -= place->picture.image.sizeInBytes();
        place = m_places.erase(place);
    }
}

void PictureShelf::RemoveOldest() {
    const auto oldest = std::min_element(m_places.begin(), m_places.end(),
                                         [](const Place& a, const Place& b) { return a.usedAt < b.usedAt; });
    m_bytes -= oldest->picture.image.sizeInBytes();
    m_places.erase(oldest);
}

}  // namespace kivo
