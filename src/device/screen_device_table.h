#pragma once

// The table of the known kinds of screen: what to look for among the HID devices, and the paths that were
// found. Plain values and pure functions; ScreenSession owns the one table of the program and guards it.

#include <array>

#include "device/hid_api.h"

namespace kivo {

constexpr quint32 kScreenVendorId = 0x04D9;
constexpr quint32 kScreenProductId = 0xFD01;
constexpr char kScreenName[] = "Kivo Screen";

struct ScreenDeviceEntry {
    quint32 vendorId = 0;
    quint32 productId = 0;
    quint32 releaseMin = 0;  // lowest accepted release number
    quint32 releaseMax = 0;  // highest accepted release number; 0 switches the release test off
    quint32 controlUsage = 0;
    quint32 controlUsagePage = 0;
    quint32 dataUsage = 0;
    quint32 dataUsagePage = 0;
    // Texts are zero-terminated; write them with SetText, which cuts what does not fit.
    std::array<char, 255> controlPathFilter{};  // a control path must contain it; empty: every path does
    std::array<char, 255> dataPathFilter{};
    std::array<char, 255> controlPath{};
    std::array<char, 255> dataPath{};
    quint32 controlFound = 0;  // 1 once controlPath is filled
    quint32 dataFound = 0;     // 1 once dataPath is filled
    std::array<char, 256> name{};
};

constexpr std::size_t kScreenTableCapacity = 200;

// Only the first `count` records are ever looked at. About 260 KB: keep it off the stack.
struct ScreenDeviceTable {
    quint32 count = 0;
    std::array<ScreenDeviceEntry, kScreenTableCapacity> entries{};
};

// The one kind of screen that there is today: ids, usages and name filled, no release test, no filters, no
// paths.
ScreenDeviceEntry DefaultScreenEntry();

// Writes the defaults into every record and sets the count to 1.
void ResetScreenTable(ScreenDeviceTable& table);

// Whether the device is the entry's control or data collection: ids, usage, usage page, release and path
// filter.
bool IsControlCollection(const ScreenDeviceEntry& entry, const HidDeviceInfo& device);
bool IsDataCollection(const ScreenDeviceEntry& entry, const HidDeviceInfo& device);

// Notes the device's path in every entry that it belongs to; a later device takes an earlier one's place.
void NoteDevice(ScreenDeviceTable& table, const HidDeviceInfo& device);

// Copies as much of the text as fits with its closing zero, and clears the rest.
template <std::size_t size>
void SetText(std::array<char, size>& field, const QByteArray& text) {
    field.fill('\0');
    const int fitting = qMin(text.size(), static_cast<int>(size) - 1);
    for (int i = 0; i < fitting; ++i) {
        field[static_cast<std::size_t>(i)] = text.at(i);
    }
}

// The text up to its closing zero.
template <std::size_t size>
QByteArray TextOf(const std::array<char, size>& field) {
    return QByteArray(field.data(), static_cast<int>(qstrnlen(field.data(), size)));
}

}  // namespace kivo
