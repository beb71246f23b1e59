#include "svg_drawing.h"
#include "window_picture.h"

namespace kivo::artwork {

namespace {

using namespace window;

// Deliberate: the orange is kept under the name red.
const std::vector<WindowPicture>& ColourPictures() {
    constexpr const char* kButton = "colour_button";
    constexpr const char* kIndicator = "colour_indicator";
    static const std::vector<WindowPicture> pictures = {
        {"white", kButton, QColor(255, 255, 255)}, {"font_white", kIndicator, QColor(255, 255, 255)},
        {"black", "colour_button_black"},          {"font_black", kIndicator, QColor(0, 0, 0)},
        {"red", kButton, QColor(255, 100, 34)},    {"font_orange", kIndicator, QColor(255, 100, 34)},
        {"yellow", kButton, QColor(245, 224, 33)}, {"font_yellow", kIndicator, QColor(245, 224, 33)},
        {"blue", kButton, QColor(66, 131, 228)},   {"font_blue", kIndicator, QColor(66, 131, 228)},
        {"green", kButton, QColor(58, 200, 163)},  {"font_green", kIndicator, QColor(58, 200, 163)},
    };
    return pictures;
}

}  // namespace

std::vector<WindowPicture> WindowPictures() {
    std::vector<WindowPicture> pictures = {
        {"logo_mark", "logo_mark"},
        {"close_n", "close", kTextMid},
        {"close_h", "close", kDelete},
        {"close_s", "close", kDeletePressed},
        {"mini_n", "minimise", kTextMid},
        {"mini_h", "minimise", kTextHigh},
        {"mini_s", "minimise", kTextLow},
        {"waring_icon", "warning"},
        {"add", "add"},
        {"delete", "delete"},
        {"seting_bt_02_n", "check_off"},
        {"seting_bt_02_s", "check_on"},
        {"edit_bk", "tool_strip"},
        {"Union", "bubble"},
        {"cut1", "plate_quiet"},
        {"cut2", "plate_pressed"},
        {"ret1", "plate_quiet"},
        {"ret2", "plate_pressed"},
        {"icon_trim_n", "trim", kQuietText},
        {"icon_trim_s", "trim", Qt::white},
        {"icon_back_n", "back", kQuietText},
        {"icon_back_s", "back", Qt::white},
        {"icon_type_w", "type"},
        {"drag", "drag"},
        {"drag2", "drag2"},
        {"orient_h_n", "orient_h", kIconQuiet},
        {"orient_h_s", "orient_h", kAccent},
        {"orient_v_n", "orient_v", kIconQuiet},
        {"orient_v_s", "orient_v", kAccent},
        {"five_n", "five", kIconQuiet},
        {"five_s", "five", kAccent},
        {"one_n", "one", kIconQuiet},
        {"one_s", "one", kAccent},
        {"remote_n", "remote", Qt::white},
        {"remote_h", "remote", kAccent},
    };
    pictures.insert(pictures.end(), ColourPictures().begin(), ColourPictures().end());
    return pictures;
}

QImage Render(const WindowPicture& picture, int scale) {
    SvgDrawing drawing{QLatin1String(picture.drawing)};
    if (picture.colour.isValid()) {
        drawing.SetColour(picture.colour);
    }
    return drawing.Picture(drawing.Size() * scale);
}

QImage DrawLogo(int side) {
    constexpr int kLargestOfItsOwn = 48;
    const QString name =
        side > kLargestOfItsOwn ? QStringLiteral("logo") : QStringLiteral("logo_%1").arg(side);
    return SvgDrawing(name).Picture(QSize(side, side));
}

}  // namespace kivo::artwork
