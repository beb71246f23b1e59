#include "compose/frame_composer.h"

#include <QPainter>

#include "compose/background_picture.h"
#include "compose/item_drawing.h"
#include "compose/theme_catalogue.h"
#include "compose/veil.h"

namespace kivo {

namespace {

// A skin in twice the pixels where the picture under it is larger than the panel's: enlarged, the plain one
// would be soft beside the texts. The veil has no shapes that could be.
int SkinScale(const ScreenState& state, QSize pictureSize) {
    return !state.custom && pictureSize.width() > AreaFrameSize(state.orientation).width() ? 2 : 1;
}

QString LayerPath(QString path, int scale) {
    return scale == 1 ? path : path.replace(QLatin1String(".png"), QLatin1String("@2x.png"));
}

QImage DecodeSkin(const ScreenState& state, int scale) {
    const QSize size = AreaFrameSize(state.orientation) * scale;
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
        painter.drawImage(layer.rect, QImage(LayerPath(layer.path, scale)));
    }
    return skin;
}

QString SkinKey(const ScreenState& state, int scale) {
    return state.custom ? QStringLiteral("custom %1").arg(int(state.orientation))
                        : LayerPath(SkinPicture(state.theme, state.orientation), scale);
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
    const QImage& skin = skins.Skin(state, image.size());
    if (skin.size() == image.size()) {
        painter.drawImage(QPoint(0, 0), skin);
    } else {
        painter.drawImage(image.rect(), skin);
    }
}

}  // namespace

const QImage& SkinCache::Skin(const ScreenState& state, QSize pictureSize) {
    const int scale = SkinScale(state, pictureSize);
    const QString key = SkinKey(state, scale);
    if (key != m_key) {
        m_skin = DecodeSkin(state, scale);
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
