#pragma once

// LibreHardwareMonitor's sensors, from its web server, which its users switch on. The server is asked on a
// thread of the source's own, so that no sample waits for it.

#include <chrono>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>

#include "telemetry/local_page.h"
#include "telemetry/sensor_source.h"

namespace kivo {

// Where the server's page is.
inline constexpr quint16 kHardwareMonitorPort = 8085;
inline constexpr char kHardwareMonitorPath[] = "/data.json";

class HardwareMonitorSource final : public SensorSource {
public:
    // The pace is the time between two pages while somebody reads.
    explicit HardwareMonitorSource(std::unique_ptr<LocalPage> page,
                                   std::chrono::milliseconds pace = std::chrono::seconds(1));
    // Cuts a request short.
    ~HardwareMonitorSource() override;

    SourceId Id() const override { return SourceId::LibreHardwareMonitor; }
    // What came last, standing while nothing newer has come; no values once the server has not answered.
    SensorReadings Read(const SampleMoment& moment) override;

private:
    // What the thread hands over; the mutex guards it.
    struct Shared {
        int pagesOwed = 0;  // 0: nobody reads
        bool isStop = false;
        quint64 answers = 0;      // so many have come, with or without a page
        bool hasPage = false;     // the last one had
        SensorReadings readings;  // of the last page
    };

    void Run();

    const std::unique_ptr<LocalPage> m_page;
    const std::chrono::milliseconds m_pace;

    std::mutex m_mutex;
    std::condition_variable m_changed;
    Shared m_shared;

    // Of the reader's thread.
    quint64 m_answersSeen = 0;
    bool m_hasHadPage = false;

    std::thread m_thread;  // the last member: it uses the others
};

}  // namespace kivo
