#include <QSignalSpy>
#include <QtTest>
#include <memory>

#include "session/away_watch_linux.h"
#include "support/private_bus_linux.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// What logind and the screen saver say, on a bus of the test's own.
class TestAwayWatch : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void SleepIsHeldUntilItIsLet();
    void SleepIsHeldOnceMoreAfterIt();
    void SleepThatIsNotHeldIsToldAllTheSame();
    void RefusedInhibitorIsDoneWithout();
    void EachLockIsTold();
    void HintOfTheSessionCounts();
    void SessionThatIsLockedAlready();
    void OtherSessionsAndInterfacesDoNotCount();
    void LogindThatKnowsNoAutoIsAskedForTheNamedSession();
    void SaverIsTold_data();
    void SaverIsTold();
    void SaverThatGoesOffUnlocks();
    void SaverThatDiesIsOff();
    void WithoutABusNothingIsTold();
    void NobodyElseIsBelieved();

private:
    // A watch over the bus, once it is listening.
    void Watch();
    void Say(const QString& path, const QString& interface, const QString& member, bool value) const;

    std::unique_ptr<PrivateBus> m_bus;
    std::unique_ptr<FakeLogind> m_logind;
    std::unique_ptr<DBusAwayWatch> m_watch;
    QStringList m_told;  // every signal of the watch's
};

namespace {

const QString kService = QStringLiteral("service");
const QString kProgram = QStringLiteral("program");
const QString kDesktop = QStringLiteral("desktop");

}  // namespace

void TestAwayWatch::init() {
    qunsetenv("XDG_SESSION_ID");
    m_told.clear();
    m_bus = std::make_unique<PrivateBus>();
    m_logind = std::make_unique<FakeLogind>(m_bus->Connect(kService));
}

void TestAwayWatch::cleanup() {
    m_watch.reset();
    m_logind.reset();
    m_bus.reset();
}

void TestAwayWatch::Watch() {
    const QDBusConnection bus = m_bus->Connect(kProgram);
    QVERIFY(bus.isConnected());
    m_watch = std::make_unique<DBusAwayWatch>(bus, bus);
    connect(m_watch.get(), &AwayWatch::sleeping, this, [this] { m_told.append(QStringLiteral("sleeping")); });
    connect(m_watch.get(), &AwayWatch::awake, this, [this] { m_told.append(QStringLiteral("awake")); });
    connect(m_watch.get(), &AwayWatch::lockedChanged, this, [this](bool isLocked) {
        m_told.append(isLocked ? QStringLiteral("locked") : QStringLiteral("unlocked"));
    });
    connect(m_watch.get(), &AwayWatch::saverChanged, this, [this](bool isOn) {
        m_told.append(isOn ? QStringLiteral("saver on") : QStringLiteral("saver off"));
    });
    // It listens to the session before it asks it.
    QTRY_VERIFY(m_logind->session.timesAsked > 0);
}

void TestAwayWatch::Say(const QString& path, const QString& interface, const QString& member,
                        bool value) const {
    QDBusMessage signal = QDBusMessage::createSignal(path, interface, member);
    signal << value;
    QDBusConnection(kDesktop).send(signal);
}

void TestAwayWatch::SleepIsHeldUntilItIsLet() {
    Watch();
    QCOMPARE(m_logind->Held(), 0);
    m_watch->HoldSleep(true);
    QTRY_COMPARE(m_logind->Held(), 1);
    QCOMPARE(m_logind->inhibited.size(), 1);
    QCOMPARE(m_logind->inhibited[0][0], QStringLiteral("sleep"));
    QCOMPARE(m_logind->inhibited[0][3], QStringLiteral("delay"));
    Q_EMIT m_logind->PrepareForSleep(true);
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("sleeping")});
    QCOMPARE(m_logind->Held(), 1);
    m_watch->LetSleep();
    QTRY_COMPARE(m_logind->Held(), 0);
}

