#pragma once

// How bright the panel is to be, and why. Plain values and pure functions; any thread.

#include <QFlags>
#include <QTime>

#include "config/away_rules.h"

namespace kivo {

enum class PanelLight {
    Full,
    Dimmed,  // everything that is shown, less bright
    Black,   // a black frame without values
};

// Why the panel is not as bright as usual.
enum class DarkReason {
    Asked = 0x01,  // by a second start
    Locked = 0x02,
    Asleep = 0x04,  // or about to be
    ScreenSaver = 0x08,
    NightBlack = 0x10,
    NightDimmed = 0x20,
    Ending = 0x40,  // the program
};
Q_DECLARE_FLAGS(DarkReasons, DarkReason)
Q_DECLARE_OPERATORS_FOR_FLAGS(DarkReasons)

// What goes on around the program, whatever the person has ticked.
struct AwayFacts {
    bool isAsked = false;
    bool isLocked = false;
    bool isAsleep = false;
    bool isSaverOn = false;
    bool isEnding = false;
    QTime localTime;
};

// The program's end is the only reason where it ends, or there is none.
DarkReasons DarkReasonsFor(const AwayRules& rules, const AwayFacts& facts);

PanelLight LightFor(DarkReasons reasons);

}  // namespace kivo
