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

// Of several reasons the first: the panel is as dark as the next one alone would have it, but for the last.
QString DarkText(DarkReasons reasons) {
    struct Row {
        DarkReason reason;
        const char* text;
    };
    static constexpr Row kRows[] = {
        {DarkReason::Ending, QT_TRANSLATE_NOOP("MainWindow", "屏幕已熄灭：程序退出")},
        {DarkReason::Asleep, QT_TRANSLATE_NOOP("MainWindow", "屏幕已熄灭：系统睡眠")},
        {DarkReason::Locked, QT_TRANSLATE_NOOP("MainWindow", "屏幕已熄灭：已锁定")},
        {DarkReason::ScreenSaver, QT_TRANSLATE_NOOP("MainWindow", "屏幕已熄灭：屏幕保护")},
        {DarkReason::Asked, QT_TRANSLATE_NOOP("MainWindow", "屏幕已熄灭：命令要求")},
        {DarkReason::NightBlack, QT_TRANSLATE_NOOP("MainWindow", "屏幕已熄灭：夜间")},
        {DarkReason::NightDimmed, QT_TRANSLATE_NOOP("MainWindow", "屏幕已调暗：夜间")},
    };
    for (const Row& row : kRows) {
        if (reasons.testFlag(row.reason)) {
            return WindowText(row.text);
        }
    }
    return {};
}

bool IsPanelOwed(const PanelStatus& status) {
    return status.condition != PanelCondition::Connected && status.condition != PanelCondition::Sending &&
           status.condition != PanelCondition::Sent;
}

}  // namespace kivo
