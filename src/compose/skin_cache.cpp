#include "compose/skin_cache.h"

#include <QPainter>

#include "compose/geometry.h"
#include "compose/picture_accent.h"
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

struct DecodedLayer {
    SkinLayer layer;
    QImage picture;
};

// Of the state's theme, from the bottom up.
QVector<DecodedLayer> DecodedLayers(const ScreenState& state, int scale) {
    QVector<DecodedLayer> decoded;
    const QVector<SkinLayer> layers = SkinLayers(state.theme, state.orientation);
    for (const SkinLayer& layer : layers) {
        decoded.append({layer, QImage(LayerPath(layer.path, scale))});
    }
    return decoded;
}

// The layers that are wanted, one over the other, in an image of that size.
template <typename IsWanted>
QImage Layers(const ScreenState& state, const QVector<DecodedLayer>& layers, QSize size,
              const IsWanted& isWanted) {
    QImage drawing(size, QImage::Format_ARGB32_Premultiplied);
    drawing.fill(Qt::transparent);
    QPainter painter(&drawing);
    const QSizeF canvas = CanvasSize(state.orientation);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(size.width() / canvas.width(), size.height() / canvas.height());
    for (const DecodedLayer& decoded : layers) {
        if (isWanted(decoded.layer)) {
            painter.drawImage(decoded.layer.rect, decoded.picture);
        }
    }
    return drawing;
}

// Glass is more than half opaque everywhere, so twice the opacity is the whole of it inside, and its part of
// a pixel along its edge.
QImage ShapesOf(QImage glass) {
    for (int y = 0; y < glass.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(glass.scanLine(y));
        for (int x = 0; x < glass.width(); ++x) {
            row[x] = qRgba(0, 0, 0, qMin(255, 2 * qAlpha(row[x])));
        }
    }
    return glass;
}

// All layers in one, what lies over the glass in another accent where one is given.
QImage United(const ScreenState& state, const QVector<DecodedLayer>& layers, int scale,
              std::optional<QRgb> accent) {
    const QSize size = AreaFrameSize(state.orientation) * scale;
    if (!accent) {
        return Layers(state, layers, size, [](const SkinLayer&) { return true; });
    }
    const auto isGlass = [&](const SkinLayer& layer) { return IsGlass(state, layer); };
    QImage drawing = Layers(state, layers, size, isGlass);
    QImage marks = Layers(state, layers, size, [&](const SkinLayer& layer) { return !isGlass(layer); });
    Recolor(marks, FactsOf(state.theme).accent, *accent);
    QPainter(&drawing).drawImage(0, 0, marks);
    return drawing;
}

Skin DecodeSkin(const ScreenState& state, int scale, std::optional<QRgb> accent) {
    const QVector<DecodedLayer> layers = DecodedLayers(state, scale);
    Skin skin;
    skin.drawing = United(state, layers, scale, accent);
    if (HasGlass(state.theme)) {
        skin.glass = ShapesOf(Layers(state, layers, skin.drawing.size(),
                                     [&](const SkinLayer& layer) { return IsGlass(state, layer); }));
        skin.glassOnPanel = ScaledTo(skin.glass, CanvasSize(state.orientation));
    }
    return skin;
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
    if (key != m_key) {
        m_skin = DecodeSkin(state, scale, accent);
    } else if (accent != m_accent) {
        m_skin.drawing = United(state, DecodedLayers(state, scale), scale, accent);
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
    const QVector<DecodedLayer> layers = DecodedLayers(state, 1);
    const auto half = [&](const auto& isWanted) {
        return ScaledTo(Layers(state, layers, AreaFrameSize(state.orientation), isWanted),
                        CanvasSize(state.orientation) / 2);
    };
    const QImage glass = half([&](const SkinLayer& layer) { return IsGlass(state, layer); });
    m_underIcons.clear();
    for (const DecodedLayer& icons : layers) {
        if (IsOfIcons(icons.layer)) {
            QImage under = glass;
            KeepAround(half([&](const SkinLayer& layer) { return layer.path == icons.layer.path; }), under);
            m_underIcons.append(under);
        }
    }
    m_iconsKey = key;
    return m_underIcons;
}

qint64 SkinCache::HeldBytes() const {
    qint64 bytes =
        m_skin.drawing.sizeInBytes() + m_skin.glass.sizeInBytes() + m_skin.glassOnPanel.sizeInBytes();
    for (const QImage& under : m_underIcons) {
        bytes += under.sizeInBytes();
    }
    return bytes;
}

}  // namespace kivo
