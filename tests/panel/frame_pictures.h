#pragma once

// Pictures for frames that are composed without a window: read when they are asked for.

#include <optional>

#include "compose/screen_state.h"
#include "panel/panel_frame.h"
#include "pictures/picture_reader.h"

namespace kivo::test {

inline std::optional<FramePicture> ReadFramePicture(const ScreenState& state) {
    return FramePicture{LoadPicture(PicturePath(state))};
}

}  // namespace kivo::test
