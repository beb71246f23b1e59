#pragma once

// Every state that the window can tell of the screen.

#include <QTest>
#include <array>

#include "panel/panel_status.h"

namespace kivo::test {

struct ToldState {
    const char* name;
    PanelStatus status;
    bool isAmber;
    const char* english;
};

inline const std::array<ToldState, 11>& ToldStates() {
    using Condition = PanelCondition;
    static const std::array<ToldState, 11> states{{
        {"no screen", {Condition::NoScreen, false, false, {}, {}}, true, "No screen"},
        {"no screen, frame owed",
         {Condition::NoScreen, false, true, {}, {}},
         true,
         "No screen; the picture waits for it"},
        {"software panel unplugged", {Condition::NoScreen, true, false, {}, {}}, true, "No screen"},
        {"denied",
         {Condition::Denied, false, true, {}, "/dev/hidraw3"},
         true,
         "No permission to open the screen"},
        {"refusing",
         {Condition::Refusing, false, true, {}, {}},
         true,
         "Screen busy; another program may be using it"},
        {"connected", {Condition::Connected, false, false, {}, {}}, false, "Connected"},
        {"software panel", {Condition::Connected, true, false, {}, {}}, false, "Software panel"},
        {"sending", {Condition::Sending, false, true, {}, {}}, false, "Sending…"},
        {"sent", {Condition::Sent, false, false, QTime(8, 5, 59), {}}, false, "Sent at 08:05"},
        {"sent in the evening", {Condition::Sent, true, false, QTime(23, 58), {}}, false, "Sent at 23:58"},
        {"trying again", {Condition::TryingAgain, false, false, {}, {}}, true, "Trying again…"},
    }};
    return states;
}

inline constexpr std::array<const char*, 3> kLocales{"zh_CN", "en_US", "ru_RU"};

// A row for each state in each language: "state" is its index.
inline void AddStatesInAllLanguages() {
    QTest::addColumn<int>("state");
    QTest::addColumn<QString>("locale");
    for (const char* locale : kLocales) {
        for (size_t state = 0; state < ToldStates().size(); ++state) {
            QTest::addRow("%s, %s", ToldStates()[state].name, locale)
                << int(state) << QString::fromLatin1(locale);
        }
    }
}

}  // namespace kivo::test
