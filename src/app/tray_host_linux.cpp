#include <xcb/xcb.h>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusReply>
#include <QGuiApplication>
#include <QSystemTrayIcon>
#include <cstdlib>
#include <memory>

#include "app/tray_host.h"

namespace kivo {

namespace {

constexpr int kLongestFirstAnswerMs = 500;  // the desktop may be busy starting, and no window waits yet
constexpr int kLongestAnswerMs = 25;

struct Free {
    void operator()(void* reply) const { std::free(reply); }
};
struct Disconnect {
    void operator()(xcb_connection_t* connection) const { xcb_disconnect(connection); }
};

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

// Elsewhere on X11: a window of the panel takes icons in, and owns a selection to be found by. Over a
// connection of its own, for Qt does not hand its out.
bool IsTrayWindowThere() {
    int screen = 0;
    const std::unique_ptr<xcb_connection_t, Disconnect> connection(xcb_connect(nullptr, &screen));
    if (xcb_connection_has_error(connection.get()) != 0) {
        return false;
    }
    const QByteArray name = "_NET_SYSTEM_TRAY_S" + QByteArray::number(screen);
    const std::unique_ptr<xcb_intern_atom_reply_t, Free> selection(xcb_intern_atom_reply(
        connection.get(), xcb_intern_atom(connection.get(), 1, uint16_t(name.size()), name.constData()),
        nullptr));
    if (!selection || selection->atom == XCB_ATOM_NONE) {
        return false;
    }
    const std::unique_ptr<xcb_get_selection_owner_reply_t, Free> owner(xcb_get_selection_owner_reply(
        connection.get(), xcb_get_selection_owner(connection.get(), selection->atom), nullptr));
    return owner && owner->owner != XCB_WINDOW_NONE;
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
