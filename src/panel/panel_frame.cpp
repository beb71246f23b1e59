#include "panel/panel_frame.h"

#include <QCryptographicHash>
#include <QDataStream>

namespace kivo {

namespace {

template <typename Value, std::size_t size>
void Put(QDataStream& out, const std::array<Value, size>& values) {
    for (const Value& value : values) {
        out << value;
    }
}

// Without the samples: the panel never shows them.
void Put(QDataStream& out, const LayoutRecord& layout) {
    out << layout.xPt << layout.yPt << layout.xZoom << layout.yZoom << layout.dim << layout.blur
        << layout.highlight;
    Put(out, layout.shown);
    Put(out, layout.selected);
    Put(out, layout.tile);
    Put(out, layout.textRect);
    out << layout.picture << layout.freeText << layout.defaultPicture << layout.sizeIndex
        << layout.colorIndex;
}

QByteArray Bytes(const ScreenState& state, int drawing) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << drawing << state.custom << int(state.theme) << state.style << state.variant
        << int(state.orientation);
    Put(out, state.layout);
    Put(out, state.slotItems);
    out << state.textRow << int(state.language);
    Put(out, state.captions);
    return bytes;
}

}  // namespace

SharedFrame MakePanelFrame(const ScreenState& state, const QImage& background, int drawing) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(Bytes(state, drawing));
    // Row by row: what pads a row is not the picture's.
    for (int y = 0; y < background.height(); ++y) {
        hash.addData(reinterpret_cast<const char*>(background.constScanLine(y)), background.width() * 2);
    }
    return std::make_shared<const PanelFrame>(PanelFrame{state, background, hash.result().toHex()});
}

}  // namespace kivo
