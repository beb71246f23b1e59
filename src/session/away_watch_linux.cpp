#include "session/away_watch_linux.h"

#include <QCoreApplication>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFileInfo>
#include <array>
#include <utility>

namespace kivo {

namespace {

const QString kLogind = QStringLiteral("org.freedesktop.login1");
const QString kManagerPath = QStringLiteral("/org/freedesktop/login1");
const QString kManager = QStringLiteral("org.freedesktop.login1.Manager");
const QString kSession = QStringLiteral("org.freedesktop.login1.Session");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");
const QString kLockedHint = QStringLiteral("LockedHint");
// The session this process belongs to, else the one that its user sees: a program that the user's service
// manager has started belongs to none.
const QString kOwnSession = QStringLiteral("auto");

// The desktops' own, beside the common one, which not each of them has. Each is its interface too.
constexpr std::array kSavers{"org.freedesktop.ScreenSaver", "org.gnome.ScreenSaver",
                             "org.cinnamon.ScreenSaver", "org.mate.ScreenSaver", "org.xfce.ScreenSaver"};

QDBusMessage ManagerCall(const QString& method) {
    QDBusMessage call = QDBusMessage::createMethodCall(kLogind, kManagerPath, kManager, method);
    call.setAutoStartService(false);
    return call;
}

}  // namespace

DBusAwayWatch::DBusAwayWatch(const QDBusConnection& systemBus, const QDBusConnection& sessionBus)
    : m_systemBus(systemBus), m_sessionBus(sessionBus) {
    if (m_systemBus.isConnected()) {
        m_systemBus.connect(kLogind, kManagerPath, kManager, QStringLiteral("PrepareForSleep"), this,
                            SLOT(OnPrepareForSleep(bool)));
        FindSession(kOwnSession);
    }
    if (m_sessionBus.isConnected()) {
        WatchSaver();
    }
}

// A logind that does not know "auto" is asked for the session that the environment names.
void DBusAwayWatch::FindSession(const QString& id) {
    QDBusMessage call = ManagerCall(QStringLiteral("GetSession"));
    call << id;
    auto* const answer = new QDBusPendingCallWatcher(m_systemBus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer, id] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusObjectPath> path = *answer;
        const QString named = qEnvironmentVariable("XDG_SESSION_ID");
        if (path.isValid()) {
            FollowSession(path.value().path());
        } else if (id == kOwnSession && !named.isEmpty()) {
            FindSession(named);
        }
    });
}

void DBusAwayWatch::FollowSession(const QString& path) {
    m_systemBus.connect(kLogind, path, kSession, QStringLiteral("Lock"), this, SLOT(OnLock()));
    m_systemBus.connect(kLogind, path, kSession, QStringLiteral("Unlock"), this, SLOT(OnUnlock()));
    // The signature as moc writes it, without blanks.
    // clang-format off
    m_systemBus.connect(kLogind, path, kProperties, QStringLiteral("PropertiesChanged"), this,
                        SLOT(OnSessionChanged(QString,QVariantMap,QStringList)));
    // clang-format on
    // The program may have been started in a session that is locked.
    QDBusMessage call = QDBusMessage::createMethodCall(kLogind, path, kProperties, QStringLiteral("Get"));
    call << kSession << kLockedHint;
    auto* const answer = new QDBusPendingCallWatcher(m_systemBus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, [this, answer] {
        answer->deleteLater();
        const QDBusPendingReply<QDBusVariant> hint = *answer;
        if (hint.isValid() && hint.value().variant().toBool()) {
            SetLocked(true);
        }
    });
}

void DBusAwayWatch::WatchSaver() {
    m_savers.setConnection(m_sessionBus);
    m_savers.setWatchMode(QDBusServiceWatcher::WatchForUnregistration);
    for (const char* name : kSavers) {
        const QString saver = QLatin1String(name);
        // From whatever path: the desktops do not agree on one.
        m_sessionBus.connect(saver, QString(), saver, QStringLiteral("ActiveChanged"), this,
                             SLOT(OnSaver(bool)));
        m_savers.addWatchedService(saver);
    }
    // One that goes while it is on says nothing any more.
    connect(&m_savers, &QDBusServiceWatcher::serviceUnregistered, this, [this] { OnSaver(false); });
}

void DBusAwayWatch::HoldSleep(bool hold) {
    m_holdsSleep = hold;
    if (hold) {
        Inhibit();
    } else {
        LetSleep();
    }
}

void DBusAwayWatch::Inhibit() {
    if (!m_holdsSleep || m_isAsked || m_isAboutToSleep || m_inhibitor.isValid() ||
        !m_systemBus.isConnected()) {
        return;
    }
    m_isAsked = true;
    QDBusMessage call = ManagerCall(QStringLiteral("Inhibit"));
    call << QStringLiteral("sleep") << QStringLiteral("Kivo Screen")
         << QStringLiteral("The screen is darkened before the system sleeps.") << QStringLiteral("delay");
    auto* const answer = new QDBusPendingCallWatcher(m_systemBus.asyncCall(call), this);
    connect(answer, &QDBusPendingCallWatcher::finished, this, &DBusAwayWatch::TakeInhibitor);
}

void DBusAwayWatch::TakeInhibitor(QDBusPendingCallWatcher* answer) {
    answer->deleteLater();
    m_isAsked = false;
    const QDBusPendingReply<QDBusUnixFileDescriptor> inhibitor = *answer;
    // One that comes too late would hold up a sleep that nobody prepares for any more.
    if (inhibitor.isValid() && m_holdsSleep && !m_isAboutToSleep) {
        m_inhibitor = inhibitor.value();
    }
}

void DBusAwayWatch::OnPrepareForSleep(bool isAboutToSleep) {
    m_isAboutToSleep = isAboutToSleep;
    if (isAboutToSleep) {
        Q_EMIT sleeping();
    } else {
        Q_EMIT awake();
        Inhibit();
    }
}

void DBusAwayWatch::OnSessionChanged(const QString& interface, const QVariantMap& changed,
                                     const QStringList& /*invalidated*/) {
    const auto hint = changed.constFind(kLockedHint);
    if (interface == kSession && hint != changed.constEnd()) {
        SetLocked(hint->toBool());
    }
}

void DBusAwayWatch::SetLocked(bool isLocked) {
    if (std::exchange(m_isLocked, isLocked) != isLocked) {
        Q_EMIT lockedChanged(isLocked);
    }
}

void DBusAwayWatch::OnSaver(bool isOn) {
    if (!isOn && m_isSaverOn) {
        // Not each screen lock tells logind that it was opened, and the saver goes after the lock.
        SetLocked(false);
    }
    if (std::exchange(m_isSaverOn, isOn) != isOn) {
        Q_EMIT saverChanged(isOn);
    }
}

std::unique_ptr<AwayWatch> MakeSystemAwayWatch() {
    // A session without a bus gets none: libdbus would start one where there is a display.
    const bool hasBus = !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
                        QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
    return std::make_unique<DBusAwayWatch>(
        QDBusConnection::systemBus(), hasBus ? QDBusConnection::sessionBus() : QDBusConnection(QString()));
}

}  // namespace kivo
