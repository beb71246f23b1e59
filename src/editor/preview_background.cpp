#include "editor/preview_background.h"

#include <QFileInfo>

#include "compose/background_picture.h"

namespace kivo {

const QImage& PreviewBackground::Picture(const QString& path) {
    const bool samePath = path == m_path;
    if (samePath && !m_recheck) {
        return m_picture;
    }
    m_recheck = false;
    if (samePath && QFileInfo(path).lastModified() == m_modified) {
        return m_picture;
    }
    ++m_decodes;
    Keep(path, LoadPicture(path));
    return m_picture;
}

void PreviewBackground::Keep(const QString& path, const QImage& picture) {
    m_path = path;
    m_modified = QFileInfo(path).lastModified();
    m_picture = picture;
    m_composed = QImage();
    m_whole = QImage();
}

bool PreviewBackground::Load(const QString& path) {
    if (path == m_path && !m_picture.isNull()) {
        return true;
    }
    const QImage picture = LoadPicture(path);
    ++m_decodes;
    if (picture.isNull()) {
        return false;  // what is shown stays
    }
    Keep(path, picture);
    return true;
}

QSize PreviewBackground::PictureSize(const ScreenState& state) {
    return Picture(PicturePath(state)).size();
}

const QImage& PreviewBackground::Composed(const ScreenState& state, QSize devicePixels) {
    const QImage& picture = Picture(PicturePath(state));
    if (m_composed.size() != devicePixels || state != m_state) {
        m_composed = ComposeMagnifiedBackground(state, picture, m_skins, devicePixels);
        m_state = state;
        ++m_compositions;
    }
    return m_composed;
}

const QImage& PreviewBackground::WholePicture(const ScreenState& state, QSize devicePixels) {
    const QImage& picture = Picture(PicturePath(state));
    if (m_whole.size() != devicePixels && !picture.isNull()) {
        m_whole = picture.scaled(devicePixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return m_whole;
}

}  // namespace kivo
