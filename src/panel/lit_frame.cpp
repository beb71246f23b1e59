#include "panel/lit_frame.h"

#include <QCryptographicHash>

namespace kivo {

namespace {

SharedFrame MakeBlackFrame() {
    ScreenState nothing;
    nothing.custom = true;  // with empty slots and no text: no value has a place
    PanelBackground black;
    black.image = QImage(CanvasSize(nothing.orientation), QImage::Format_RGB16);
    black.image.fill(Qt::black);
    PanelFrame frame = *MakePanelFrame(nothing, black);
    frame.light = PanelLight::Black;
    return std::make_shared<const PanelFrame>(std::move(frame));
}

}  // namespace

const SharedFrame& BlackFrame() {
    static const SharedFrame frame = MakeBlackFrame();
    return frame;
}

SharedFrame InLight(const SharedFrame& frame, PanelLight light) {
    if (light == PanelLight::Black) {
        return BlackFrame();
    }
    if (light == PanelLight::Full || !frame) {
        return frame;
    }
    PanelFrame lit = *frame;
    lit.id = IdInLight(frame, light);
    lit.light = light;
    return std::make_shared<const PanelFrame>(std::move(lit));
}

QByteArray IdInLight(const SharedFrame& frame, PanelLight light) {
    if (light == PanelLight::Black) {
        return BlackFrame()->id;
    }
    if (!frame) {
        return {};
    }
    if (light == PanelLight::Full) {
        return frame->id;
    }
    return QCryptographicHash::hash(frame->id + "dimmed", QCryptographicHash::Sha1).toHex();
}

}  // namespace kivo
