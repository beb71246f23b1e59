#include "window/sensor_table.h"
#include "window/window_text.h"

namespace kivo {

namespace {

// Where nothing is there that measures it.
QString MissingSensorHelp(Quantity quantity) {
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

// Where the package puts its example.
QString RuleFile() {
    return QStringLiteral("/usr/share/doc/kivo-screen/examples/61-kivo-screen-power.rules");
}

}  // namespace

// Nothing that a person does helps against a sensor that is there, and silent or wrong.
QString SensorHelp(Quantity quantity, const Reading& reading) {
    if (reading.gap == ReadingGap::NoSource) {
        return MissingSensorHelp(quantity);
    }
    if (reading.gap == ReadingGap::NoRight && quantity == Quantity::Power) {
        return WindowText(QT_TRANSLATE_NOOP("MainWindow", "授予读取权限：见 %1 开头的说明")).arg(RuleFile());
    }
    return {};
}

}  // namespace kivo
