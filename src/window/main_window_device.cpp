// MainWindow: screens that are plugged in and pulled out, and a system that slept.

#include <QLoggingCategory>

#include "window/away_light.h"
#include "window/main_window.h"
#include "window/state_line.h"

namespace kivo {

namespace {

Q_LOGGING_CATEGORY(hotplugLog, "kivo.hotplug")

}  // namespace

void MainWindow::RegisterScreenNotification() {
    if (!m_parts.makeHotplug) {
        return;
    }
    m_hotplug = m_parts.makeHotplug();
    const bool registered = m_hotplug->Register([this] { return quintptr(winId()); },
                                                [this](const DeviceChange& change) {
                                                    if (change.arrived) {
                                                        NoteArrival(change.name);
                                                    } else {
                                                        NoteRemoval(change.name);
                                                    }
                                                });
    if (!registered) {
        qCDebug(hotplugLog, "注册失败");
    }
}

bool MainWindow::nativeEvent(const QByteArray& eventType, void* message, long* result) {
    Q_UNUSED(result)
    const NativeEvent event = ReadNativeEvent(eventType, message);
    if (event.kind == NativeEventKind::Arrival) {
        NoteArrival(event.interfaceName);
    } else if (event.kind == NativeEventKind::Removal) {
        NoteRemoval(event.interfaceName);
    } else if (event.kind == NativeEventKind::Resume) {
        m_session->NoteArrival();
    }
    return false;
}

// An empty name: what came is no interface.
void MainWindow::NoteArrival(const QString& name) {
    qCDebug(hotplugLog, "DBT_DEVICEARRIVAL\n");
    if (!name.isEmpty()) {
        HandleScreenChange(name, true);
        qCDebug(hotplugLog, "%s", name.toLocal8Bit().constData());
    }
}

void MainWindow::NoteRemoval(const QString& name) {
    if (!name.isEmpty()) {
        HandleScreenChange(name, false);
    }
    qCDebug(hotplugLog, "DBT_DEVICEREMOVECOMPLETE\n");
}

bool MainWindow::HandleScreenChange(const QString& name, bool arrived) {
    const ArrivalPath pathFrom = m_hotplug ? m_hotplug->PathOfArrival() : ArrivalPath::Enumeration;
    m_session->HandleScreenChange({name, arrived}, hotplugSuspended != 0, pathFrom);
    return true;
}

void MainWindow::ShowPanelStatus(const PanelStatus& status) {
    m_stateLine->Show(status);
}

void MainWindow::LookForWakeUp() {
    if (m_sleepWatch.HasSlept(m_parts.timeAsleep())) {
        m_session->NoteArrival();
        m_away->NoteAwake();
    }
}

}  // namespace kivo
