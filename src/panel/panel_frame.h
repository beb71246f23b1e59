#pragma once

// A whole frame without its texts, as one apply asked for it. A value that never changes once it is made;
// threads share it.

#include <QByteArray>
#include <QImage>
#include <memory>

#include "compose/panel_background.h"
#include "compose/screen_state.h"
#include "panel/panel_light.h"

namespace kivo {

// What a frame is composed with.
struct FramePicture {
    QImage image;
    // In the place of the picture that the state names: shown whole, whatever its trim frame.
    bool isStandIn = false;
};

// The way in which states are drawn. One more whenever a state gives another picture than it did: a
// background that was saved before is not believed then, so the panel gets at the next start what the window
// shows.
constexpr int kFrameDrawing = 2;

struct PanelFrame {
    ScreenState state;
    PanelBackground background;  // its image: Format_RGB16, canvas size
    QByteArray id;               // 40 hexadecimal digits; equal ids put the same picture on a panel
    // Texts are drawn as ever; what is sent of the frame, and later of its texts, is dimmed.
    PanelLight light = PanelLight::Full;
};

using SharedFrame = std::shared_ptr<const PanelFrame>;

// The id covers the background's pixels, its accent and everything of the state that decides a picture;
// captions, ticks and free text are drawn over the background, so the pixels alone do not tell two frames
// apart.
SharedFrame MakePanelFrame(const ScreenState& state, const PanelBackground& background,
                           int drawing = kFrameDrawing);

}  // namespace kivo
