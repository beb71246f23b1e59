#include "compose/frame_composer.h"

#include <QPainter>

#include "compose/background_picture.h"
#include "compose/frost.h"
#include "compose/glass.h"
#include "compose/item_drawing.h"
#include "compose/picture_accent.h"
#include "compose/theme_catalogue.h"

namespace kivo {

namespace {

// Lets painter take the coordinates of the canvas, whatever the size of what it paints on.
void UseCanvasCoordinates(QPainter& painter, Orientation orientation) {
    const QSizeF canvas = CanvasSize(orientation);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(painter.device()->width() / canvas.width(), painter.device()->height() / canvas.height());
}

bool TakesAccentFromPicture(const ScreenState& state) {
    return state.layout.accentFromPicture && !state.custom && HasAccent(state.theme);
}

// The picture as it lies behind everything else, on the frame that skins are made for, and the hue that an
// accent is to be taken from. How dark it is made has no part in its hue.
struct Behind {
    Behind(const ScreenState& state, const QImage& picture)
        : image(PlacedPicture(picture, AreaFrameSize(state.orientation), state.orientation, state.layout)) {
        if (TakesAccentFromPicture(state)) {
            hue = StrongestHue(image);
        }
        Dim(image, state.layout);
    }
    QImage image;
    std::optional<QRgb> hue;
};

// What glass lies over a picture and which accent it has, found on the panel's frame, whatever the size it is
// drawn in.
class Glazing {
public:
    Glazing(const ScreenState& state, const Behind& behind, SkinCache& skins, const ItemFlags& bare = {})
        : m_state(state), m_skins(skins) {
        if (state.custom || HasGlass(state.theme)) {
            m_blurred = BlurredPicture(behind.image, CanvasSize(state.orientation));
        }
        if (state.custom) {
            m_plates = GlassPlates(state, behind.image, m_blurred, bare);
        }
        if (behind.hue) {
            double light = 0;
            for (const QImage& glass : skins.GlassUnderIcons(state)) {
                light = qMax(light, LightThrough(glass, m_blurred));
            }
            m_accent = LiftedAccent(*behind.hue, light);
        }
    }

    std::optional<QRgb> Accent() const { return m_accent; }

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
        const QImage& drawing = m_skins.SkinOf(m_state, image.size(), m_accent).drawing;
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
            const Skin& skin = m_skins.SkinOf(m_state, size, m_accent);
            return size == skin.glassOnPanel.size() ? skin.glassOnPanel
                   : skin.glass.isNull()            ? QImage()
                                                    : ScaledTo(skin.glass, size);
        }
        if (m_plates.isEmpty()) {
            return QImage();
        }
        QImage shapes(size, QImage::Format_ARGB32_Premultiplied);
        shapes.fill(Qt::transparent);
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
    std::optional<QRgb> m_accent;
};

}  // namespace

PanelBackground ComposeBackground(const ScreenState& state, const QImage& picture, SkinCache& skins) {
    Behind behind(state, picture);
    Glazing glazing(state, behind, skins);
    glazing.DrawOver(behind.image);
    const QSize canvas = CanvasSize(state.orientation);
    const QImage soft = HasSoftPicture(state.layout) ? WholeMask(canvas) : glazing.Shapes(canvas);
    return {PanelPixels(ScaledTo(behind.image, canvas), soft), glazing.Accent()};
}

PanelBackground ComposeMagnifiedBackground(const ScreenState& state, const QImage& picture, SkinCache& skins,
                                           QSize size, const ItemFlags& bare) {
    Glazing glazing(state, Behind(state, picture), skins, bare);
    QImage magnified = PlacedPicture(picture, size, state.orientation, state.layout);
    Dim(magnified, state.layout);
    glazing.DrawOver(magnified);
    return {magnified, glazing.Accent()};
}

QImage ComposeFrame(const ScreenState& state, const PanelBackground& background, const ItemTexts& texts) {
    QImage frame = background.image;
    QPainter painter(&frame);
    DrawPanelTexts(painter, LayOutPanelTexts(state, texts, background.accent), frame.rect());
    return frame;
}

}  // namespace kivo
