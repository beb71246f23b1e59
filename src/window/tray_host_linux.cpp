#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QGuiApplication>
#include <QSystemTrayIcon>

#include "widgets/x11_selection_linux.h"
#include "window/tray_host.h"

namespace kivo {

namespace {

constexpr int kLongestFirstAnswerMs = 500;  // the desktop may be busy starting, and no window waits yet
constexpr int kLongestAnswerMs = 25;

// Plasma, Xfce, LXQt, GNOME with its extension: icons are told of over D-Bus.
bool IsNotifierHostThere(int longestMs) {
    const QString watcher = QStringLiteral("org.kde.StatusNotifierWatcher");
    QDBusMessage question = QDBusMessage::createMethodCall(watcher, QStringLiteral("/StatusNotifierWatcher"),
                                                           QStringLiteral("org.freedesktop.DBus.Properties"),
                                                           QStringLiteral("Get"));
    question << watcher << QStringLiteral("IsStatusNotifierHostRegistered");
    question.setAutoStartService(false);
    const QDBusReply<QVariant> answer = QDBusConnection::sessionBus().call(question, QDBus::Block, longestMs);
    return answer.isValid() && answer.value().toBool();
}

// Elsewhere on X11: a window of the panel takes icons in, and owns a selection to be found by.
bool IsTrayWindowThere() {
    return IsScreenSelectionOwned("_NET_SYSTEM_TRAY_S");
}

}  // namespace

bool IsTrayThere() {
    static int longestMs = kLongestFirstAnswerMs;
    const QString platform = QGuiApplication::platformName();
    const bool isX11 = platform == QLatin1String("xcb");
    if (!isX11 && !platform.startsWith(QLatin1String("wayland"))) {
        return false;  // no display, no panel
    }
    const bool isThere = IsNotifierHostThere(longestMs) || (isX11 && IsTrayWindowThere());
    longestMs = kLongestAnswerMs;
    return isThere && QSystemTrayIcon::isSystemTrayAvailable();
}

}  // namespace kivo
