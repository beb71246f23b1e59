#include "window/sensor_table.h"
#include "window/window_text.h"

namespace kivo {

QString SensorHelp(Quantity quantity, const Reading& reading) {
    Q_UNUSED(quantity)
    // Not yet: the next sample tells.
    if (reading.value || reading.gap == ReadingGap::NotRead) {
        return {};
    }
    return WindowText(QT_TRANSLATE_NOOP(
        "MainWindow", "运行 HWiNFO 并打开 “Report value in Gadget”，或打开 LibreHardwareMonitor 的网络服务"));
}

}  // namespace kivo
