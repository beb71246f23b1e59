#pragma once

#include "device/screen_session.h"

namespace kivo::test {

// As after a listing that found the first screen, with the paths "c" and "d".
inline void MarkScreenFound(ScreenSession& session) {
    session.InitDeviceTable();
    session.ChangeTable([](ScreenDeviceTable& table) {
        SetText(table.entries.at(0).controlPath, "c");
        SetText(table.entries.at(0).dataPath, "d");
        table.entries.at(0).controlFound = 1;
        table.entries.at(0).dataFound = 1;
    });
}

}  // namespace kivo::test
