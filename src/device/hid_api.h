#pragma once

// The seam between the program and USB HID devices. It has hidapi's own shape; behind it stand hidapi itself
// (hid_api_hidapi.h), the software panel (virtualscreen/virtual_hid_api.h), the report log that wraps either
// of them (report_log.h) and the stand-ins of the tests.
//
// Threads: Init, Enumerate, OpenPath, Identify, Close and Exit are never called by two threads at once
// (ScreenSession sees to it); everything else may run at any time, on several threads, Write and
// SendFeatureReport not twice at once on one handle.

#include <QByteArray>
#include <QString>
#include <cstddef>
#include <vector>

namespace kivo {

// What the system says about one top-level collection of a HID device.
struct HidDeviceInfo {
    QByteArray path;  // what OpenPath takes, in the encoding of the back end
    quint16 vendorId = 0;
    quint16 productId = 0;
    quint16 releaseNumber = 0;  // binary coded decimal
    QString manufacturer;
    QString product;
    quint16 usagePage = 0;
    quint16 usage = 0;
    int interfaceNumber = -1;  // -1: not known
};

// An open device. Only the back end that made it knows what is in it; it goes back through HidApi::Close.
class HidHandle {
public:
    HidHandle() = default;
    HidHandle(const HidHandle&) = delete;
    HidHandle& operator=(const HidHandle&) = delete;
    virtual ~HidHandle() = default;
};

class HidApi {
public:
    HidApi() = default;
    HidApi(const HidApi&) = delete;
    HidApi& operator=(const HidApi&) = delete;
    virtual ~HidApi() = default;

    // 0 on success. May be called again at any time.
    virtual int Init() = 0;

    // Devices in the system's order; id 0 stands for any.
    virtual std::vector<HidDeviceInfo> Enumerate(quint16 vendorId, quint16 productId) = 0;

    // Null when the device is gone, or may not be opened. The caller closes it.
    virtual HidHandle* OpenPath(const QByteArray& path) = 0;

    // Whether the device is there, but this user has no right to open it. What stands before another
    // interface hands the question on.
    virtual bool IsDenied(const QByteArray& /*path*/) { return false; }

    // What an open node says of itself, a record for each of its top-level collections: ids, usages and
    // interface number; the strings are left empty. Empty: the back end cannot tell.
    virtual std::vector<HidDeviceInfo> Identify(HidHandle* /*handle*/) { return {}; }

    // Differs as soon as another node has taken the path's place. Empty when nothing is known: there is no
    // node, or the back end has no such thing.
    virtual QByteArray NodeStamp(const QByteArray& /*path*/) { return {}; }

    // Tells one panel from another of its kind: its serial number, else the port it is plugged into. Empty
    // when neither is known.
    virtual QByteArray PanelKey(const QByteArray& /*path*/) { return {}; }

    // Both take a whole report with the report id as byte 0 and give the number of bytes taken, or a negative
    // value. Write blocks until the device took the report; a device that hangs holds it up for seconds.
    virtual int Write(HidHandle* handle, const quint8* data, std::size_t length) = 0;
    virtual int SendFeatureReport(HidHandle* handle, const quint8* data, std::size_t length) = 0;

    virtual void Close(HidHandle* handle) = 0;

    // 0 on success.
    virtual int Exit() = 0;
};

}  // namespace kivo
