#include "compose/frame_composer.h"

#include <QPainter>

#include "compose/background_picture.h"
#include "compose/frost.h"
#include "compose/glass.h"
#include "compose/item_drawing.h"
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

QImage Transparent(QSize size) {
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    return image;
}

// Lets painter take the coordinates of the canvas, whatever the size of what it paints on.
void UseCanvasCoordinates(QPainter& painter, Orientation orientation) {
    const QSizeF canvas = CanvasSize(orientation);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(painter.device()->width() / canvas.width(), painter.device()->height() / canvas.height());
}

QImage ScaledTo(const QImage& image, QSize size) {
    return image.size() == size ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// Glass is more than half opaque everywhere, so twice the opacity is the whole of it inside, and its part of
// a pixel along its edge.
QImage ShapesOf(const QImage& glassLayer) {
    QImage shapes = glassLayer.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    for (int y = 0; y < shapes.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(shapes.scanLine(y));
        for (int x = 0; x < shapes.width(); ++x) {
            row[x] = qRgba(0, 0, 0, qMin(255, 2 * qAlpha(row[x])));
        }
    }
    return shapes;
}

Skin DecodeSkin(const ScreenState& state, int scale) {
    const QVector<SkinLayer> layers = SkinLayers(state.theme, state.orientation);
    Skin skin;
    skin.drawing = Transparent(AreaFrameSize(state.orientation) * scale);
    {
        QPainter painter(&skin.drawing);
        UseCanvasCoordinates(painter, state.orientation);
        for (const SkinLayer& layer : layers) {
            painter.drawImage(layer.rect, QImage(LayerPath(layer.path, scale)));
        }
    }
    if (HasGlass(state.theme)) {
        QImage glass = Transparent(skin.drawing.size());
        {
            QPainter painter(&glass);
            UseCanvasCoordinates(painter, state.orientation);
            painter.drawImage(layers.first().rect, QImage(LayerPath(layers.first().path, scale)));
        }
        skin.glass = ShapesOf(glass);
        skin.glassOnPanel = ScaledTo(skin.glass, CanvasSize(state.orientation));
    }
    return skin;
}

// The picture as it lies behind everything else.
QImage Behind(const ScreenState& state, const QImage& picture, QSize size) {
    QImage placed = PlacedPicture(picture, size, state.orientation, state.layout);
    Dim(placed, state.layout);
    return placed;
}

// What glass lies over a picture, found on the panel's frame, whatever the size it is drawn in.
class Glazing {
public:
    Glazing(const ScreenState& state, const QImage& area, SkinCache& skins) : m_state(state), m_skins(skins) {
        if (state.custom || HasGlass(state.theme)) {
            m_blurred = BlurredPicture(area, CanvasSize(state.orientation));
        }
        if (state.custom) {
            m_plates = GlassPlates(state, area, m_blurred);
        }
    }

    // Frost, glass and all that a skin has.
    void DrawOver(QImage& image) {
        if (const QImage glass = Shapes(image.size()); !glass.isNull()) {
            Frost(image, glass, m_blurred);
        }
        QPainter painter(&image);
        UseCanvasCoordinates(painter, m_state.orientation);
        if (m_state.custom) {
            DrawPlates(painter, m_plates);
            return;
        }
        const QImage& drawing = m_skins.SkinOf(m_state, image.size()).drawing;
        painter.resetTransform();
        if (drawing.size() == image.size()) {
            painter.drawImage(QPoint(0, 0), drawing);
        } else {
            painter.drawImage(image.rect(), drawing);
        }
    }

    // A mask of the glass in that size, null for none.
    QImage Shapes(QSize size) const {
        if (!m_state.custom) {
            const Skin& skin = m_skins.SkinOf(m_state, size);
            return size == skin.glassOnPanel.size() ? skin.glassOnPanel
                   : skin.glass.isNull()            ? QImage()
                                                    : ScaledTo(skin.glass, size);
        }
        if (m_plates.isEmpty()) {
            return QImage();
        }
        QImage shapes = Transparent(size);
        QPainter painter(&shapes);
        UseCanvasCoordinates(painter, m_state.orientation);
        FillPlates(painter, m_plates);
        return shapes;
    }

private:
    const ScreenState& m_state;
    SkinCache& m_skins;
    QImage m_blurred;
    QVector<GlassPlate> m_plates;
};

}  // namespace

const Skin& SkinCache::SkinOf(const ScreenState& state, QSize pictureSize) {
    const int scale = SkinScale(state, pictureSize);
    const QString key = LayerPath(SkinPicture(state.theme, state.orientation), scale);
    if (key != m_key) {
        m_skin = DecodeSkin(state, scale);
        m_key = key;
    }
    return m_skin;
}

QImage ComposeBackground(const ScreenState& state, const QImage& picture, SkinCache& skins) {
    QImage area = Behind(state, picture, AreaFrameSize(state.orientation));
    Glazing glazing(state, area, skins);
    glazing.DrawOver(area);
    const QSize canvas = CanvasSize(state.orientation);
    return PanelPixels(ScaledTo(area, canvas),
                       HasSoftPicture(state.layout) ? WholeMask(canvas) : glazing.Shapes(canvas));
}

QImage ComposeMagnifiedBackground(const ScreenState& state, const QImage& picture, SkinCache& skins,
                                  QSize size) {
    Glazing glazing(state, Behind(state, picture, AreaFrameSize(state.orientation)), skins);
    QImage magnified = Behind(state, picture, size);
    glazing.DrawOver(magnified);
    return magnified;
}

QImage ComposeFrame(const ScreenState& state, const QImage& background, const ItemTexts& texts) {
    QImage frame = background;
    QPainter painter(&frame);
    DrawPanelTexts(painter, LayOutPanelTexts(state, texts), frame.rect());
    return frame;
}

}  // namespace kivo
