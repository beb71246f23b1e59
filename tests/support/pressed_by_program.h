#pragma once

// Presses by assistive programs.

#include <QAccessible>
#include <QStringList>

namespace kivo::test {

// Whether it can be pressed so.
inline bool OffersPress(QAccessibleInterface* told) {
    QAccessibleActionInterface* const actions = told->actionInterface();
    if (actions == nullptr) {
        return false;
    }
    const QStringList names = actions->actionNames();
    return names.contains(QAccessibleActionInterface::pressAction()) ||
           names.contains(QAccessibleActionInterface::toggleAction());
}

inline void Press(QAccessibleInterface* told) {
    told->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
}

}  // namespace kivo::test
