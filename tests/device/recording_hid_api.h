#pragma once

// A HID library for tests: any list of devices, and a record of every call. It notices what hidapi would not
// forgive: calls that must not overlap, a handle closed twice or used after its closing. An open node says of
// itself what is listed under its path; of a path that is not listed it cannot tell.

#include <QtTest>
#include <atomic>
#include <functional>
#include <map>
#include <mutex>
#include <vector>

#include "device/hid_api.h"

namespace kivo {

struct RecordedWrite {
    QByteArray path;
    QByteArray report;
};

class RecordingHidApi final : public HidApi {
public:
    std::vector<HidDeviceInfo> devices;
    int initResult = 0;
    int exitResult = 0;
    int writeResult = 0;  // 0: as many bytes as were given
    std::function<void()> beforeOpen;
    std::function<void()> beforeWrite;
    std::function<bool(const QByteArray& path)> refusesOpen;
    bool denies = false;  // what it refuses, it refuses for want of the right
    std::function<void()> beforeIdentify;
    std::map<QByteArray, QByteArray> stamps;
    std::map<QByteArray, QByteArray> panelKeys;

    std::vector<QByteArray> opened;
    std::vector<QByteArray> closed;
    std::vector<RecordedWrite> writes;
    std::vector<RecordedWrite> features;
    int identified = 0;
    std::atomic<int> stampsRead{0};
    int misuses = 0;

    int OpenCount() const { return static_cast<int>(m_open.size()); }

    // Opened and not closed, in the order of opening.
    std::vector<QByteArray> OpenPaths() const {
        std::vector<QByteArray> paths;
        for (const auto& [handle, path] : m_open) {
            paths.push_back(path);
        }
        return paths;
    }

    int Init() override {
        const Exclusive call(*this);
        return initResult;
    }

    std::vector<HidDeviceInfo> Enumerate(quint16 vendorId, quint16 productId) override {
        const Exclusive call(*this);
        if (vendorId != 0 || productId != 0) {
            ++misuses;  // the program asks for all devices
        }
        return devices;
    }

    HidHandle* OpenPath(const QByteArray& path) override {
        if (beforeOpen) {
            beforeOpen();
        }
        const Exclusive call(*this);
        opened.push_back(path);
        if (path.isEmpty() || (refusesOpen && refusesOpen(path))) {
            return nullptr;
        }
        auto* const handle = std::make_unique<Handle>().release();
        m_open.emplace_back(handle, path);
        return handle;
    }

    bool IsDenied(const QByteArray& /*path*/) override {
        const Exclusive call(*this);
        return denies;
    }

    std::vector<HidDeviceInfo> Identify(HidHandle* handle) override {
        if (beforeIdentify) {
            beforeIdentify();
        }
        const Exclusive call(*this);
        ++identified;
        std::vector<HidDeviceInfo> collections;
        for (const auto& [open, path] : m_open) {
            for (const HidDeviceInfo& device : devices) {
                if (open == handle && device.path == path) {
                    collections.push_back(device);
                }
            }
        }
        return collections;
    }

    QByteArray NodeStamp(const QByteArray& path) override {
        ++stampsRead;
        return ValueOf(stamps, path);
    }

    QByteArray PanelKey(const QByteArray& path) override { return ValueOf(panelKeys, path); }

    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        if (beforeWrite) {
            beforeWrite();
        }
        return Record(writes, handle, data, length);
    }

    int SendFeatureReport(HidHandle* handle, const quint8* data, std::size_t length) override {
        return Record(features, handle, data, length);
    }

    void Close(HidHandle* handle) override {
        const Exclusive call(*this);
        for (auto it = m_open.begin(); it != m_open.end(); ++it) {
            if (it->first != handle) {
                continue;
            }
            closed.push_back(it->second);
            m_open.erase(it);
            const std::unique_ptr<HidHandle> owned(handle);
            return;
        }
        ++misuses;
    }

    int Exit() override {
        const Exclusive call(*this);
        return exitResult;
    }

private:
    class Handle final : public HidHandle {};

    class Exclusive {
    public:
        explicit Exclusive(RecordingHidApi& api) : m_api(api) {
            const bool overlaps = m_api.m_inside.exchange(true);
            m_api.m_recordMutex.lock();
            if (overlaps) {
                ++m_api.misuses;
            }
        }
        ~Exclusive() {
            m_api.m_recordMutex.unlock();
            m_api.m_inside = false;
        }
        Exclusive(const Exclusive&) = delete;
        Exclusive& operator=(const Exclusive&) = delete;

    private:
        RecordingHidApi& m_api;
    };

    static QByteArray ValueOf(const std::map<QByteArray, QByteArray>& values, const QByteArray& path) {
        const auto found = values.find(path);
        return found == values.end() ? QByteArray() : found->second;
    }

    int Record(std::vector<RecordedWrite>& to, HidHandle* handle, const quint8* data, std::size_t length) {
        const std::lock_guard<std::mutex> lock(m_recordMutex);
        for (const auto& [open, path] : m_open) {
            if (open != handle) {
                continue;
            }
            to.push_back({path, QByteArray(reinterpret_cast<const char*>(data), static_cast<int>(length))});
            return writeResult == 0 ? static_cast<int>(length) : writeResult;
        }
        ++misuses;
        return -1;
    }

    std::vector<std::pair<HidHandle*, QByteArray>> m_open;
    std::atomic<bool> m_inside{false};
    std::mutex m_recordMutex;  // of the record; writes may come while another call is inside
};

// One collection of a screen, as the system lists it.
inline HidDeviceInfo Collection(const QByteArray& path, quint16 usagePage, quint16 usage,
                                int interfaceNumber) {
    HidDeviceInfo info;
    info.path = path;
    info.vendorId = 0x04D9;
    info.productId = 0xFD01;
    info.releaseNumber = 0x0107;
    info.manufacturer = QStringLiteral("Maker");
    info.product = QStringLiteral("Panel");
    info.usagePage = usagePage;
    info.usage = usage;
    info.interfaceNumber = interfaceNumber;
    return info;
}

inline HidDeviceInfo ControlCollection(const QByteArray& path) {
    return Collection(path, 0x000C, 1, 0);
}
inline HidDeviceInfo DataCollection(const QByteArray& path) {
    return Collection(path, 0xFFA0, 1, 1);
}
// Of another maker.
inline HidDeviceInfo KeyboardCollection(const QByteArray& path) {
    HidDeviceInfo keyboard = Collection(path, 0x0001, 6, 0);
    keyboard.vendorId = 0x046D;
    return keyboard;
}

}  // namespace kivo
