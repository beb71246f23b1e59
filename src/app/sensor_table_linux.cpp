
#include "app/sensor_table.h"
#include "app/window_text.h"

namespace kivo {

QString SensorHelp(Quantity quantity, const Reading& reading) {
    if (reading.value) {
        return {};
    }
    if (reading.gap == ReadingGap::NoRight) {
        return WindowText(QT_TRANSLATE_NOOP("MainWindow", "授予读取权限：见 README 中的 “Power on Linux”"));
    }
    switch (quantity) {
        case Quantity::Power:
            return WindowText(QT_TRANSLATE_NOOP(
                "MainWindow", "此内核没有该处理器的能耗计数器；较新的内核或 zenergy 模块可能有"));
        case Quantity::Temperature:
            return WindowText(
                QT_TRANSLATE_NOOP("MainWindow", "加载传感器模块：sudo modprobe coretemp（AMD：k10temp）"));
        case Quantity::FanSpeed:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "加载主板的传感器模块，例如 nct6775"));
    }
    return {};
}

}  // namespace kivo
