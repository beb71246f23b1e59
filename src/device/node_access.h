#pragma once

#include <QByteArray>

namespace kivo {

// Whether the device behind the path is there, but this user may not read and write it.
bool IsNodeDenied(const QByteArray& path);

// Keeps the node awake while hidapi opens it. An opening that finds the node asleep takes long, and hidapi
// does not survive a device that is pulled out in the middle of it; of a node that is awake there is no
// middle to speak of. Where opening does no such harm it does nothing.
class NodeHold {
public:
    // Waits as an opening does.
    explicit NodeHold(const QByteArray& path);
    NodeHold(const NodeHold&) = delete;
    NodeHold& operator=(const NodeHold&) = delete;
    ~NodeHold();

    // Whether the device went while it was waited for.
    bool IsGone() const { return m_isGone; }

private:
    int m_descriptor = -1;
    bool m_isGone = false;
};

}  // namespace kivo
