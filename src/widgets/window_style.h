#pragma once

// The colours of what Qt draws by itself: scroll bars, tool tips, menus, lists, and dialogs of the toolkit.
// GUI thread.

#include <QPalette>
#include <QString>

class QApplication;

namespace kivo {

// For the whole program. Says nothing about check boxes and nothing about the widgets of Qt's own file
// dialog, which the palette below keeps readable.
QString WindowStyleSheet();

// Dark, from the window's colours.
QPalette WindowPalette();

// Both of them, what a style sheet cannot do (round corners of tool tips and menus), and what assistive
// programs are told of the kit. Once, at start, before the first widget.
void ApplyWindowStyle(QApplication& application);

}  // namespace kivo
