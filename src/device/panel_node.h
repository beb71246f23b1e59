#pragma once

// The node that the screen's data goes to: whether it is there, and whether it is still the screen's. Node
// numbers are given out again, so a path that was the screen's may be another device's, or the screen's other
// interface. A node is asked who it is when it is in doubt only; asking at every opening would cost the
// refresh a good part of its time. Part of ScreenSession.

#include <atomic>
#include <mutex>
#include <optional>

#include "device/screen_device_table.h"
#include "device/screen_handle.h"

namespace kivo {

enum class ScreenPresence {
    Absent,   // no node, one that cannot be opened, or another device's
    Denied,   // there, but this user has no right to open it
    Present,  // can be opened and is the screen's data collection
};

struct PanelSighting {
    ScreenPresence presence = ScreenPresence::Absent;
    QByteArray panelKey;  // as HidApi::PanelKey; empty unless present
    QByteArray path;      // of the data collection as the table has it; empty where it is not known
    QByteArray stamp;     // as HidApi::NodeStamp; empty unless present
};

class PanelNode {
public:
    // `deviceMutex` is held by whoever calls Look and Open. It and the interface must outlive the node and
    // every handle it gave out.
    PanelNode(HidApi& api, std::recursive_mutex& deviceMutex);

    // The next look, or the next opening, asks the node again. Any thread, never waits.
    void Doubt() { ++m_doubts; }

    // Opens and asks a node in doubt; else it costs one NodeStamp. The panel that is seen is the one that
    // Open is for from now on.
    PanelSighting Look(const ScreenDeviceEntry& entry);

    // A handle on the entry's data path, asked on this very handle when in doubt. Null when the node cannot
    // be opened, is not the screen's, or belongs to another panel than the one last looked at.
    SharedScreenHandle Open(const ScreenDeviceEntry& entry);

private:
    // What a node said, and when that holds.
    struct Answer {
        QByteArray path;
        QByteArray stamp;
        quint64 doubts = 0;
        bool isScreen = false;
        QByteArray panelKey;
    };

    // Whether m_answer is about the node that is there now.
    bool IsKnown(const QByteArray& path, const QByteArray& stamp) const;
    // Opens the path, whose node had this stamp a moment ago; afterwards m_answer is about the handle's node,
    // or is empty with a null handle.
    SharedScreenHandle OpenKnown(const ScreenDeviceEntry& entry, const QByteArray& stamp);
    Answer Ask(const ScreenDeviceEntry& entry, const ScreenHandle& handle) const;

    HidApi& m_api;
    std::recursive_mutex& m_deviceMutex;
    std::atomic<quint64> m_doubts{0};
    std::optional<Answer> m_answer;
    QByteArray m_panelKey;  // of the panel last looked at; empty until one with a key was
};

}  // namespace kivo
