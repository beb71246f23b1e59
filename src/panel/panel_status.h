#pragma once

// What the window and the tray say about the panel. A value made from the panel's record (panel_record.h);
// any thread.

#include <QByteArray>
#include <QTime>

namespace kivo {

enum class PanelCondition {
    NoScreen,     // nothing to send to
    Denied,       // there, but this user has no right to open it
    Refusing,     // can be opened, but takes no report: another program may have it to itself
    Connected,    // all that is owed has been taken
    Sending,      // a whole frame is on its way
    Sent,         // a whole frame was taken a few seconds ago
    TryingAgain,  // part of what is owed was not taken; it is sent again by itself
};

struct PanelStatus {
    PanelCondition condition = PanelCondition::NoScreen;
    bool isSoftwarePanel = false;
    bool isFrameOwed = false;  // a whole frame waits for a screen that takes it
    QTime sentAt;              // Sent: local time at which the frame was taken
    QByteArray node;           // Denied: the device node, in the file system's encoding
};

inline bool operator==(const PanelStatus& a, const PanelStatus& b) {
    return a.condition == b.condition && a.isSoftwarePanel == b.isSoftwarePanel &&
           a.isFrameOwed == b.isFrameOwed && a.sentAt == b.sentAt && a.node == b.node;
}
inline bool operator!=(const PanelStatus& a, const PanelStatus& b) {
    return !(a == b);
}

}  // namespace kivo
