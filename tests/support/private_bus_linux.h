#pragma once

// A message bus of the test's own, and a logind and a screen saver on it that say what the test wants.

#include <fcntl.h>
#include <unistd.h>

#include <QDBusAbstractAdaptor>
#include <QDBusConnection>
#include <QDBusContext>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusUnixFileDescriptor>
#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>

namespace kivo::test {

class PrivateBus {
public:
    PrivateBus() {
        const QString config = m_folder.filePath(QStringLiteral("bus.conf"));
        QFile file(config);
        const QString text = QStringLiteral(
                                 "<busconfig><type>session</type><listen>unix:path=%1</listen>"
                                 "<policy context=\"default\"><allow send_destination=\"*\"/>"
                                 "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>")
                                 .arg(m_folder.filePath(QStringLiteral("bus")));
        if (!file.open(QIODevice::WriteOnly) || file.write(text.toUtf8()) < 0) {
            qFatal("The bus cannot be described.");
        }
        file.close();
        m_daemon.start(QStringLiteral("dbus-daemon"),
                       {QStringLiteral("--config-file=") + config, QStringLiteral("--nofork"),
                        QStringLiteral("--print-address")});
        if (!m_daemon.waitForReadyRead(30000)) {
            qFatal("There is no dbus-daemon: %s", qPrintable(m_daemon.errorString()));
        }
        m_address = QString::fromLatin1(m_daemon.readLine().trimmed());
    }
    ~PrivateBus() {
        for (const QString& name : m_names) {
            QDBusConnection::disconnectFromBus(name);
        }
        m_daemon.kill();
        m_daemon.waitForFinished();
    }
    Q_DISABLE_COPY(PrivateBus)

    QString Address() const { return m_address; }
    // Each is a program of its own to the bus.
    QDBusConnection Connect(const QString& name) {
        m_names.append(name);
        return QDBusConnection::connectToBus(m_address, name);
    }

private:
    QTemporaryDir m_folder;
    QProcess m_daemon;
    QString m_address;
    QStringList m_names;
};

// The session's object.
class FakeSession : public QObject {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Session")
    Q_PROPERTY(bool LockedHint READ LockedHint)

public:
    bool LockedHint() const {
        ++timesAsked;
        return isLocked;
    }

    bool isLocked = false;
    mutable int timesAsked = 0;

Q_SIGNALS:
    Q_SCRIPTABLE void Lock();
    Q_SCRIPTABLE void Unlock();
};

class FakeLogind : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.login1.Manager")

public:
    static QString SessionPath() { return QStringLiteral("/org/freedesktop/login1/session/_32"); }

    explicit FakeLogind(const QDBusConnection& bus) : m_bus(bus) {
        const auto options = QDBusConnection::ExportAllSlots | QDBusConnection::ExportAllSignals |
                             QDBusConnection::ExportAllProperties | QDBusConnection::ExportScriptableContents;
        const bool isThere = m_bus.registerObject(QStringLiteral("/org/freedesktop/login1"), this, options) &&
                             m_bus.registerObject(SessionPath(), &session, options) &&
                             m_bus.registerService(QStringLiteral("org.freedesktop.login1"));
        if (!isThere) {
            qFatal("The bus takes no logind.");
        }
    }
    ~FakeLogind() override {
        for (const int end : m_ends) {
            ::close(end);
        }
        m_bus.unregisterService(QStringLiteral("org.freedesktop.login1"));
        m_bus.unregisterObject(QStringLiteral("/org/freedesktop/login1"));
        m_bus.unregisterObject(SessionPath());
    }

    // How many inhibitors are held now.
    int Held() const {
        int held = 0;
        for (const int end : m_ends) {
            char byte = 0;
            held +=
                ::read(end, &byte, 1) < 0 ? 1 : 0;  // the other end is closed where there is nothing to come
        }
        return held;
    }

    // As the desktop says it.
    void ChangeHint(bool isLocked,
                    const QString& interface = QStringLiteral("org.freedesktop.login1.Session")) {
        session.isLocked = isLocked;
        QDBusMessage signal =
            QDBusMessage::createSignal(SessionPath(), QStringLiteral("org.freedesktop.DBus.Properties"),
                                       QStringLiteral("PropertiesChanged"));
        signal << interface << QVariantMap{{QStringLiteral("LockedHint"), isLocked}} << QStringList();
        m_bus.send(signal);
    }

    FakeSession session;
    QStringList knownSessions{QStringLiteral("auto"), QStringLiteral("2")};
    QStringList asked;             // for sessions
    QList<QStringList> inhibited;  // what, who, why, how
    bool isRefusing = false;

public Q_SLOTS:
    QDBusObjectPath GetSession(const QString& id) {
        asked.append(id);
        if (!knownSessions.contains(id)) {
            sendErrorReply(QStringLiteral("org.freedesktop.login1.NoSuchSession"), id);
            return {};
        }
        return QDBusObjectPath(SessionPath());
    }
    QDBusUnixFileDescriptor Inhibit(const QString& what, const QString& who, const QString& why,
                                    const QString& mode) {
        inhibited.append({what, who, why, mode});
        int ends[2] = {-1, -1};
        if (isRefusing || ::pipe2(ends, O_NONBLOCK | O_CLOEXEC) != 0) {
            sendErrorReply(QDBusError::AccessDenied, who);
            return {};
        }
        m_ends.append(ends[0]);
        QDBusUnixFileDescriptor given;
        given.giveFileDescriptor(ends[1]);
        return given;
    }

Q_SIGNALS:
    void PrepareForSleep(bool isAboutToSleep);

private:
    QDBusConnection m_bus;
    QList<int> m_ends;
};

}  // namespace kivo::test