void TestAwayWatch::SleepIsHeldOnceMoreAfterIt() {
    Watch();
    m_watch->HoldSleep(true);
    QTRY_COMPARE(m_logind->Held(), 1);
    for (int time = 0; time < 2; ++time) {
        m_told.clear();
        Q_EMIT m_logind->PrepareForSleep(true);
        QTRY_COMPARE(m_told, QStringList{QStringLiteral("sleeping")});
        m_watch->LetSleep();
        QTRY_COMPARE(m_logind->Held(), 0);
        Q_EMIT m_logind->PrepareForSleep(false);
        QTRY_COMPARE(m_told, (QStringList{QStringLiteral("sleeping"), QStringLiteral("awake")}));
        QTRY_COMPARE(m_logind->Held(), 1);
    }
    m_watch->HoldSleep(false);
    QTRY_COMPARE(m_logind->Held(), 0);
}

void TestAwayWatch::SleepThatIsNotHeldIsToldAllTheSame() {
    Watch();
    Q_EMIT m_logind->PrepareForSleep(true);
    Q_EMIT m_logind->PrepareForSleep(false);
    QTRY_COMPARE(m_told, (QStringList{QStringLiteral("sleeping"), QStringLiteral("awake")}));
    QCOMPARE(m_logind->inhibited.size(), 0);
}

void TestAwayWatch::RefusedInhibitorIsDoneWithout() {
    m_logind->isRefusing = true;
    Watch();
    m_watch->HoldSleep(true);
    QTRY_COMPARE(m_logind->inhibited.size(), 1);
    Q_EMIT m_logind->PrepareForSleep(true);
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("sleeping")});
    m_watch->LetSleep();
    QCOMPARE(m_logind->Held(), 0);
}

// The person may have ended the former one without the system's knowing. The hint that follows a lock says
// nothing new.
void TestAwayWatch::EachLockIsTold() {
    Watch();
    Q_EMIT m_logind->session.Lock();
    m_logind->ChangeHint(true);
    Q_EMIT m_logind->session.Lock();
    QTRY_COMPARE(m_told, (QStringList{QStringLiteral("locked"), QStringLiteral("locked")}));
    Q_EMIT m_logind->session.Unlock();
    m_logind->ChangeHint(false);
    Q_EMIT m_logind->PrepareForSleep(false);  // after all that
    QTRY_COMPARE(m_told, (QStringList{QStringLiteral("locked"), QStringLiteral("locked"),
                                      QStringLiteral("unlocked"), QStringLiteral("awake")}));
}

void TestAwayWatch::HintOfTheSessionCounts() {
    Watch();
    m_logind->ChangeHint(true);
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("locked")});
    m_logind->ChangeHint(false);
    QTRY_COMPARE(m_told, (QStringList{QStringLiteral("locked"), QStringLiteral("unlocked")}));
}

void TestAwayWatch::SessionThatIsLockedAlready() {
    m_logind->session.isLocked = true;
    Watch();
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("locked")});
}

void TestAwayWatch::OtherSessionsAndInterfacesDoNotCount() {
    Watch();
    m_logind->ChangeHint(true, QStringLiteral("org.freedesktop.login1.Seat"));
    QDBusMessage lock =
        QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1/session/_39"),
                                   QStringLiteral("org.freedesktop.login1.Session"), QStringLiteral("Lock"));
    QDBusConnection(kService).send(lock);
    Q_EMIT m_logind->PrepareForSleep(false);  // after all that
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("awake")});
}

void TestAwayWatch::LogindThatKnowsNoAutoIsAskedForTheNamedSession() {
    qputenv("XDG_SESSION_ID", "2");
    m_logind->knownSessions = QStringList{QStringLiteral("2")};
    Watch();
    QCOMPARE(m_logind->asked, (QStringList{QStringLiteral("auto"), QStringLiteral("2")}));
    Q_EMIT m_logind->session.Lock();
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("locked")});
}

