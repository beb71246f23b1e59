#include <windows.h>

#include <cfgmgr32.h>
#include <QVector>

#include "device/hid_interfaces_windows.h"
#include "device/hid_node_list.h"
#include "device/interface_name.h"
#include "device/screen_device_table.h"

namespace kivo {

namespace {

// The names of all HID interfaces that are there, from the system's own list.
QStringList InterfaceNames() {
    GUID kind = kHidInterfaces;
    ULONG length = 0;
    if (CM_Get_Device_Interface_List_SizeW(&length, &kind, nullptr, CM_GET_DEVICE_INTERFACE_LIST_PRESENT) !=
            CR_SUCCESS ||
        length == 0) {
        return {};
    }
    QVector<wchar_t> names(int(length), L'\0');
    if (CM_Get_Device_Interface_ListW(&kind, nullptr, names.data(), length,
                                      CM_GET_DEVICE_INTERFACE_LIST_PRESENT) != CR_SUCCESS) {
        return {};
    }
    // Each ends in a zero, and the list in one more.
    return QString::fromWCharArray(names.constData(), names.size()).split(QChar(), Qt::SkipEmptyParts);
}

}  // namespace

// Deliberate: rights and holders are not told. To know them a node would have to be opened, which may hang,
// and take the screen from the copy that uses it.
QStringList ListHidNodes(const HidNodePlaces& /*places*/) {
    QStringList screens;
    QStringList others;
    const QStringList names = InterfaceNames();
    for (const QString& name : names) {
        const InterfaceName parsed = ParseInterfaceName(name);
        const bool isScreen = parsed.vendorId == kScreenVendorId && parsed.productId == kScreenProductId;
        if (isScreen) {
            screens.append(name + (parsed.matched ? QStringLiteral("; the screen's data")
                                                  : QStringLiteral("; the screen's, not its data")));
        } else {
            others.append(QStringLiteral("%1:%2")
                              .arg(parsed.vendorId, 4, 16, QLatin1Char('0'))
                              .arg(parsed.productId, 4, 16, QLatin1Char('0')));
        }
    }
    return screens + others;
}

}  // namespace kivo
