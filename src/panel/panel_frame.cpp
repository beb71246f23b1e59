#include "panel/panel_frame.h"

#include <QCryptographicHash>
#include <QDataStream>
#include <QIODevice>

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
        << layout.accentFromPicture << layout.highlight;
    Put(out, layout.shown);
    Put(out, layout.selected);
    Put(out, layout.tile);
    Put(out, layout.textRect);
    out << layout.picture << layout.freeText << layout.defaultPicture << layout.sizeIndex
        << layout.colorIndex;
}

QByteArray Bytes(const ScreenState& state, std::optional<QRgb> accent, int drawing) {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    out.setVersion(QDataStream::Qt_5_15);
    out << drawing << state.custom << int(state.theme) << state.style << state.variant
        << int(state.orientation);
    Put(out, state.layout);
    Put(out, state.slotItems);
    out << state.textRow << int(state.language);
    Put(out, state.captions);
    out << accent.has_value() << accent.value_or(0);
    return bytes;
}

}  // namespace

SharedFrame MakePanelFrame(const ScreenState& state, const PanelBackground& background, int drawing) {
    QCryptographicHash hash(QCryptographicHash::Sha1);
    hash.addData(Bytes(state, background.accent, drawing));
    // Row by row: what pads a row is not the picture's.
    const QImage& image = background.image;
    for (int y = 0; y < image.height(); ++y) {
        hash.addData(reinterpret_cast<const char*>(image.constScanLine(y)), image.width() * 2);
    }
    return std::make_shared<const PanelFrame>(PanelFrame{state, background, hash.result().toHex(), {}});
}

}  // namespace kivo
