#pragma once

// One line of text on the panel: the family and its stand-ins, the measures of a size, and the fitting of a
// text into its rectangle. Needs a QGuiApplication. Any thread: fonts are made where they are used, only
// plain numbers are kept between calls.

#include <QFont>
#include <QPoint>
#include <QRect>
#include <QString>
#include <array>
#include <optional>

#include "model/interface_language.h"
#include "model/item_table.h"

namespace kivo {

// The family of everything the program writes.
QString FontFamily();

// Names the stand-ins for it on systems without it. Once, before the first text is drawn.
void InstallFontSubstitutes();

// The panel's font at that pixel size: regular, grey antialiasing (the panel's sub-pixel order is unknown).
QFont PanelFont(int pixelSize);

// Measures of the panel's font at one size, in pixels. Distances above and below are from the base line.
struct LineMetrics {
    int ascent = 0;       // of the font, what "drawn from the top" leaves above the base line
    int height = 0;       // of the font's line
    int lineSpacing = 0;  // from base line to base line
    int digitHeight =
        0;             // ink of the digits: what centring goes by, so that all texts of a size share a line
    int inkAbove = 0;  // ink of anything a value can hold
    int inkBelow = 0;
    int letterAbove = 0;  // ink of ordinary letters, which most signs keep within
    int letterBelow = 0;
    // The widest text that each value usually has, by item; nothing where there is no such text.
    struct UsualValue {
        int width = 0;  // its advance
        int above = 0;  // its ink, and that of all digits
        int below = 0;
    };
    std::array<UsualValue, kLiveValueCount> value{};
    std::array<UsualValue, kLiveValueCount> russianValue{};
    int digitWidth = 0;  // advance of the widest digit
    int colonWidth = 0;
    // All ten digits are equally wide and keep within their width: a new digit moves none of its neighbours
    // and reaches over none of them.
    bool separateDigits = false;
};
LineMetrics MetricsOf(int pixelSize);

enum class TextAlign {
    Centre,   // both ways, vertically by the digits' height
    Top,      // horizontally centred, from the top where the font's line fits the rectangle, else centred
    TopLeft,  // the same from the left edge
};

// Whether the widest text that a value usually has fits a rectangle at that size, centred.
bool UsualValueFits(int item, InterfaceLanguage language, int pixelSize, const QRect& rect);

// A text as it can be drawn inside its rectangle: smaller where it is too large, elided where that is not
// enough. axis: the line it is centred on, in pixels from the canvas's left edge, as far as that keeps it in
// the rectangle; by default the rectangle's middle.
struct FittedLine {
    QString text;
    int pixelSize = 0;
    int width = 0;    // advance of text in pixels
    QPoint baseLine;  // where the text starts
};
FittedLine FitLine(const QString& text, int pixelSize, const QRect& rect, TextAlign align,
                   std::optional<int> axis = std::nullopt);

}  // namespace kivo
