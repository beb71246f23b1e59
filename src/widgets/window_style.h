#pragma once

// The colours of what Qt draws by itself: scroll bars, tool tips, menus, lists, and dialogs of the toolkit.
// GUI thread.

#include <QPalette>
#include <QString>

#include <functional>

#include "widgets/compositor.h"

class QApplication;

namespace kivo {

// For the whole program. Says nothing about check boxes and nothing about the widgets of Qt's own file
// dialog, which the palette below keeps readable.
QString WindowStyleSheet();

// Dark, from the window's colours.
QPalette WindowPalette();

// Both of them, what a style sheet cannot do (the corners of pop-ups, which are round where blends says that
// what lies outside of them can be seen through), and what assistive programs are told of the kit. At start,
// before the first widget; once more replaces it.
void ApplyWindowStyle(QApplication& application, std::function<bool()> blends = &BlendsWindows);

}  // namespace kivo
