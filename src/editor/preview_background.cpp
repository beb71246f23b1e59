#include "editor/preview_background.h"

#include "pictures/picture_source.h"

namespace kivo {

namespace {

// Never black, which would look like a screen that is off.
QImage PlainGround() {
    constexpr QRgb kGround = qRgb(0x0B, 0x1A, 0x33);
    QImage ground(1, 1, QImage::Format_RGB32);
    ground.fill(kGround);
    return ground;
}

}  // namespace

void PreviewBackground::Update(const ScreenState& state) {
    if (m_source == nullptr) {
        return;
    }
    const QString path = PicturePath(state);
    if (path != m_path) {
        m_path = path;
        m_source->Check(path);
    }
    const std::optional<LayoutPicture> known = KnownLayoutPicture(*m_source, state);
    if (!known) {
        return;
    }
    if (known->image.cacheKey() != m_picture.image.cacheKey() || known->failure != m_picture.failure) {
        m_composed = PanelBackground();
        m_whole = QImage();
    }
    m_picture = *known;
    m_pictureSize = known->image.size();
    m_hasLetGo = false;
}

void PreviewBackground::LetGo() {
    m_hasLetGo = m_hasLetGo || !m_picture.image.isNull();
    m_picture.image = QImage();
    m_skins = SkinCache();
    m_comingSkins = {};
}

void PreviewBackground::Fetch(const ScreenState& state, QSize devicePixels) {
    Update(state);
    // Custom layouts have no skin; an accent of its picture's is known when that has been read.
    if (m_composed.image.isNull() && !state.custom && !state.layout.accentFromPicture) {
        m_comingSkins = std::async(std::launch::async, [state, devicePixels] {
            SkinCache skins;
            skins.SkinOf(state, devicePixels);
            return skins;
        });
    }
}

QSize PreviewBackground::PictureSize(const ScreenState& state) {
    Update(state);
    return m_pictureSize;
}

const PanelBackground& PreviewBackground::Composed(const ScreenState& state, QSize devicePixels,
                                                   const ItemFlags& bare) {
    Update(state);
    // Without its picture nothing can be composed anew.
    if (m_hasLetGo && !m_composed.image.isNull()) {
        return m_composed;
    }
    if (m_composed.image.size() != devicePixels || state != m_state || bare != m_bare) {
        if (m_comingSkins.valid()) {
            m_skins = m_comingSkins.get();
        }
        ScreenState drawn = DrawnState(state, m_picture.IsStandIn());
        const bool hasPicture = !m_picture.image.isNull();
        drawn.layout.accentFromPicture = drawn.layout.accentFromPicture && hasPicture;
        m_composed = ComposeMagnifiedBackground(drawn, hasPicture ? m_picture.image : PlainGround(), m_skins,
                                                devicePixels, bare);
        m_state = state;
        m_bare = bare;
        ++m_compositions;
    }
    return m_composed;
}

const QImage& PreviewBackground::WholePicture(const ScreenState& state, QSize devicePixels) {
    Update(state);
    if (m_whole.size() != devicePixels && !m_picture.image.isNull()) {
        m_whole = m_picture.image.scaled(devicePixels, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    }
    return m_whole;
}

}  // namespace kivo
