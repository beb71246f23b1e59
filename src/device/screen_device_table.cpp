#include "device/screen_device_table.h"

#include <algorithm>

namespace kivo {

namespace {

bool HasIds(const ScreenDeviceEntry& entry, const HidDeviceInfo& device) {
    return entry.vendorId == device.vendorId && entry.productId == device.productId;
}

bool HasAcceptedRelease(const ScreenDeviceEntry& entry, const HidDeviceInfo& device) {
    if (entry.releaseMax == 0) {
        return true;
    }
    return device.releaseNumber >= entry.releaseMin && device.releaseNumber <= entry.releaseMax;
}

template <std::size_t size>
bool Passes(const std::array<char, size>& filter, const HidDeviceInfo& device) {
    return device.path.contains(TextOf(filter));
}

}  // namespace

ScreenDeviceEntry DefaultScreenEntry() {
    ScreenDeviceEntry entry;
    entry.vendorId = kScreenVendorId;
    entry.productId = kScreenProductId;
    entry.controlUsage = 0x0001;
    entry.controlUsagePage = 0x000C;  // Consumer
    entry.dataUsage = 0x0001;
    entry.dataUsagePage = 0xFFA0;  // vendor-defined
    SetText(entry.name, QByteArray(kScreenName));
    return entry;
}

void ResetScreenTable(ScreenDeviceTable& table) {
    table.count = 1;
    table.entries.fill(DefaultScreenEntry());
}

bool IsControlCollection(const ScreenDeviceEntry& entry, const HidDeviceInfo& device) {
    return HasIds(entry, device) && device.usage == entry.controlUsage &&
           device.usagePage == entry.controlUsagePage && HasAcceptedRelease(entry, device) &&
           Passes(entry.controlPathFilter, device);
}

bool IsDataCollection(const ScreenDeviceEntry& entry, const HidDeviceInfo& device) {
    return HasIds(entry, device) && device.usage == entry.dataUsage &&
           device.usagePage == entry.dataUsagePage && HasAcceptedRelease(entry, device) &&
           Passes(entry.dataPathFilter, device);
}

void NoteDevice(ScreenDeviceTable& table, const HidDeviceInfo& device) {
    const std::size_t count = std::min<std::size_t>(table.count, table.entries.size());
    for (std::size_t i = 0; i < count; ++i) {
        ScreenDeviceEntry& entry = table.entries.at(i);
        if (IsControlCollection(entry, device)) {
            SetText(entry.controlPath, device.path);
            entry.controlFound = 1;
        }
        // Not "else": an entry may name the same collection for both.
        if (IsDataCollection(entry, device)) {
            SetText(entry.dataPath, device.path);
            entry.dataFound = 1;
        }
    }
}

}  // namespace kivo
