#include "telemetry/thermal_zone_thread.h"

#include <utility>

namespace kivo {

ThermalZoneThread::ThermalZoneThread(Reader read, QObject* parent)
    : QThread(parent), m_read(std::move(read)) {}

ThermalZoneThread::~ThermalZoneThread() {
    AskToStop();
    wait();
    static_cast<void>(m_end.IsMarked());
}

void ThermalZoneThread::run() {
    const ThreadEndMarker marker(m_end);
    const QString text = m_read([this] { return m_isStop.load(); });
    if (!m_isStop) {
        Q_EMIT temperatureRead(text);
    }
}

}  // namespace kivo
