#include "window/panel_status_text.h"
#include "window/window_text.h"

namespace kivo {

namespace {

QString ConnectedText(bool isSoftwarePanel) {
    return isSoftwarePanel ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "软件屏幕"))
                           : WindowText(QT_TRANSLATE_NOOP("MainWindow", "已连接"));
}

}  // namespace

QString PanelStatusText(const PanelStatus& status) {
    switch (status.condition) {
        case PanelCondition::NoScreen:
            return status.isFrameOwed ? WindowText(QT_TRANSLATE_NOOP("MainWindow", "没有屏幕，插入后发送"))
                                      : WindowText(QT_TRANSLATE_NOOP("MainWindow", "没有屏幕"));
        case PanelCondition::Denied:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "没有权限打开屏幕"));
        case PanelCondition::Refusing:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "屏幕不接收，可能被其他程序占用"));
        case PanelCondition::Sending:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "正在发送…"));
        case PanelCondition::Sent:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "%1 已发送"))
                .arg(status.sentAt.toString(QStringLiteral("hh:mm")));
        case PanelCondition::TryingAgain:
            return WindowText(QT_TRANSLATE_NOOP("MainWindow", "正在重试…"));
        case PanelCondition::Connected:
            break;
    }
    return ConnectedText(status.isSoftwarePanel);
}

bool IsPanelOwed(const PanelStatus& status) {
    return status.condition != PanelCondition::Connected && status.condition != PanelCondition::Sending &&
           status.condition != PanelCondition::Sent;
}

}  // namespace kivo
