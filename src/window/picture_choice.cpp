#include "window/picture_choice.h"

#include <utility>

#include "pictures/picture_path.h"
#include "pictures/picture_source.h"

namespace kivo {

PictureChoice::PictureChoice(PictureSource& source, QObject* parent) : QObject(parent), m_source(source) {
    connect(&m_source, &PictureSource::answered, this, &PictureChoice::NoteAnswer);
}

void PictureChoice::Choose(const QString& path, const QString& inPlaceOf) {
    m_path = path;
    m_inPlaceOf = inPlaceOf;
    if (IsResource(path)) {
        Settle();
    } else {
        m_source.Check(path);
    }
}

void PictureChoice::Settle() {
    if (m_path.isEmpty()) {
        return;
    }
    const QString path = std::exchange(m_path, QString());
    Q_EMIT taken(path, std::exchange(m_inPlaceOf, QString()));
}

void PictureChoice::Drop() {
    m_path.clear();
    m_inPlaceOf.clear();
}

void PictureChoice::NoteAnswer(const QString& path) {
    if (m_path.isEmpty() || !IsSamePicture(path, m_path)) {
        return;
    }
    const std::optional<Picture> known = m_source.Known(m_path);
    if (!known || known->failure == PictureFailure::None) {
        Settle();
        return;
    }
    const QString refusedPath = std::exchange(m_path, QString());
    Q_EMIT refused(refusedPath, std::exchange(m_inPlaceOf, QString()));
}

}  // namespace kivo
