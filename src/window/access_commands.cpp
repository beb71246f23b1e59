#include "window/access_commands.h"

#include "device/screen_device_table.h"

namespace kivo {

namespace {

QString HexId(quint32 id) {
    return QStringLiteral("%1").arg(id, 4, 16, QLatin1Char('0'));
}

}  // namespace

QString AccessCommands() {
    // The package's rule has the same name, so that this one takes its place instead of standing beside it.
    return QStringLiteral(
               "echo 'ACTION!=\"remove\", SUBSYSTEM==\"hidraw\", KERNEL==\"hidraw*\", "
               "ATTRS{idVendor}==\"%1\", ATTRS{idProduct}==\"%2\", TAG+=\"uaccess\"' | "
               "sudo tee /etc/udev/rules.d/60-kivo-screen.rules &&\n"
               "sudo udevadm control --reload && "
               "sudo udevadm trigger --action=change --subsystem-match=hidraw")
        .arg(HexId(kScreenVendorId), HexId(kScreenProductId));
}

}  // namespace kivo
