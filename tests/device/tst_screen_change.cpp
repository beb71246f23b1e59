#include <QtTest>

#include "../config/log_catcher.h"
#include "device/screen_change.h"
#include "device/screen_session.h"
#include "recording_hid_api.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QString kData = QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&1)");
const QString kOtherData = QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_01#7&2)");
const QString kControl = QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD01&MI_00#7&1)");

enum class Suspended { No, Yes };

// A session on a machine where the screen may be plugged in or not.
struct Machine {
    explicit Machine(ArrivalPath path) : pathFrom(path) { session.InitDeviceTable(); }

    // Started with the screens that are listed: the last one's paths are known and it is open.
    void StartWithListed() {
        session.EnumerateScreens();
        session.OpenScreenByName(kScreenName);
    }

    ScreenChangeOutcome Arrives(const QString& name, Suspended suspended = Suspended::No) {
        return ApplyScreenChange(session, {name, true}, suspended == Suspended::Yes, pathFrom);
    }
    ScreenChangeOutcome Leaves(const QString& name, Suspended suspended = Suspended::No) {
        return ApplyScreenChange(session, {name, false}, suspended == Suspended::Yes, pathFrom);
    }
    QByteArray DataPath() const { return TextOf(session.Entry(0).dataPath); }
    quint32 DataFound() const { return session.Entry(0).dataFound; }

    RecordingHidApi api;
    ScreenSession session{api};
    const ArrivalPath pathFrom;
};

struct NamedMachine : Machine {
    NamedMachine() : Machine(ArrivalPath::Name) {}

    // The list has the paths in small letters.
    void StartWithScreen() {
        api.devices = {ControlCollection("c"), DataCollection(kData.toLower().toLatin1())};
        StartWithListed();
    }
};

struct ListedMachine : Machine {
    ListedMachine() : Machine(ArrivalPath::Enumeration) {}

    void StartWithScreen() {
        api.devices = {ControlCollection("c"), DataCollection("d")};
        StartWithListed();
    }
};

}  // namespace

class TestScreenChange : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void ArrivalFillsThePathAndOpens_data();
    void ArrivalFillsThePathAndOpens();
    void ControlPathOfTheStartIsUsedAgain();
    void OtherInterfaceOpensOnlyWhenDataIsFound();
    void RemovalClosesAndKeepsThePath();
    void RemovalTwiceDoesNothing();
    void OtherInterfaceGoesAfterTheDataInterface();
    void OtherInterfaceGoesFirst();
    void SuspendedKeepsTheTableOnly();
    void RemovalOfAnUnusedScreenDoesNothing();
    void RemovalOfTheUsedScreenGoesOnWithTheOther_data();
    void RemovalOfTheUsedScreenGoesOnWithTheOther();
    void RemovalWithALibraryThatFails();
    void ScreensAreAskedAgain_data();
    void ScreensAreAskedAgain();
    void OtherDevicesDoNothing_data();
    void OtherDevicesDoNothing();
    void EveryEntryOfTheIdsIsChanged();
    void ListedArrivalTakesNewPaths();
    void ListedControlInterfaceComesLongBefore();
    void ListedArrivalOfAScreenThatIsGoneAgain();
    void ListedArrivalWithALibraryThatFails();
    void ListedRemovalForgetsAPathThatIsAnotherDevices();
    void ListedRemovalOfASecondScreenKeepsTheFirst();
    void ListedRemovalOfTwoScreensForgetsBoth();
    void ListedRemovalOfTheUsedScreenGoesOnWithTheOther_data();
    void ListedRemovalOfTheUsedScreenGoesOnWithTheOther();
    void ListedRemovalWithALibraryThatFails();
    void IdsAreLogged();
    void DeniedScreenIsToldOnceAnArrival();
    void ScreenThatCannotBeOpenedOtherwiseIsNotTold();
};

void TestScreenChange::ArrivalFillsThePathAndOpens_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<QByteArray>("path");
    QTest::newRow("as Windows tells it") << kData << kData.toLatin1();
    QTest::newRow("without the prefix") << kData.mid(4) << kData.toLatin1();
    QTest::newRow("small letters") << kData.toLower() << kData.toLower().toLatin1();
}

void TestScreenChange::ArrivalFillsThePathAndOpens() {
    QFETCH(QString, name);
    NamedMachine machine;
    QVERIFY(machine.Arrives(name).dataArrived);
    QTEST(machine.DataPath(), "path");
    QCOMPARE(machine.DataFound(), 1U);
    QVERIFY(machine.session.dataHandle() != nullptr);
    QVERIFY(machine.session.controlHandle() == nullptr);  // its path was never seen
    QVERIFY(machine.session.OpenForTransfer() != nullptr);
}

