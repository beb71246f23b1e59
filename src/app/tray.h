#pragma once

// The icon in the notification area with its menu. GUI thread.

#include <QMenu>
#include <QObject>
#include <QSystemTrayIcon>

namespace kivo {

class Tray : public QObject {
    Q_OBJECT

public:
    explicit Tray(QObject* parent = nullptr);

    // Makes the icon visible. Where the desktop has no notification area nothing is seen; should one come
    // later, the icon appears in it.
    void Show();

    // The icon's tool tip and the menu's texts in the language of the translator that is installed.
    void SetTexts();

    // Says, once and for a few seconds, that the program goes on here though its window has gone.
    void TellWhereItIs();

    QMenu& Menu() { return m_menu; }

Q_SIGNALS:
    void activated(QSystemTrayIcon::ActivationReason reason);
    void showRequested();
    void exitRequested();

private:
    QMenu m_menu;
    QAction* const m_show;
    QAction* const m_exit;
    QSystemTrayIcon m_icon;
};

}  // namespace kivo
