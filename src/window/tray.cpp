#include "window/tray.h"

#include <QGuiApplication>
#include <QIcon>

namespace kivo {

Tray::Tray(QObject* parent) : Tray(Autostart{}, parent) {}

Tray::Tray(Autostart autostart, QObject* parent)
    : QObject(parent),
      m_autostart(std::move(autostart)),
      m_show(m_menu.addAction(QString())),
      m_sensors(m_menu.addAction(QString())),
      m_report(m_menu.addAction(QString())),
      m_atLogin(m_menu.addAction(QString())),
      m_exit(m_menu.addAction(QString())) {
    m_menu.setDefaultAction(m_show);
    m_atLogin->setCheckable(true);
    connect(&m_menu, &QMenu::aboutToShow, this, &Tray::ShowAutostart);
    connect(m_atLogin, &QAction::triggered, this, &Tray::SetAutostart);
    connect(m_show, &QAction::triggered, this, &Tray::showRequested);
    connect(m_sensors, &QAction::triggered, this, &Tray::sensorsRequested);
    connect(m_report, &QAction::triggered, this, &Tray::reportRequested);
    connect(m_exit, &QAction::triggered, this, &Tray::exitRequested);
}

void Tray::Show() {
    // A platform without a display has no notification area to wait for, and would complain.
    const QString platform = QGuiApplication::platformName();
    if (m_icon || platform == QLatin1String("offscreen") || platform == QLatin1String("minimal")) {
        return;
    }
    m_icon = std::make_unique<QSystemTrayIcon>(QIcon(QStringLiteral("://skins/logo.ico")));
    connect(m_icon.get(), &QSystemTrayIcon::activated, this, &Tray::activated);
    m_icon->setContextMenu(&m_menu);
    ShowToolTip();
    m_icon->setVisible(true);
}

void Tray::TellWhereItIs(bool isScreenReady) {
    m_told = isScreenReady
                 ? QCoreApplication::translate("MainWindow", "屏幕已就绪。点击此图标可打开设置窗口。")
                 : QCoreApplication::translate("MainWindow", "屏幕尚未响应。点击此图标可打开设置窗口。");
    if (m_icon) {
        m_icon->showMessage(QCoreApplication::translate("MainWindow", "Kivo Screen"), m_told,
                            QIcon(QStringLiteral("://skins/logo.ico")));
    }
}

void Tray::Tell(const QString& line, QSystemTrayIcon::MessageIcon icon) {
    m_told = line;
    if (m_icon) {
        m_icon->showMessage(QCoreApplication::translate("MainWindow", "Kivo Screen"), line, icon);
    }
}

void Tray::SetTexts() {
    ShowToolTip();
    m_show->setText(QCoreApplication::translate("MainWindow", "显示窗口"));
    m_sensors->setText(QCoreApplication::translate("MainWindow", "传感器…"));
    m_report->setText(QCoreApplication::translate("MainWindow", "保存报告…"));
    m_atLogin->setText(QCoreApplication::translate("MainWindow", "登录时启动"));
    m_exit->setText(QCoreApplication::translate("MainWindow", "退出程序"));
}

void Tray::SetState(const QString& phrase) {
    m_state = phrase;
    ShowToolTip();
}

QString Tray::ToolTip() const {
    const QString name = QCoreApplication::translate("MainWindow", "副屏设置");
    return m_state.isEmpty() ? name : name + QLatin1Char('\n') + m_state;
}

void Tray::ShowToolTip() {
    if (m_icon) {
        m_icon->setToolTip(ToolTip());
    }
}

void Tray::ShowAutostart() {
    m_atLogin->setChecked(m_autostart.isOn());
}

void Tray::SetAutostart(bool on) {
    const QString trouble = m_autostart.set(on);
    if (!trouble.isEmpty()) {
        qWarning("The autostart cannot be changed. %s", qUtf8Printable(trouble));
    }
    ShowAutostart();
    if (!trouble.isEmpty()) {
        Tell(QCoreApplication::translate("MainWindow", "无法更改登录时启动的设置。"),
             QSystemTrayIcon::Warning);
    }
}

}  // namespace kivo
