#pragma once

// The picture behind a layout, or what stands in for it: the layout's default picture, else the program's.
// Preview and panel decide by the same rule.

#include <QImage>

#include <optional>

#include "compose/screen_state.h"
#include "pictures/picture.h"

namespace kivo {

class PictureSource;

struct LayoutPicture {
    QImage image;
    // Why the picture that was chosen is not shown; None: it is.
    PictureFailure failure = PictureFailure::None;
    bool IsStandIn() const { return failure != PictureFailure::None; }
};

// What is known now; nothing while it is being read, which is asked for. The window's thread.
std::optional<LayoutPicture> KnownLayoutPicture(PictureSource& source, const ScreenState& state);

// Looks at the file and waits for the outcome, see PictureSource::Await. Nothing when the source stops. Not
// on the window's thread.
std::optional<LayoutPicture> AwaitLayoutPicture(PictureSource& source, const ScreenState& state);

}  // namespace kivo
