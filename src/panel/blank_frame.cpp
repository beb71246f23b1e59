#include "panel/blank_frame.h"

namespace kivo {

SharedFrame MakeBlankFrame() {
    ScreenState nothing;
    nothing.custom = true;  // with empty slots and no text: no value has a place
    PanelBackground black;
    black.image = QImage(CanvasSize(nothing.orientation), QImage::Format_RGB16);
    black.image.fill(Qt::black);
    return MakePanelFrame(nothing, black);
}

}  // namespace kivo
