#include "telemetry/hardware_monitor_source.h"

#include <utility>

#include "telemetry/hardware_monitor_json.h"

namespace kivo {
namespace {

// A server that answers is asked on for a while after each reading, so that one who reads every ten seconds
// has a value of now. One that does not is asked once a reading.
constexpr int kPagesAReading = 12;

SensorReadings Without(ReadingGap gap) {
    return SensorReadings::AllWithout(gap, SourceId::LibreHardwareMonitor);
}

}  // namespace

HardwareMonitorSource::HardwareMonitorSource(std::unique_ptr<LocalPage> page, std::chrono::milliseconds pace)
    : m_page(std::move(page)), m_pace(pace), m_thread([this] { Run(); }) {}

HardwareMonitorSource::~HardwareMonitorSource() {
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_shared.isStop = true;
    }
    m_changed.notify_all();
    m_page->Cancel();
    m_thread.join();
}

SensorReadings HardwareMonitorSource::Read(const SampleMoment& /*moment*/) {
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_shared.pagesOwed = kPagesAReading;
    m_changed.notify_all();
    const bool isNew = std::exchange(m_answersSeen, m_shared.answers) != m_shared.answers;
    if (m_shared.answers == 0) {
        return Without(ReadingGap::NotRead);
    }
    if (!m_shared.hasPage) {
        // A server that was there has ended; of any other nothing is known.
        return Without(m_hasHadPage ? ReadingGap::NotRunning : ReadingGap::NoSource);
    }
    m_hasHadPage = true;
    SensorReadings readings = m_shared.readings;
    if (!isNew) {
        readings.LetStand();
    }
    return readings;
}

void HardwareMonitorSource::Run() {
    std::unique_lock<std::mutex> lock(m_mutex);
    while (true) {
        m_changed.wait(lock, [this] { return m_shared.isStop || m_shared.pagesOwed > 0; });
        if (m_shared.isStop) {
            return;
        }
        --m_shared.pagesOwed;
        lock.unlock();
        const std::optional<QByteArray> page = m_page->Fetch();
        const SensorReadings readings = page ? ReadHardwareMonitorPage(*page) : SensorReadings();
        lock.lock();
        ++m_shared.answers;
        m_shared.hasPage = page.has_value();
        if (page) {
            m_shared.readings = readings;
        } else {
            m_shared.pagesOwed = 0;
        }
        m_changed.wait_for(lock, m_pace, [this] { return m_shared.isStop; });
    }
}

}  // namespace kivo