void TestScreenChange::ControlPathOfTheStartIsUsedAgain() {
    NamedMachine machine;
    machine.StartWithScreen();
    machine.api.devices.clear();
    machine.Leaves(kData);
    machine.api.devices = {ControlCollection("new"), DataCollection("new")};
    QVERIFY(machine.Arrives(kData).dataArrived);
    const std::vector<QByteArray> open{"c", kData.toLatin1()};
    QCOMPARE(machine.api.OpenPaths(), open);
    QCOMPARE(machine.api.misuses, 0);
}

void TestScreenChange::OtherInterfaceOpensOnlyWhenDataIsFound() {
    NamedMachine machine;
    QVERIFY(!machine.Arrives(kControl).dataArrived);
    QVERIFY(machine.api.opened.empty());
    QCOMPARE(machine.DataPath(), QByteArray());
    machine.Arrives(kData);
    const size_t opened = machine.api.opened.size();
    QVERIFY(!machine.Arrives(kControl).dataArrived);
    QVERIFY(machine.api.opened.size() > opened);
    QCOMPARE(machine.DataPath(), kData.toLatin1());
}

void TestScreenChange::RemovalClosesAndKeepsThePath() {
    NamedMachine machine;
    machine.StartWithScreen();
    machine.api.devices.clear();
    QVERIFY(machine.Leaves(kData).closed);
    QCOMPARE(machine.DataFound(), 0U);
    QCOMPARE(machine.DataPath(), kData.toLower().toLatin1());
    QVERIFY(machine.session.dataHandle() == nullptr);
    QCOMPARE(machine.api.OpenCount(), 0);
}

void TestScreenChange::RemovalTwiceDoesNothing() {
    NamedMachine machine;
    machine.StartWithScreen();
    machine.api.devices.clear();
    machine.Leaves(kData);
    machine.session.OpenScreenById(0, 0);
    const size_t closed = machine.api.closed.size();
    QVERIFY(!machine.Leaves(kData).closed);
    QCOMPARE(machine.api.closed.size(), closed);
    QCOMPARE(machine.api.misuses, 0);
}

void TestScreenChange::OtherInterfaceGoesAfterTheDataInterface() {
    NamedMachine machine;
    machine.StartWithScreen();
    machine.api.devices.clear();
    machine.Leaves(kData);
    QVERIFY(machine.Leaves(kControl).closed);
    QCOMPARE(machine.DataFound(), 0U);
    QCOMPARE(machine.api.misuses, 0);
}

void TestScreenChange::OtherInterfaceGoesFirst() {
    NamedMachine machine;
    machine.StartWithScreen();
    QVERIFY(!machine.Leaves(kControl).closed);
    QCOMPARE(machine.DataFound(), 1U);
    QVERIFY(machine.session.dataHandle() != nullptr);
}

void TestScreenChange::SuspendedKeepsTheTableOnly() {
    NamedMachine machine;
    QVERIFY(!machine.Arrives(kData, Suspended::Yes).dataArrived);
    QCOMPARE(machine.DataFound(), 1U);
    QCOMPARE(machine.DataPath(), kData.toLatin1());
    QVERIFY(machine.api.opened.empty());
    machine.Arrives(kData);
    QVERIFY(!machine.Leaves(kData, Suspended::Yes).closed);
    QCOMPARE(machine.DataFound(), 0U);
    QVERIFY(machine.session.dataHandle() != nullptr);
    QVERIFY(!machine.Leaves(kControl, Suspended::Yes).closed);
    QVERIFY(machine.session.dataHandle() != nullptr);
}

void TestScreenChange::RemovalOfAnUnusedScreenDoesNothing() {
    NamedMachine machine;
    machine.StartWithScreen();
    const SharedScreenHandle open = machine.session.dataHandle();
    const ScreenChangeOutcome outcome = machine.Leaves(kOtherData);
    QVERIFY(!outcome.closed);
    QVERIFY(!outcome.dataArrived);
    QCOMPARE(machine.DataPath(), kData.toLower().toLatin1());
    QCOMPARE(machine.DataFound(), 1U);
    QVERIFY(machine.session.dataHandle() == open);
    // Its other interface neither.
    QVERIFY(!machine.Leaves(kControl).closed);
    QVERIFY(machine.session.dataHandle() == open);
}

