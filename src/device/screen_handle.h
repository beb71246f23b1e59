#pragma once

// An open interface of the screen that closes itself. Handed around as SharedScreenHandle, so that a thread
// that writes on it keeps it open while another one lets it go.

#include <memory>
#include <mutex>

#include "device/hid_api.h"

namespace kivo {

class ScreenHandle;
using SharedScreenHandle = std::shared_ptr<ScreenHandle>;

class ScreenHandle {
public:
    // Null when the path cannot be opened. `deviceMutex` is held for each open and close, never for a write;
    // it and the interface must outlive the handle.
    static SharedScreenHandle Open(HidApi& api, std::recursive_mutex& deviceMutex, const QByteArray& path);

    ScreenHandle(HidApi& api, std::recursive_mutex& deviceMutex, QByteArray path, HidHandle* handle);
    ScreenHandle(const ScreenHandle&) = delete;
    ScreenHandle& operator=(const ScreenHandle&) = delete;
    ~ScreenHandle();

    const QByteArray& Path() const { return m_path; }

    // As HidApi::Identify.
    std::vector<HidDeviceInfo> Identify() const;

    // As HidApi::Write and HidApi::SendFeatureReport. Threads that share the handle take turns: hidapi keeps
    // its error text in the handle.
    int Write(const quint8* data, std::size_t length);
    int SendFeatureReport(const quint8* data, std::size_t length);

private:
    HidApi& m_api;
    std::recursive_mutex& m_deviceMutex;
    std::mutex m_writeMutex;
    QByteArray m_path;
    HidHandle* m_handle;
};

}  // namespace kivo
