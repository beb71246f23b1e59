#include "device/hidraw_sysfs.h"

#include <QFile>
#include <QList>

#include "device/panel_key.h"
#include "device/report_descriptor.h"

namespace kivo {

namespace {

constexpr int kHexadecimal = 16;

// Empty when it cannot be read.
QByteArray ContentOf(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// The folders of the HID device, and above it those of the USB interface and the USB device, where it is one.
QString HidFolder(const QString& classFolder, const QString& node) {
    return classFolder + QLatin1Char('/') + node + QLatin1String("/device");
}
QString InterfaceFolder(const QString& hidFolder) {
    return hidFolder + QLatin1String("/..");
}
QString UsbFolder(const QString& hidFolder) {
    return hidFolder + QLatin1String("/../..");
}

quint16 NumberOf(const QByteArray& hexadecimal) {
    return static_cast<quint16>(hexadecimal.toUInt(nullptr, kHexadecimal));
}

}  // namespace

std::vector<HidDeviceInfo> DescribeHidraw(const QString& classFolder, const QString& node) {
    const QString folder = HidFolder(classFolder, node);
    const QByteArray uevent = ContentOf(folder + QLatin1String("/uevent"));
    // "bus:vendor:product", all hexadecimal, of 4, 8 and 8 digits.
    const QList<QByteArray> id = PropertyOfUevent(uevent, "HID_ID").split(':');
    if (id.size() != 3) {
        return {};
    }
    HidDeviceInfo device;
    device.path = QFile::encodeName(QLatin1String("/dev/") + node);
    device.vendorId = NumberOf(id.at(1));
    device.productId = NumberOf(id.at(2));
    const QByteArray number = ContentOf(InterfaceFolder(folder) + QLatin1String("/bInterfaceNumber"));
    if (!number.isEmpty()) {
        device.interfaceNumber = NumberOf(number.trimmed());
        device.releaseNumber = NumberOf(ContentOf(UsbFolder(folder) + QLatin1String("/bcdDevice")).trimmed());
    }
    std::vector<HidDeviceInfo> collections;
    for (const HidUsage& usage : TopLevelUsages(ContentOf(folder + QLatin1String("/report_descriptor")))) {
        collections.push_back(device);
        collections.back().usagePage = usage.page;
        collections.back().usage = usage.usage;
    }
    if (collections.empty()) {
        collections.push_back(device);
    }
    return collections;
}

QByteArray PanelKeyOfHidraw(const QString& classFolder, const QString& node) {
    return PanelKeyOfUevent(ContentOf(HidFolder(classFolder, node) + QLatin1String("/uevent")));
}

}  // namespace kivo
