#include "device/screen_handle.h"

#include <utility>

namespace kivo {

SharedScreenHandle ScreenHandle::Open(HidApi& api, std::recursive_mutex& deviceMutex,
                                      const QByteArray& path) {
    const std::lock_guard lock(deviceMutex);
    HidHandle* const handle = api.OpenPath(path);
    if (handle == nullptr) {
        return nullptr;
    }
    return std::make_shared<ScreenHandle>(api, deviceMutex, path, handle);
}

ScreenHandle::ScreenHandle(HidApi& api, std::recursive_mutex& deviceMutex, QByteArray path, HidHandle* handle)
    : m_api(api), m_deviceMutex(deviceMutex), m_path(std::move(path)), m_handle(handle) {}

ScreenHandle::~ScreenHandle() {
    const std::lock_guard lock(m_deviceMutex);
    m_api.Close(m_handle);
}

std::vector<HidDeviceInfo> ScreenHandle::Identify() const {
    const std::lock_guard lock(m_deviceMutex);
    return m_api.Identify(m_handle);
}

int ScreenHandle::Write(const quint8* data, std::size_t length) {
    const std::lock_guard lock(m_writeMutex);
    return m_api.Write(m_handle, data, length);
}

int ScreenHandle::SendFeatureReport(const quint8* data, std::size_t length) {
    const std::lock_guard lock(m_writeMutex);
    return m_api.SendFeatureReport(m_handle, data, length);
}

}  // namespace kivo
