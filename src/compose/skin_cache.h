#pragma once

// The themes' skins, decoded from the program's pictures and united. Not for two threads at once.

#include <QImage>
#include <QRgb>
#include <QString>
#include <QVector>
#include <optional>

#include "compose/screen_state.h"

namespace kivo {

// A theme's skin, all of its layers united.
struct Skin {
    QImage drawing;
    // Where its glass is: opaque there, transparent elsewhere. Taken from the drawing of the glass itself.
    // Null where the theme has none.
    QImage glass;
    QImage glassOnPanel;  // the same in the canvas size
};

// Keeps the last skin decoded, so that a change of picture or text need not decode it again.
class SkinCache {
public:
    // The skin of the state's theme in the size AreaFrameSize(orientation); for a picture larger than that,
    // in twice the pixels. Both formats are premultiplied. accent: in the place of the theme's own.
    const Skin& SkinOf(const ScreenState& state, QSize pictureSize,
                       std::optional<QRgb> accent = std::nullopt);

    // The glass on which the icons of the state's theme stand, at half of the canvas, transparent everywhere
    // else: an image for each layer of icons.
    const QVector<QImage>& GlassUnderIcons(const ScreenState& state);

    // Of all images that are kept.
    qint64 HeldBytes() const;

private:
    QString m_key;
    Skin m_skin;
    std::optional<QRgb> m_accent;  // of m_skin
    // What m_skin.drawing is made of, as it was decoded: while the accent is a picture's, which may change
    // with each move of a trim frame. Else null.
    QImage m_glass;
    QImage m_marks;

    QString m_iconsKey;
    QVector<QImage> m_underIcons;
};

// image in that size, smoothly; itself where it has it.
QImage ScaledTo(const QImage& image, QSize size);

}  // namespace kivo
