#pragma once

// When the panel is dark though nobody asks for it: what the person has ticked in the tray menu. Loading and
// saving: main thread.

#include <QTime>

namespace kivo {

enum class NightLight { Usual = 0, Dimmed = 1, Black = 2 };

struct AwayRules {
    bool darkAtLock = false;
    bool darkAtSleep = true;
    bool darkAtScreenSaver = false;
    bool darkAtExit = false;
    NightLight night = NightLight::Usual;
    // Minutes since midnight, by the clock on the wall. The first minute of the night, and the first after
    // it; a night may go over midnight. Two equal times are no night.
    int nightFrom = 22 * 60;
    int nightTo = 7 * 60;
};

bool operator==(const AwayRules& a, const AwayRules& b);
inline bool operator!=(const AwayRules& a, const AwayRules& b) {
    return !(a == b);
}

// Whether this is between the two times; whatever the night's light. Deliberate: by the clock on the wall
// alone, so that an hour that is left out or comes twice needs no rule.
bool IsNight(const AwayRules& rules, const QTime& localTime);

AwayRules LoadAwayRules();
// Whether they reached the file.
bool SaveAwayRules(const AwayRules& rules);

}  // namespace kivo
