#include "compose/frame_composer.h"

#include <QPainter>

#include "compose/background_picture.h"
#include "compose/item_drawing.h"
#include "compose/theme_catalogue.h"
#include "compose/veil.h"

namespace kivo {

namespace {

QImage DecodeSkin(const ScreenState& state) {
    const QSize size = AreaFrameSize(state.orientation);
    QImage skin(size, QImage::Format_ARGB32_Premultiplied);
    skin.fill(Qt::transparent);
    QPainter painter(&skin);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    if (state.custom) {
        // Serves both orientations; only its upper left part is used in either.
        painter.drawImage(QPoint(0, 0), QImage(CustomVeilPicture()));
        return skin;
    }
    const QSize canvas = CanvasSize(state.orientation);
    painter.scale(double(size.width()) / canvas.width(), double(size.height()) / canvas.height());
    const QVector<SkinLayer> layers = SkinLayers(state.theme, state.orientation);
    for (const SkinLayer& layer : layers) {
        painter.drawImage(layer.rect, QImage(layer.path));
    }
    return skin;
}

QString SkinKey(const ScreenState& state) {
    return state.custom ? QStringLiteral("custom %1").arg(int(state.orientation))
                        : SkinPicture(state.theme, state.orientation);
}

// Where white text will stand: each shown value's rectangle, the captions as long as they are, and the free
// text.
QVector<QRect> WhiteTextRects(const ScreenState& state) {
    const PanelTexts texts = LayOutPanelTexts(state, state.layout.sample);
    QVector<QRect> rects;
    for (const TextRun& run : texts.runs) {
        if (run.role == TextRole::Value) {
            rects.append(run.rect);
            continue;
        }
        const FittedLine line = FitLine(run.text, run.pixelSize, run.rect, run.align);
        const LineMetrics metrics = MetricsOf(line.pixelSize);
        const QRect ink(line.baseLine.x(), line.baseLine.y() - metrics.inkAbove, line.width,
                        metrics.inkAbove + metrics.inkBelow);
        rects.append(ink.adjusted(-1, -1, 1, 1));
    }
    if (!texts.freeText.lines.isEmpty() && texts.freeText.color == Qt::white) {
        rects.append(texts.freeText.bounds);
    }
    return rects;
}

QImage ScaledTo(const QImage& image, const QSize& size) {
    return image.size() == size ? image : image.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

// The picture on the frame that a skin is made for.
QImage PlacedArea(const ScreenState& state, const QImage& picture) {
    return PlacedPicture(picture, AreaFrameSize(state.orientation), state.orientation, state.layout);
}

// The veil picture is kStrongestVeil opaque; drawn thinner, it is as strong as this picture needs.
double SkinOpacity(const ScreenState& state, const QImage& area) {
    return state.custom
               ? CustomVeilStrength(state, ScaledTo(area, CanvasSize(state.orientation))) / kStrongestVeil
               : 1;
}

void DrawSkin(QImage& image, const ScreenState& state, SkinCache& skins, double opacity) {
    if (opacity <= 0) {
        return;
    }
    QPainter painter(&image);
    painter.setOpacity(opacity);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    const QImage& skin = skins.Skin(state);
    if (skin.size() == image.size()) {
        painter.drawImage(QPoint(0, 0), skin);
    } else {
        painter.drawImage(image.rect(), skin);
    }
}

}  // namespace

const QImage& SkinCache::Skin(const ScreenState& state) {
    const QString key = SkinKey(state);
    if (key != m_key) {
        m_skin = DecodeSkin(state);
        m_key = key;
    }
    return m_skin;
}

double CustomVeilStrength(const ScreenState& state, const QImage& placed) {
    return VeilStrength(placed, WhiteTextRects(state));
}

QImage ComposeBackground(const ScreenState& state, const QImage& picture, SkinCache& skins) {
    QImage area = PlacedArea(state, picture);
    DrawSkin(area, state, skins, SkinOpacity(state, area));
    return ScaledTo(area, CanvasSize(state.orientation)).convertToFormat(QImage::Format_RGB16);
}

QImage ComposeMagnifiedBackground(const ScreenState& state, const QImage& picture, SkinCache& skins,
                                  QSize size) {
    const double opacity = SkinOpacity(state, PlacedArea(state, picture));
    QImage magnified = PlacedPicture(picture, size, state.orientation, state.layout);
    DrawSkin(magnified, state, skins, opacity);
    return magnified;
}

QImage ComposeFrame(const ScreenState& state, const QImage& background, const ItemTexts& texts) {
    QImage frame = background;
    QPainter painter(&frame);
    DrawPanelTexts(painter, LayOutPanelTexts(state, texts), frame.rect());
    return frame;
}

}  // namespace kivo
