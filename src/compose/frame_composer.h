#pragma once

// A whole frame: picture, skin, texts. Two pure functions of a state; the upload thread calls them, previews
// and contact sheets do too.

#include <QImage>

#include "compose/screen_state.h"

namespace kivo {

// Keeps the last skin decoded, so that a change of picture or text need not decode it again. Not for two
// threads at once.
class SkinCache {
public:
    // The skin of that theme or of the custom layouts as one picture of AreaFrameSize(orientation), layers
    // united. For a picture larger than that, a theme's skin comes in twice the pixels.
    const QImage& Skin(const ScreenState& state, QSize pictureSize);

private:
    QString m_key;
    QImage m_skin;
};

// The frame without its texts: the picture placed and cut, the skin over it. Format_RGB16 in the canvas size
// of the state's orientation. picture may be null (black) and of any size.
QImage ComposeBackground(const ScreenState& state, const QImage& picture, SkinCache& skins);

// The same background magnified, for a window that shows the panel larger than it is: composed at size
// instead of enlarged, so that it is sharp, with exactly the panel's veil. Format_RGB32.
QImage ComposeMagnifiedBackground(const ScreenState& state, const QImage& picture, SkinCache& skins,
                                  QSize size);

// background with all texts of the state over it, the same size and format.
QImage ComposeFrame(const ScreenState& state, const QImage& background, const ItemTexts& texts);

// How strong the custom layouts' veil is over this placed picture of panel size.
double CustomVeilStrength(const ScreenState& state, const QImage& placed);

}  // namespace kivo
