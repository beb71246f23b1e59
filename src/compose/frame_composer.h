#pragma once

// A whole frame: picture, glass, texts. Pure functions of a state; the threads that send frames call
// them, previews and contact sheets do too.

#include <QImage>

#include "compose/panel_background.h"
#include "compose/screen_state.h"
#include "compose/skin_cache.h"

namespace kivo {

// The frame without its texts: the picture placed and cut, frosted under glass, and the glass over it.
// Format_RGB16 in the canvas size of the state's orientation. picture may be null (black) and of any size.
PanelBackground ComposeBackground(const ScreenState& state, const QImage& picture, SkinCache& skins);

// The same background magnified, for a window that shows the panel larger than it is: composed at size
// instead of enlarged, so that it is sharp, with exactly the panel's frost, glass and accent. Format_RGB32.
// bare: items without a chip, which the window hides for now.
PanelBackground ComposeMagnifiedBackground(const ScreenState& state, const QImage& picture, SkinCache& skins,
                                           QSize size, const ItemFlags& bare = {});

// background with all texts of the state over it, the same size and format.
QImage ComposeFrame(const ScreenState& state, const PanelBackground& background, const ItemTexts& texts);

}  // namespace kivo
