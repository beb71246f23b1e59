#pragma once

#include <QPoint>
#include <QSemaphore>
#include <QVector>
#include <atomic>
#include <functional>
#include <map>
#include <mutex>

#include "device/hid_api.h"
#include "virtualscreen/panel_decoder.h"

namespace kivo::test {

// Hands everything on; what is derived from it steps in between.
class ForwardingHidApi : public HidApi {
public:
    explicit ForwardingHidApi(HidApi& inner) : m_inner(inner) {}
    int Init() override { return m_inner.Init(); }
    std::vector<HidDeviceInfo> Enumerate(quint16 vendor, quint16 product) override {
        return m_inner.Enumerate(vendor, product);
    }
    HidHandle* OpenPath(const QByteArray& path) override { return m_inner.OpenPath(path); }
    bool IsDenied(const QByteArray& path) override { return m_inner.IsDenied(path); }
    std::vector<HidDeviceInfo> Identify(HidHandle* handle) override { return m_inner.Identify(handle); }
    QByteArray NodeStamp(const QByteArray& path) override { return m_inner.NodeStamp(path); }
    QByteArray PanelKey(const QByteArray& path) override { return m_inner.PanelKey(path); }
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        return m_inner.Write(handle, data, length);
    }
    int SendFeatureReport(HidHandle* handle, const quint8* data, std::size_t length) override {
        return m_inner.SendFeatureReport(handle, data, length);
    }
    void Close(HidHandle* handle) override { m_inner.Close(handle); }
    int Exit() override { return m_inner.Exit(); }

private:
    HidApi& m_inner;
};

// A screen whose writes hang once that is asked for, until they are let go one by one.
class HangingHidApi final : public ForwardingHidApi {
public:
    using ForwardingHidApi::ForwardingHidApi;
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        if (hang) {
            entered.release();
            letGo.acquire();
        }
        return ForwardingHidApi::Write(handle, data, length);
    }

    std::atomic<bool> hang{false};
    QSemaphore entered;
    QSemaphore letGo;
};

// Refuses single reports of a kind.
class RefusingHidApi final : public ForwardingHidApi {
public:
    using ForwardingHidApi::ForwardingHidApi;

    // The next report of that kind is not taken; of a frame, the next chunk of that number.
    void RefuseOnce(PanelReportKind kind, int chunkNumber = 0) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_refused.append({kind, chunkNumber});
    }
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            const PanelReport report = m_decoder.Decode(data, length);
            if (m_refused.removeOne({report.kind, report.chunkNumber})) {
                m_decoder.AbandonFrame();
                return -1;
            }
        }
        return ForwardingHidApi::Write(handle, data, length);
    }

private:
    std::mutex m_mutex;
    PanelDecoder m_decoder;
    QVector<QPair<PanelReportKind, int>> m_refused;
};

// Counts the areas that cover one point of the panel.
class AreaCountingHidApi final : public ForwardingHidApi {
public:
    AreaCountingHidApi(HidApi& inner, const QPoint& point) : ForwardingHidApi(inner), m_point(point) {}
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            const PanelReport report = m_decoder.Decode(data, length);
            count += report.kind == PanelReportKind::Area && report.area.contains(m_point) ? 1 : 0;
        }
        return ForwardingHidApi::Write(handle, data, length);
    }

    std::atomic<int> count{0};

private:
    const QPoint m_point;
    std::mutex m_mutex;
    PanelDecoder m_decoder;
};

// Lies between the program and its panel: remembers what went through, and steps in at a chosen chunk of a
// frame. Any thread.
class WireTap final : public ForwardingHidApi {
public:
    using ForwardingHidApi::ForwardingHidApi;

    // Runs act on the writing thread before the next chunk of that number is handed on.
    void BeforeChunk(int number, std::function<void()> act) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_acts[number] = std::move(act);
    }

    // Everything written so far.
    QVector<PanelReport> Reports() const {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_reports;
    }
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        if (const std::function<void()> act = Remember(data, length)) {
            act();
        }
        const int written = ForwardingHidApi::Write(handle, data, length);
        if (written < 0) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_decoder.AbandonFrame();
        }
        return written;
    }

private:
    std::function<void()> Remember(const quint8* data, std::size_t length) {
        const std::lock_guard<std::mutex> lock(m_mutex);
        const PanelReport report = m_decoder.Decode(data, length);
        m_reports.append(report);
        std::function<void()> act;
        const auto found = m_acts.find(report.chunkNumber);
        if (report.kind == PanelReportKind::Chunk && found != m_acts.end()) {
            act = std::move(found->second);
            m_acts.erase(found);
        }
        return act;
    }

    mutable std::mutex m_mutex;
    PanelDecoder m_decoder;
    QVector<PanelReport> m_reports;
    std::map<int, std::function<void()>> m_acts;
};

}  // namespace kivo::test