void TestScreenChange::RemovalOfTheUsedScreenGoesOnWithTheOther_data() {
    QTest::addColumn<bool>("suspended");
    QTest::newRow("opened") << false;
    QTest::newRow("suspended") << true;
}

void TestScreenChange::RemovalOfTheUsedScreenGoesOnWithTheOther() {
    QFETCH(bool, suspended);
    NamedMachine machine;
    const QByteArray other = kOtherData.toLower().toLatin1();
    machine.api.devices = {ControlCollection("c2"), DataCollection(other)};
    machine.Arrives(kOtherData);
    machine.Arrives(kData);
    QCOMPARE(machine.DataPath(), kData.toLatin1());
    const ScreenChangeOutcome outcome = machine.Leaves(kData, suspended ? Suspended::Yes : Suspended::No);
    QCOMPARE(outcome.closed, !suspended);
    QCOMPARE(outcome.dataArrived, !suspended);
    QCOMPARE(machine.DataPath(), other);
    QCOMPARE(machine.DataFound(), 1U);
    if (!suspended) {
        QCOMPARE(machine.api.OpenPaths(), (std::vector<QByteArray>{"c2", other}));
    }
    QCOMPARE(machine.session.OpenForTransfer()->Path(), other);
    QCOMPARE(machine.api.misuses, 0);
}

void TestScreenChange::RemovalWithALibraryThatFails() {
    NamedMachine machine;
    machine.StartWithScreen();
    machine.api.initResult = -1;
    QVERIFY(machine.Leaves(kData).closed);
    QCOMPARE(machine.DataFound(), 0U);
}

void TestScreenChange::ScreensAreAskedAgain_data() {
    QTest::addColumn<QString>("name");
    QTest::addColumn<bool>("arrived");
    QTest::newRow("data interface came") << kData << true;
    QTest::newRow("control interface came") << kControl << true;
    QTest::newRow("another screen's data interface went") << kOtherData << false;
    QTest::newRow("control interface went") << kControl << false;
}

void TestScreenChange::ScreensAreAskedAgain() {
    QFETCH(QString, name);
    QFETCH(bool, arrived);
    NamedMachine machine;
    machine.StartWithScreen();
    machine.session.LookAtPanel();
    const int identified = machine.api.identified;
    machine.session.LookAtPanel();
    QCOMPARE(machine.api.identified, identified);
    ApplyScreenChange(machine.session, {name, arrived}, true, ArrivalPath::Name);
    machine.session.LookAtPanel();
    QCOMPARE(machine.api.identified, identified + 1);
}

void TestScreenChange::OtherDevicesDoNothing_data() {
    QTest::addColumn<QString>("name");
    QTest::newRow("another maker") << QStringLiteral(R"(\\?\HID#VID_046D&PID_FD01&MI_01#7)");
    QTest::newRow("another product") << QStringLiteral(R"(\\?\HID#VID_04D9&PID_FD02&MI_01#7)");
    QTest::newRow("another one's interface 0") << QStringLiteral(R"(\\?\HID#VID_046D&PID_C31C&MI_00#7)");
    QTest::newRow("no ids") << QStringLiteral(R"(\\?\HID#VID_XXXX&PID_YYYY&MI_01#7)");
    QTest::newRow("no HID device") << QStringLiteral(R"(\\?\USB#VID_04D9&PID_FD01#7)");
    QTest::newRow("empty") << QString();
}

void TestScreenChange::OtherDevicesDoNothing() {
    QFETCH(QString, name);
    NamedMachine machine;
    machine.StartWithScreen();
    // Right after a name of the screen's: nothing of it may be remembered.
    machine.Arrives(kData);
    const size_t opened = machine.api.opened.size();
    QVERIFY(!machine.Arrives(name).dataArrived);
    QVERIFY(!machine.Leaves(name).closed);
    QCOMPARE(machine.api.opened.size(), opened);
    QCOMPARE(machine.DataFound(), 1U);
    QCOMPARE(machine.DataPath(), kData.toLatin1());
    QVERIFY(machine.session.dataHandle() != nullptr);
}

void TestScreenChange::EveryEntryOfTheIdsIsChanged() {
    NamedMachine machine;
    machine.session.ChangeTable([](ScreenDeviceTable& table) {
        table.count = 3;
        table.entries[1].productId = 0xFD02;
    });
    machine.Arrives(kData);
    QCOMPARE(machine.session.Entry(0).dataFound, 1U);
    QCOMPARE(machine.session.Entry(1).dataFound, 0U);
    QCOMPARE(TextOf(machine.session.Entry(1).dataPath), QByteArray());
    QCOMPARE(machine.session.Entry(2).dataFound, 1U);
    QCOMPARE(TextOf(machine.session.Entry(2).dataPath), kData.toLatin1());
    machine.Leaves(kData);
    QCOMPARE(machine.session.Entry(0).dataFound, 0U);
    QCOMPARE(machine.session.Entry(2).dataFound, 0U);
}

