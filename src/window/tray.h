#pragma once

// The icon in the notification area with its menu. GUI thread.

#include <QMenu>
#include <QObject>
#include <QString>
#include <QSystemTrayIcon>
#include <functional>
#include <memory>

#include "session/autostart.h"

namespace kivo {

class Tray : public QObject {
    Q_OBJECT

public:
    // Whether the program starts at login, and how that is changed (empty: done, else what went wrong).
    struct Autostart {
        std::function<bool()> isOn = &StartsAtLogin;
        std::function<QString(bool)> set = &SetStartsAtLogin;
    };

    explicit Tray(QObject* parent = nullptr);
    explicit Tray(Autostart autostart, QObject* parent = nullptr);

    // Makes the icon, visible. To be called when there is a place for it (IsTrayThere), at the start or
    // later.
    void Show();

    // The icon's tool tip and the menu's texts in the language of the translator that is installed.
    void SetTexts();

    // What state the screen is in, for the tool tip's second line; empty: it has one line only.
    void SetState(const QString& phrase);
    // Also where there is no icon to have it.
    QString ToolTip() const;

    // Says, once and for a few seconds, that the program goes on here though its window has gone, and whether
    // the screen shows something.
    void TellWhereItIs(bool isScreenReady);
    // Says for a few seconds what came of something that was asked for here.
    void Tell(const QString& line, QSystemTrayIcon::MessageIcon icon = QSystemTrayIcon::Information);
    // What it said last, also where there is no notification area to say it in; empty
    // before.
    const QString& Told() const { return m_told; }

    QMenu& Menu() { return m_menu; }
    // Puts another menu into this one. It outlives the tray.
    void AddMenu(QMenu& menu) { m_menu.insertMenu(m_atLogin, &menu); }

Q_SIGNALS:
    void activated(QSystemTrayIcon::ActivationReason reason);
    void showRequested();
    void sensorsRequested();
    void reportRequested();
    void exitRequested();

private:
    // Asked afresh each time the menu opens: the desktop's own settings change it too.
    void ShowAutostart();
    void SetAutostart(bool on);
    void ShowToolTip();

    const Autostart m_autostart;
    QMenu m_menu;
    QAction* const m_show;
    QAction* const m_sensors;
    QAction* const m_report;
    QAction* const m_atLogin;
    QAction* const m_exit;
    std::unique_ptr<QSystemTrayIcon> m_icon;  // null until it is shown
    QString m_state;
    QString m_told;
};

}  // namespace kivo
