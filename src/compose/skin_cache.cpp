#include "compose/skin_cache.h"

#include <QPainter>
#include <numeric>
#include <utility>

#include "compose/geometry.h"
#include "compose/picture_accent.h"
#include "compose/pixels.h"
#include "compose/theme_catalogue.h"

namespace kivo {

namespace {

// A skin in twice the pixels where the picture under it is larger than the panel's: enlarged, the plain one
// would be soft beside the texts.
int SkinScale(const ScreenState& state, QSize pictureSize) {
    return pictureSize.width() > AreaFrameSize(state.orientation).width() ? 2 : 1;
}

QString LayerPath(QString path, int scale) {
    return scale == 1 ? path : path.replace(QLatin1String(".png"), QLatin1String("@2x.png"));
}

bool IsGlass(const ScreenState& state, const SkinLayer& layer) {
    return layer.path == SkinPicture(state.theme, state.orientation);
}

bool IsOfIcons(const SkinLayer& layer) {
    return layer.path.contains(QLatin1String("_icon"));
}

// The image, which is the whole canvas, with the layers that are wanted over it, one over the other.
template <typename IsWanted>
QImage WithLayers(QImage image, const ScreenState& state, int scale, const IsWanted& isWanted) {
    QPainter painter(&image);
    const QSizeF canvas = CanvasSize(state.orientation);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(image.width() / canvas.width(), image.height() / canvas.height());
    const QVector<SkinLayer> layers = SkinLayers(state.theme, state.orientation);
    for (const SkinLayer& layer : layers) {
        if (isWanted(layer)) {
            painter.drawImage(layer.rect, QImage(LayerPath(layer.path, scale)));
        }
    }
    painter.end();
    return image;
}

// These layers alone, in the size of the skin's files.
template <typename IsWanted>
QImage Layers(const ScreenState& state, int scale, const IsWanted& isWanted) {
    QImage clear(AreaFrameSize(state.orientation) * scale, QImage::Format_ARGB32_Premultiplied);
    clear.fill(Qt::transparent);
    return WithLayers(clear, state, scale, isWanted);
}

// Glass is more than half opaque everywhere, so twice the opacity is the whole of it inside, and its part of
// a pixel along its edge.
QImage ShapesOf(QImage glass) {
    for (QRgb& pixel : PixelsOf(glass)) {
        pixel = qRgba(0, 0, 0, qMin(255, 2 * qAlpha(pixel)));
    }
    return glass;
}

// Clears what is farther from an icon than it is seen against.
void KeepAround(const QImage& icons, QImage& glass) {
    constexpr int kReach = 2;
    for (int y = 0; y < glass.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(glass.scanLine(y));
        for (int x = 0; x < glass.width(); ++x) {
            bool isNear = false;
            const QRect around = QRect(x - kReach, y - kReach, 2 * kReach + 1, 2 * kReach + 1) & icons.rect();
            for (int k = 0; k < around.width() * around.height() && !isNear; ++k) {
                const QPoint at = around.topLeft() + QPoint(k % around.width(), k / around.width());
                isNear = qAlpha(icons.pixel(at)) > 0;
            }
            row[x] = isNear ? row[x] : 0;
        }
    }
}

}  // namespace

QImage ScaledTo(const QImage& image, QSize size) {
    return image.size() == size ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

const Skin& SkinCache::SkinOf(const ScreenState& state, QSize pictureSize, std::optional<QRgb> accent) {
    const int scale = SkinScale(state, pictureSize);
    const QString key = LayerPath(SkinPicture(state.theme, state.orientation), scale);
    if (key == m_key && accent == m_accent) {
        return m_skin;
    }
    const auto isGlass = [&](const SkinLayer& layer) { return IsGlass(state, layer); };
    const auto isMark = [&](const SkinLayer& layer) { return !isGlass(layer); };
    if (key != m_key || m_glass.isNull()) {
        m_glass = Layers(state, scale, isGlass);
        m_marks = accent ? Layers(state, scale, isMark) : QImage();
    }
    if (key != m_key) {
        const bool hasGlass = HasGlass(state.theme);
        m_skin.glass = hasGlass ? ShapesOf(m_glass) : QImage();
        m_skin.glassOnPanel = hasGlass ? ScaledTo(m_skin.glass, CanvasSize(state.orientation)) : QImage();
    }
    if (accent) {
        m_skin.drawing = m_glass;
        QImage marks = m_marks;
        Recolor(marks, FactsOf(state.theme).accent, *accent);
        QPainter(&m_skin.drawing).drawImage(0, 0, marks);
    } else {
        m_skin.drawing = WithLayers(std::exchange(m_glass, {}), state, scale, isMark);
        m_marks = {};
    }
    m_key = key;
    m_accent = accent;
    return m_skin;
}

const QVector<QImage>& SkinCache::GlassUnderIcons(const ScreenState& state) {
    const QString key = SkinPicture(state.theme, state.orientation);
    if (key == m_iconsKey) {
        return m_underIcons;
    }
    const auto half = [&](const auto& isWanted) {
        return ScaledTo(Layers(state, 1, isWanted), CanvasSize(state.orientation) / 2);
    };
    const QImage glass = half([&](const SkinLayer& layer) { return IsGlass(state, layer); });
    m_underIcons.clear();
    const QVector<SkinLayer> layers = SkinLayers(state.theme, state.orientation);
    for (const SkinLayer& icons : layers) {
        if (IsOfIcons(icons)) {
            QImage under = glass;
            KeepAround(half([&](const SkinLayer& layer) { return layer.path == icons.path; }), under);
            m_underIcons.append(under);
        }
    }
    m_iconsKey = key;
    return m_underIcons;
}

qint64 SkinCache::HeldBytes() const {
    const QVector<QImage> skin{m_skin.drawing, m_skin.glass, m_skin.glassOnPanel, m_glass, m_marks};
    const QVector<QImage> all = skin + m_underIcons;
    return std::accumulate(all.begin(), all.end(), qint64(0),
                           [](qint64 sum, const QImage& image) { return sum + image.sizeInBytes(); });
}

}  // namespace kivo