void TestAwayWatch::SaverIsTold_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("path");
    QTest::newRow("common") << QStringLiteral("org.freedesktop.ScreenSaver")
                            << QStringLiteral("/org/freedesktop/ScreenSaver");
    QTest::newRow("common, older path")
        << QStringLiteral("org.freedesktop.ScreenSaver") << QStringLiteral("/ScreenSaver");
    QTest::newRow("GNOME") << QStringLiteral("org.gnome.ScreenSaver")
                           << QStringLiteral("/org/gnome/ScreenSaver");
}

void TestAwayWatch::SaverIsTold() {
    QFETCH(QString, name);
    QFETCH(QString, path);
    QDBusConnection desktop = m_bus->Connect(kDesktop);
    QVERIFY(desktop.registerService(name));
    Watch();
    Say(path, name, QStringLiteral("ActiveChanged"), true);
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("saver on")});
    Say(path, name, QStringLiteral("ActiveChanged"), true);
    Say(path, name, QStringLiteral("ActiveChanged"), false);
    QTRY_COMPARE(m_told, (QStringList{QStringLiteral("saver on"), QStringLiteral("saver off")}));
}

void TestAwayWatch::SaverThatGoesOffUnlocks() {
    const QString name = QStringLiteral("org.freedesktop.ScreenSaver");
    QDBusConnection desktop = m_bus->Connect(kDesktop);
    QVERIFY(desktop.registerService(name));
    Watch();
    Q_EMIT m_logind->session.Lock();
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("locked")});
    Say(QStringLiteral("/ScreenSaver"), name, QStringLiteral("ActiveChanged"), false);
    Say(QStringLiteral("/ScreenSaver"), name, QStringLiteral("ActiveChanged"), true);
    Say(QStringLiteral("/ScreenSaver"), name, QStringLiteral("ActiveChanged"), false);
    QTRY_COMPARE(m_told, (QStringList{QStringLiteral("locked"), QStringLiteral("saver on"),
                                      QStringLiteral("unlocked"), QStringLiteral("saver off")}));
}

void TestAwayWatch::SaverThatDiesIsOff() {
    const QString name = QStringLiteral("org.freedesktop.ScreenSaver");
    QDBusConnection desktop = m_bus->Connect(kDesktop);
    QVERIFY(desktop.registerService(name));
    Watch();
    Say(QStringLiteral("/ScreenSaver"), name, QStringLiteral("ActiveChanged"), true);
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("saver on")});
    QVERIFY(desktop.unregisterService(name));
    QTRY_COMPARE(m_told, (QStringList{QStringLiteral("saver on"), QStringLiteral("saver off")}));
}

void TestAwayWatch::WithoutABusNothingIsTold() {
    const QDBusConnection none(QStringLiteral("none"));
    DBusAwayWatch watch(none, none);
    watch.HoldSleep(true);
    watch.LetSleep();
    watch.HoldSleep(false);
    QCOMPARE(m_logind->inhibited.size(), 0);
}

// Any program may send to the system's bus.
void TestAwayWatch::NobodyElseIsBelieved() {
    const QDBusConnection stranger = m_bus->Connect(kDesktop);
    QVERIFY(stranger.isConnected());
    Watch();
    Say(QStringLiteral("/org/freedesktop/login1"), QStringLiteral("org.freedesktop.login1.Manager"),
        QStringLiteral("PrepareForSleep"), true);
    // The bus has passed it on when it answers what comes after it.
    QDBusConnection(kDesktop).call(QDBusMessage::createMethodCall(
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("/org/freedesktop/DBus"),
        QStringLiteral("org.freedesktop.DBus"), QStringLiteral("GetId")));
    Q_EMIT m_logind->PrepareForSleep(false);
    QTRY_COMPARE(m_told, QStringList{QStringLiteral("awake")});
}

KIVO_TEST(TestAwayWatch)
#include "tst_away_watch.moc"
