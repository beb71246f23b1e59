#pragma once

// A whole frame: picture, glass, texts. Two pure functions of a state; the upload thread calls them, previews
// and contact sheets do too.

#include <QImage>

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

// Keeps the last skin decoded, so that a change of picture or text need not decode it again. Not for two
// threads at once.
class SkinCache {
public:
    // The skin of the state's theme in the size AreaFrameSize(orientation); for a picture larger than that,
    // in twice the pixels. Both formats are premultiplied.
    const Skin& SkinOf(const ScreenState& state, QSize pictureSize);

private:
    QString m_key;
    Skin m_skin;
};

// The frame without its texts: the picture placed and cut, frosted under glass, and the glass over it.
// Format_RGB16 in the canvas size of the state's orientation. picture may be null (black) and of any size.
QImage ComposeBackground(const ScreenState& state, const QImage& picture, SkinCache& skins);

// The same background magnified, for a window that shows the panel larger than it is: composed at size
// instead of enlarged, so that it is sharp, with exactly the panel's frost and glass. Format_RGB32.
QImage ComposeMagnifiedBackground(const ScreenState& state, const QImage& picture, SkinCache& skins,
                                  QSize size);

// background with all texts of the state over it, the same size and format.
QImage ComposeFrame(const ScreenState& state, const QImage& background, const ItemTexts& texts);

}  // namespace kivo