void TestScreenChange::ListedArrivalTakesNewPaths() {
    ListedMachine machine;
    machine.StartWithScreen();
    machine.Leaves(kData);
    machine.api.devices = {ControlCollection("c2"), DataCollection("d2")};
    QVERIFY(machine.Arrives(kData).dataArrived);
    QCOMPARE(machine.DataPath(), QByteArray("d2"));
    const std::vector<QByteArray> open{"c2", "d2"};
    QCOMPARE(machine.api.OpenPaths(), open);
    QCOMPARE(machine.api.misuses, 0);
}

void TestScreenChange::ListedControlInterfaceComesLongBefore() {
    ListedMachine machine;
    machine.StartWithScreen();
    machine.api.devices.clear();
    machine.Leaves(kData);
    machine.Leaves(kControl);
    const size_t opened = machine.api.opened.size();
    machine.api.devices = {ControlCollection("c2")};
    QVERIFY(!machine.Arrives(kControl).dataArrived);
    QCOMPARE(machine.api.opened.size(), opened);
    machine.api.devices = {ControlCollection("c2"), DataCollection("d2")};
    QVERIFY(machine.Arrives(kData).dataArrived);
    const std::vector<QByteArray> open{"c2", "d2"};
    QCOMPARE(machine.api.OpenPaths(), open);
}

void TestScreenChange::ListedArrivalOfAScreenThatIsGoneAgain() {
    ListedMachine machine;
    QVERIFY(!machine.Arrives(kData).dataArrived);
    QCOMPARE(machine.DataFound(), 0U);
    QVERIFY(machine.api.opened.empty());
    QVERIFY(!machine.Leaves(kData).closed);
}

void TestScreenChange::ListedArrivalWithALibraryThatFails() {
    ListedMachine machine;
    machine.api.devices = {ControlCollection("c"), DataCollection("d")};
    machine.api.initResult = -1;
    QVERIFY(!machine.Arrives(kData).dataArrived);
    QCOMPARE(machine.DataFound(), 0U);
    machine.api.initResult = 0;
    QVERIFY(machine.Arrives(kData).dataArrived);
}

void TestScreenChange::ListedRemovalForgetsAPathThatIsAnotherDevices() {
    ListedMachine machine;
    machine.StartWithScreen();
    machine.api.devices = {KeyboardCollection("d")};
    QVERIFY(machine.Leaves(kData).closed);
    QCOMPARE(machine.DataPath(), QByteArray());
    QVERIFY(machine.session.OpenForTransfer() == nullptr);
}

void TestScreenChange::ListedRemovalOfASecondScreenKeepsTheFirst() {
    ListedMachine machine;
    machine.StartWithScreen();
    const SharedScreenHandle open = machine.session.dataHandle();
    // The one that goes was not in use.
    const ScreenChangeOutcome outcome = machine.Leaves(kData);
    QVERIFY(!outcome.closed);
    QVERIFY(!outcome.dataArrived);
    QCOMPARE(machine.DataPath(), QByteArray("d"));
    QCOMPARE(machine.DataFound(), 1U);
    QVERIFY(machine.session.dataHandle() == open);
    QVERIFY(machine.session.OpenForTransfer() != nullptr);
}

// Pulled one after the other; what gets the second one's number afterwards must never be written to.
void TestScreenChange::ListedRemovalOfTwoScreensForgetsBoth() {
    ListedMachine machine;
    machine.api.devices = {ControlCollection("c1"), DataCollection("d1"), ControlCollection("c2"),
                           DataCollection("d2")};
    QVERIFY(machine.Arrives(kData).dataArrived);
    QCOMPARE(machine.DataPath(), QByteArray("d2"));
    machine.api.devices = {ControlCollection("c2"), DataCollection("d2")};
    QVERIFY(!machine.Leaves(kData).closed);
    machine.Leaves(kControl);
    QCOMPARE(machine.DataPath(), QByteArray("d2"));

    machine.api.devices = {KeyboardCollection("d2"), KeyboardCollection("c2")};
    const ScreenChangeOutcome outcome = machine.Leaves(kData);
    machine.Leaves(kControl);
    QVERIFY(outcome.closed);
    QVERIFY(!outcome.dataArrived);
    QCOMPARE(machine.DataFound(), 0U);
    QCOMPARE(machine.DataPath(), QByteArray());
    QCOMPARE(TextOf(machine.session.Entry(0).controlPath), QByteArray());
    QVERIFY(machine.session.OpenForTransfer() == nullptr);
    machine.session.OpenScreenByName(kScreenName);
    QCOMPARE(machine.api.OpenCount(), 0);
    QCOMPARE(machine.api.misuses, 0);
}

