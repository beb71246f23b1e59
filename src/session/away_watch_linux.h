#pragma once

// What logind and the desktop's screen saver say, over D-Bus. GUI thread; no call waits for an answer of
// theirs.

#include <QDBusConnection>
#include <QDBusObjectPath>
#include <QDBusServiceWatcher>
#include <QDBusUnixFileDescriptor>
#include <QVariantMap>

#include "session/away_watch.h"

class QDBusPendingCallWatcher;

namespace kivo {

class DBusAwayWatch final : public AwayWatch {
    Q_OBJECT

public:
    // The bus with logind, and the session's with the screen saver. Of one that is not there nothing is told.
    DBusAwayWatch(const QDBusConnection& systemBus, const QDBusConnection& sessionBus);

    void HoldSleep(bool hold) override;
    void LetSleep() override { m_inhibitor = QDBusUnixFileDescriptor(); }
    std::chrono::milliseconds LongestInSleeping() const override { return std::chrono::milliseconds(0); }

private Q_SLOTS:  // D-Bus signals are connected by name
    void OnPrepareForSleep(bool isAboutToSleep);
    // Told each time: the receiver may have heard of the former one's end from the person.
    void OnLock() {
        m_isLocked = false;
        SetLocked(true);
    }
    void OnUnlock() { SetLocked(false); }
    void OnSessionChanged(const QString& interface, const QVariantMap& changed,
                          const QStringList& invalidated);
    void OnSaver(bool isOn);

private:
    void FindSession(const QString& id);
    void FollowSession(const QString& path);
    void WatchSaver();
    void Inhibit();
    void TakeInhibitor(QDBusPendingCallWatcher* answer);
    void SetLocked(bool isLocked);

    QDBusConnection m_systemBus;
    QDBusConnection m_sessionBus;
    QDBusServiceWatcher m_savers;
    QDBusUnixFileDescriptor m_inhibitor;  // logind waits while it is open
    bool m_holdsSleep = false;
    bool m_isAsked = false;  // for an inhibitor, whose answer is on its way
    bool m_isAboutToSleep = false;
    bool m_isLocked = false;
    bool m_isSaverOn = false;
};

}  // namespace kivo
