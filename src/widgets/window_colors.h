#pragma once

// The colours of the window and of everything in it. The only place where they are written down.

#include <QColor>

namespace kivo::window_colors {

// The window's ground is a gradient.
constexpr QColor kGroundTop(0x14, 0x1B, 0x23);
constexpr QColor kGroundFoot(0x0C, 0x11, 0x16);
constexpr QColor kCard(0x17, 0x1F, 0x28);
constexpr QColor kCardEdge(0x2A, 0x36, 0x43);
constexpr QColor kRaised(0x1E, 0x28, 0x32);  // bars and pop-ups
constexpr QColor kRaisedEdge(0x32, 0x40, 0x4E);
constexpr QColor kWell(0x0D, 0x13, 0x19);  // preview, tabs, switch, combo
constexpr QColor kHoverFill(0x1B, 0x25, 0x30);
constexpr QColor kSelectedFill(0x22, 0x30, 0x3C);

constexpr QColor kTextHigh(0xF2, 0xF5, 0xF8);
constexpr QColor kTextBody(0xD3, 0xDA, 0xE1);  // sentences, and the words beside a ticked box
constexpr QColor kTextMid(0xAE, 0xB9, 0xC4);
constexpr QColor kTextLow(0x84, 0x91, 0x9E);

// White never stands on the bright accent, it stands on the deep one.
constexpr QColor kAccentBright(0x4F, 0xE0, 0xC0);  // lines, ticks, checks, focus
constexpr QColor kAccentDeep(0x0C, 0x75, 0x61);    // fills under white text
constexpr QColor kAccentDeepHover(0x0E, 0x80, 0x69);
constexpr QColor kAccentDeepPress(0x0A, 0x62, 0x51);
constexpr QColor kAccentDeepEdge(0x16, 0x94, 0x7C);
constexpr QColor kOnAccent(0x06, 0x23, 0x1D);

constexpr QColor kWarning(0xFF, 0xB4, 0x5A);
constexpr QColor kDelete(0xFF, 0x6B, 0x5E);
constexpr QColor kDeleteFill(0x36, 0x2A, 0x31);  // the colour thinned over a message's panel
constexpr QColor kDeleteFillHover(0x48, 0x31, 0x36);
constexpr QColor kDeleteFillPress(0x2C, 0x22, 0x28);
constexpr QColor kDeleteEdge(0x8C, 0x44, 0x43);

constexpr QColor kButton(0x12, 0x19, 0x20);
constexpr QColor kButtonEdge(0x33, 0x41, 0x4E);
constexpr QColor kButtonText(0xC3, 0xCC, 0xD5);
constexpr QColor kButtonEdgeHover(0x46, 0x56, 0x64);
constexpr QColor kButtonEdgeOff(0x1D, 0x26, 0x2F);
constexpr QColor kButtonTextOff(0x5A, 0x65, 0x70);

constexpr QColor kChoiceIcon(0x82, 0x8C, 0x96);  // the half of a switch that is not chosen
constexpr QColor kChoiceOff(0x4A, 0x55, 0x60);   // of a switch that cannot be used
constexpr QColor kOutline(0x66, 0x73, 0x7F);     // check box, dashed cell, black colour dot
constexpr QColor kDotRing(0x4B, 0x59, 0x66);     // round the colour that is in use

constexpr QColor kTrack(0x10, 0x16, 0x1D);  // scroll bar, progress
constexpr QColor kThumb(0x3A, 0x48, 0x55);
constexpr QColor kThumbHover(0x4B, 0x5A, 0x68);
constexpr QColor kListChosen(0x2A, 0x37, 0x43);  // row of a combo's list
constexpr QColor kToolTip(0x26, 0x31, 0x3C);
constexpr QColor kToolTipEdge(0x3D, 0x4C, 0x5A);

constexpr QColor kMessagePanel(0x1A, 0x23, 0x2D);
constexpr QColor kScrim(0x06, 0x09, 0x0D, 158);  // .62: what a message box lays over the window
constexpr QColor kBadge(0x0E, 0x13, 0x19, 224);  // .88: disc under the delete cross

}  // namespace kivo::window_colors
