#include "device/udev_event.h"

#include <QRegularExpression>

#include "device/interface_name.h"

namespace kivo {

namespace {

constexpr int kHexadecimal = 16;

// The kernel names the parents of a hidraw node: the HID device "bus:vendor:product.number", all hexadecimal
// (bus 3 is USB), below the USB interface "bus-ports:configuration.interface", the last two decimal.
const QRegularExpression& UsbHidPath() {
    static const QRegularExpression path(
        QStringLiteral("(?:/\\d+-[\\d.]+:\\d+\\.(?<interface>\\d+))?"
                       "/0003:(?<vid>[0-9A-F]{4}):(?<pid>[0-9A-F]{4})\\.[0-9A-F]{4,}/hidraw/hidraw\\d+$"));
    return path;
}

}  // namespace

std::optional<DeviceChange> InterpretUdevEvent(const UdevEvent& event) {
    const bool arrived = event.action == "add" || event.action == "change";
    if (!arrived && event.action != "remove") {
        return std::nullopt;
    }
    const QRegularExpressionMatch path = UsbHidPath().match(QString::fromLatin1(event.devicePath));
    if (!path.hasMatch()) {
        return std::nullopt;
    }
    const auto id = [&path](const char* group) {
        return path.captured(QLatin1String(group)).toUInt(nullptr, kHexadecimal);
    };
    bool isNumber = false;
    const int number = path.captured(QLatin1String("interface")).toInt(&isNumber);
    return DeviceChange{
        MakeInterfaceName(id("vid"), id("pid"), isNumber ? number : -1, QString::fromLocal8Bit(event.node)),
        arrived};
}

}  // namespace kivo
