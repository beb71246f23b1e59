#pragma once

// The HID devices as a report for support tells of them: what they are, what this user may do with them, who
// holds them. Nothing is opened, so it never waits for a device that hangs. Any thread.

#include <QString>
#include <QStringList>

#include "device/hidraw_sysfs.h"

namespace kivo {

// Where this system tells of them. Linux: the folders of the kernel; elsewhere they are not looked at.
struct HidNodePlaces {
    QString classFolder = QLatin1String(kHidrawFolder);
    QString nodeFolder = QStringLiteral("/dev");
    QString processFolder = QStringLiteral("/proc");
};

// A line for each node, those of the screen first and named so: ids, release, usages, rights, holders. Only
// ids of other devices, no names: they are nobody's business. A further line tells how many processes could
// not be asked what they hold.
QStringList ListHidNodes(const HidNodePlaces& places = {});

}  // namespace kivo
