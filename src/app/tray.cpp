#include "app/tray.h"

#include <QGuiApplication>
#include <QIcon>

namespace kivo {

Tray::Tray(QObject* parent)
    : QObject(parent),
      m_show(m_menu.addAction(QString())),
      m_exit(m_menu.addAction(QString())),
      m_icon(QIcon(QStringLiteral("://skins/logo.ico"))) {
    m_menu.setDefaultAction(m_show);
    connect(m_show, &QAction::triggered, this, &Tray::showRequested);
    connect(m_exit, &QAction::triggered, this, &Tray::exitRequested);
    connect(&m_icon, &QSystemTrayIcon::activated, this, &Tray::activated);
    m_icon.setContextMenu(&m_menu);
}

void Tray::Show() {
    // A platform without a display has no notification area to wait for, and would complain.
    const QString platform = QGuiApplication::platformName();
    if (platform != QLatin1String("offscreen") && platform != QLatin1String("minimal")) {
        m_icon.setVisible(true);
    }
}

void Tray::TellWhereItIs() {
    if (m_icon.isVisible()) {
        m_icon.showMessage(
            QCoreApplication::translate("MainWindow", "Kivo Screen"),
            QCoreApplication::translate("MainWindow", "屏幕已就绪。点击此图标可打开设置窗口。"),
            QIcon(QStringLiteral("://skins/logo.ico")));
    }
}

void Tray::SetTexts() {
    m_icon.setToolTip(QCoreApplication::translate("MainWindow", "副屏设置"));
    m_show->setText(QCoreApplication::translate("MainWindow", "显示窗口"));
    m_exit->setText(QCoreApplication::translate("MainWindow", "退出程序"));
}

}  // namespace kivo
