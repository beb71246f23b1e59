#pragma once

// How the widgets of the window's form look, from the tokens of widgets/window_colors.h. GUI thread.

#include <QString>

namespace Ui {
class MainWindow;
}

namespace kivo {

// Pictures, looks and style sheets of everything in the form that looks the same on both pages.
void DressWindow(::Ui::MainWindow& ui);

// Path of a picture of the window.
QString SkinPath(const char* name);

}  // namespace kivo
