#pragma once

// Reads what a HID device says about its reports. Pure.

#include <QByteArray>
#include <vector>

namespace kivo {

struct HidUsage {
    quint16 page = 0;
    quint16 usage = 0;
};

// The usage of each top-level collection, in the order of the descriptor; up to the first item that is cut
// short.
std::vector<HidUsage> TopLevelUsages(const QByteArray& reportDescriptor);

}  // namespace kivo
