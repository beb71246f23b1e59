#pragma once

// Lies between the program and its panel: refuses reports, hangs, and lets something happen at a chosen
// moment in the middle of whatever the program does. One thread.

#include <chrono>
#include <functional>
#include <vector>

#include "simulated_clock.h"
#include "simulated_panel.h"
#include "support/forwarding_hid_api.h"

namespace kivo::test {

class FaultyWire final : public ForwardingHidApi {
public:
    // How long a write that hangs holds the program up.
    static constexpr std::chrono::seconds kHang{5};

    enum class Moment { Opening, BeforeReport, AfterReport };

    struct Fault {
        PanelReportKind kind = PanelReportKind::Invalid;  // Invalid: any
        int chunk = 0;                                    // 0: any
        int times = 1;
        bool hangs = false;
        bool arrives = false;  // the panel takes it all the same, and only the program is told otherwise
    };

    // clock outlives the wire. hasStamps: the system tells a new node from the one that was there.
    FaultyWire(HidApi& node, SimulatedClock& clock, bool hasStamps)
        : ForwardingHidApi(node), m_clock(clock), m_hasStamps(hasStamps) {}

    // The panel that the node's reports go to; outlives the wire.
    void PutPanel(SimulatedPanel& panel) { m_panel = &panel; }

    void Refuse(const Fault& fault) { m_faults.push_back(fault); }
    // Calls act at the count-th moment from now (1: the next one), in which it may throw.
    void AtMoment(int count, std::function<void(Moment)> act) {
        m_events.push_back({m_moments + count, std::move(act)});
    }
    // Calls act when the panel has taken the count-th report of that kind from now (1: the next one), before
    // the program is told so.
    void AfterReportOf(PanelReportKind kind, int count, std::function<void(Moment)> act) {
        m_afterKind.push_back({kind, count, std::move(act)});
    }
    void ClearFaults() {
        m_faults.clear();
        m_events.clear();
        m_afterKind.clear();
    }

    // Calls watcher for each report that the panel has taken, and whether the program is told otherwise.
    using Watcher = std::function<void(const PanelReport& report, bool isRefused)>;
    void Watch(Watcher watcher) { m_watcher = std::move(watcher); }

    // Collects what the panel takes from now on.
    void StartRecording() {
        m_isRecording = true;
        m_recorded.clear();
    }
    std::vector<PanelReport> StopRecording() {
        m_isRecording = false;
        return std::exchange(m_recorded, {});
    }

    QByteArray NodeStamp(const QByteArray& path) override {
        return m_hasStamps ? ForwardingHidApi::NodeStamp(path) : QByteArray();
    }

    HidHandle* OpenPath(const QByteArray& path) override {
        Pass(Moment::Opening);
        return ForwardingHidApi::OpenPath(path);
    }

    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        Pass(Moment::BeforeReport);
        const Fault* const fault = FaultOf(data);
        const bool isRefused = fault != nullptr;
        if (isRefused && !fault->arrives) {
            return -1;
        }
        const int written = ForwardingHidApi::Write(handle, data, length);
        if (written >= 0) {
            m_writing = handle;
            NoteTaken(m_panel->Take(data, length), isRefused);
        }
        if (written >= 0) {
            PassAfter(KindOf(data));
        }
        Pass(Moment::AfterReport);
        return isRefused ? -1 : written;
    }

    void Close(HidHandle* handle) override {
        if (m_writing == handle) {
            m_writing = nullptr;
            m_panel->AbandonFrame();
        }
        ForwardingHidApi::Close(handle);
    }

private:
    struct Event {
        qint64 at = 0;
        std::function<void(Moment)> act;
    };

    struct KindEvent {
        PanelReportKind kind = PanelReportKind::Invalid;
        int left = 0;
        std::function<void(Moment)> act;
    };

    static PanelReportKind KindOf(const quint8* data) {
        constexpr quint8 kArea = 0xA2;
        constexpr quint8 kChunk = 0xA3;
        constexpr quint8 kOrientation = 0xF1;
        constexpr quint8 kTimeSync = 0xF2;
        if (data[2] == kArea) {
            return PanelReportKind::Area;
        }
        if (data[2] == kChunk) {
            return PanelReportKind::Chunk;
        }
        return data[3] == kOrientation ? PanelReportKind::Orientation
               : data[3] == kTimeSync  ? PanelReportKind::TimeSync
                                       : PanelReportKind::TimeShow;
    }

    // What happens in the middle of an event is not counted.
    void Pass(Moment moment) {
        if (m_isInEvent) {
            return;
        }
        ++m_moments;
        for (std::size_t k = 0; k < m_events.size(); ++k) {
            if (m_events[k].at == m_moments) {
                const std::function<void(Moment)> act = std::move(m_events[k].act);
                m_events.erase(m_events.begin() + std::ptrdiff_t(k));
                const Inside inside(m_isInEvent);
                return act(moment);
            }
        }
    }

    void PassAfter(PanelReportKind kind) {
        for (std::size_t k = 0; k < m_afterKind.size() && !m_isInEvent; ++k) {
            if (m_afterKind[k].kind == kind && --m_afterKind[k].left == 0) {
                const std::function<void(Moment)> act = std::move(m_afterKind[k].act);
                m_afterKind.erase(m_afterKind.begin() + std::ptrdiff_t(k));
                const Inside inside(m_isInEvent);
                return act(Moment::AfterReport);
            }
        }
    }

    void NoteTaken(const PanelReport& report, bool isRefused) {
        if (m_isRecording) {
            m_recorded.push_back(report);
        }
        if (m_watcher) {
            m_watcher(report, isRefused);
        }
    }

    // The fault that this report meets; null for none.
    const Fault* FaultOf(const quint8* data) {
        const PanelReportKind kind = KindOf(data);
        const int chunk = kind == PanelReportKind::Chunk ? data[4] : 0;
        for (Fault& fault : m_faults) {
            const bool fits = (fault.kind == PanelReportKind::Invalid || fault.kind == kind) &&
                              (fault.chunk == 0 || fault.chunk == chunk);
            if (!fits || fault.times == 0) {
                continue;
            }
            --fault.times;
            if (fault.hangs) {
                m_clock.Advance(kHang);
            }
            return &fault;
        }
        return nullptr;
    }

    class Inside {
    public:
        explicit Inside(bool& flag) : m_flag(flag) { m_flag = true; }
        ~Inside() { m_flag = false; }
        Inside(const Inside&) = delete;
        Inside& operator=(const Inside&) = delete;

    private:
        bool& m_flag;
    };

    SimulatedClock& m_clock;
    const bool m_hasStamps;
    SimulatedPanel* m_panel = nullptr;
    HidHandle* m_writing = nullptr;
    std::vector<Fault> m_faults;
    std::vector<Event> m_events;
    std::vector<KindEvent> m_afterKind;
    qint64 m_moments = 0;
    bool m_isInEvent = false;
    bool m_isRecording = false;
    std::vector<PanelReport> m_recorded;
    Watcher m_watcher;
};

}  // namespace kivo::test
