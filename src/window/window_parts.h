#pragma once

// What the window is made of: its form, its pages, their tools and lines, and its texts. For the sources of
// MainWindow, which wire them.

#include "editor/color_bar.h"
#include "editor/edit_bar.h"
#include "pictures/picture_list.h"
#include "ui_main_window.h"
#include "widgets/exit_message_box.h"
#include "window/custom_page.h"
#include "window/edit_hint.h"
#include "window/picture_choice.h"
#include "window/picture_looks.h"
#include "window/picture_notice.h"
#include "window/restore_offer.h"
#include "window/state_line.h"
#include "window/theme_page.h"
#include "window/two_way_choice.h"
#include "window/window_looks.h"
#include "window/window_text.h"