void TestScreenChange::ListedRemovalOfTheUsedScreenGoesOnWithTheOther() {
    QFETCH(bool, suspended);
    ListedMachine machine;
    machine.api.devices = {ControlCollection("c1"), DataCollection("d1"), ControlCollection("c2"),
                           DataCollection("d2")};
    machine.Arrives(kData);
    machine.api.devices = {ControlCollection("c1"), DataCollection("d1"), KeyboardCollection("d2")};
    const ScreenChangeOutcome outcome = machine.Leaves(kData, suspended ? Suspended::Yes : Suspended::No);
    QCOMPARE(outcome.closed, !suspended);
    QCOMPARE(outcome.dataArrived, !suspended);
    QCOMPARE(machine.DataPath(), QByteArray("d1"));
    QCOMPARE(machine.DataFound(), 1U);
    const std::vector<QByteArray> open =
        suspended ? std::vector<QByteArray>{"c2", "d2"} : std::vector<QByteArray>{"c1", "d1"};
    QCOMPARE(machine.api.OpenPaths(), open);
    machine.Leaves(kControl);
    QCOMPARE(machine.api.OpenPaths(), open);
    QCOMPARE(machine.session.OpenForTransfer()->Path(), QByteArray("d1"));
    QCOMPARE(machine.api.misuses, 0);
}

void TestScreenChange::ListedRemovalOfTheUsedScreenGoesOnWithTheOther_data() {
    QTest::addColumn<bool>("suspended");
    QTest::newRow("opened") << false;
    QTest::newRow("suspended") << true;
}

void TestScreenChange::ListedRemovalWithALibraryThatFails() {
    ListedMachine machine;
    machine.StartWithScreen();
    machine.api.initResult = -1;
    QVERIFY(machine.Leaves(kData).closed);
    QCOMPARE(machine.DataFound(), 0U);
    QCOMPARE(machine.DataPath(), QByteArray());
}

void TestScreenChange::IdsAreLogged() {
    NamedMachine machine;
    const LogCatcher log;
    machine.Arrives(kControl);
    QVERIFY(log.lines().isEmpty());
    machine.Leaves(kData);
    QCOMPARE(log.lines(), QStringList{QStringLiteral("vid = 1241, pid = 64769\n")});
}

void TestScreenChange::DeniedScreenIsToldOnceAnArrival() {
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const auto restore = qScopeGuard([] { QLoggingCategory::setFilterRules(QString()); });
    ListedMachine machine;
    machine.api.refusesOpen = [](const QByteArray&) { return true; };
    machine.api.denies = true;
    machine.api.devices = {ControlCollection("/dev/hidraw4"), DataCollection("/dev/hidraw5")};
    const LogCatcher log;
    machine.Arrives(kControl);
    QVERIFY(machine.Arrives(kData).dataArrived);
    machine.Arrives(kControl);
    for (int transfer = 0; transfer < 5; ++transfer) {
        QVERIFY(machine.session.OpenForTransfer() == nullptr);
    }
    QCOMPARE(log.lines().size(), 1);
    QVERIFY(log.lines().constFirst().contains(QLatin1String("/dev/hidraw5")));
    QVERIFY(log.lines().constFirst().contains(QLatin1String("60-kivo-screen.rules")));
    machine.Leaves(kData);
    QCOMPARE(log.lines().size(), 1);
    machine.Arrives(kData);
    QCOMPARE(log.lines().size(), 2);
}

void TestScreenChange::ScreenThatCannotBeOpenedOtherwiseIsNotTold() {
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
    const auto restore = qScopeGuard([] { QLoggingCategory::setFilterRules(QString()); });
    ListedMachine machine;
    machine.api.devices = {ControlCollection("c"), DataCollection("d")};
    const LogCatcher log;
    machine.Arrives(kData);  // opened
    machine.api.denies = true;
    machine.Arrives(kData);  // opened all the same
    machine.api.denies = false;
    machine.api.refusesOpen = [](const QByteArray&) { return true; };
    machine.Arrives(kData);
    QCOMPARE(log.lines(), QStringList());
}

KIVO_GUILESS_TEST(TestScreenChange)
#include "tst_screen_change.moc"
