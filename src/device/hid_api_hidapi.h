#pragma once

// The real devices of this machine, through hidapi.

#include "device/hid_api.h"

namespace kivo {

class HidapiHidApi final : public HidApi {
public:
    int Init() override;
    std::vector<HidDeviceInfo> Enumerate(quint16 vendorId, quint16 productId) override;
    HidHandle* OpenPath(const QByteArray& path) override;
    bool IsDenied(const QByteArray& path) override;
    std::vector<HidDeviceInfo> Identify(HidHandle* handle) override;
    QByteArray NodeStamp(const QByteArray& path) override;
    QByteArray PanelKey(const QByteArray& path) override;
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override;
    int SendFeatureReport(HidHandle* handle, const quint8* data, std::size_t length) override;
    void Close(HidHandle* handle) override;
    int Exit() override;
};

}  // namespace kivo
