#include <QSignalSpy>
#include <QtTest>

#include "support/test_program.h"
#include "window/tray.h"

using namespace kivo;

class TestTray : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void TheMenuAsksForTheWindowAndTheEnd();
    void AnotherMenuStandsInIt();
    void TheToolTipHasTheStateOnASecondLine();
    void TheTickFollowsTheAutostart_data();
    void TheTickFollowsTheAutostart();
    void ATickSwitchesIt();
    void ASwitchThatFailsGoesBack();
};

namespace {

// An autostart that is only remembered.
struct Memory {
    bool on = false;
    QString trouble;

    Tray::Autostart Seam() {
        return {[this] { return on; },
                [this](bool wanted) {
                    on = trouble.isEmpty() ? wanted : on;
                    return trouble;
                }};
    }
};

// Its entries, from the top.
enum Entry { kWindow, kSensors, kReport, kAtLogin, kExit };

QAction* EntryOf(Tray& tray, Entry entry) {
    return tray.Menu().actions().value(entry);
}

void Open(Tray& tray) {
    Q_EMIT tray.Menu().aboutToShow();
}

}  // namespace

void TestTray::TheMenuAsksForTheWindowAndTheEnd() {
    Memory memory;
    Tray tray(memory.Seam());
    tray.SetTexts();
    QCOMPARE(tray.Menu().actions().size(), 5);
    QSignalSpy window(&tray, &Tray::showRequested);
    QSignalSpy end(&tray, &Tray::exitRequested);
    EntryOf(tray, kWindow)->trigger();
    QCOMPARE(window.count(), 1);
    QCOMPARE(end.count(), 0);
    EntryOf(tray, kExit)->trigger();
    QCOMPARE(window.count(), 1);
    QCOMPARE(end.count(), 1);
    const QSignalSpy sensors(&tray, &Tray::sensorsRequested);
    EntryOf(tray, kSensors)->trigger();
    QCOMPARE(sensors.count(), 1);
    const QSignalSpy report(&tray, &Tray::reportRequested);
    EntryOf(tray, kReport)->trigger();
    QCOMPARE(report.count(), 1);
    QCOMPARE(sensors.count(), 1);
    QCOMPARE(window.count() + end.count(), 2);
    QVERIFY(!memory.on);
    QStringList texts;
    const QList<QAction*> actions = tray.Menu().actions();
    for (const QAction* action : actions) {
        QVERIFY(!action->text().isEmpty());
        texts.append(action->text());
    }
    QCOMPARE(texts.removeDuplicates(), 0);
}

void TestTray::AnotherMenuStandsInIt() {
    Memory memory;
    QMenu another(QStringLiteral("Another"));
    Tray tray(memory.Seam());
    tray.AddMenu(another);
    QCOMPARE(tray.Menu().actions().size(), 6);
    QCOMPARE(tray.Menu().actions().at(kAtLogin)->menu(), &another);
    QVERIFY(tray.Menu().actions().at(kAtLogin + 1)->isCheckable());
}

void TestTray::TheToolTipHasTheStateOnASecondLine() {
    Memory memory;
    Tray tray(memory.Seam());
    tray.SetTexts();
    const QString name = QStringLiteral("副屏设置");
    QCOMPARE(tray.ToolTip(), name);
    tray.SetState(QStringLiteral("connected"));
    QCOMPARE(tray.ToolTip(), name + QStringLiteral("\nconnected"));
    tray.SetState(QStringLiteral("no screen"));
    tray.SetTexts();
    QCOMPARE(tray.ToolTip(), name + QStringLiteral("\nno screen"));
    tray.SetState(QString());
    QCOMPARE(tray.ToolTip(), name);
}

void TestTray::TheTickFollowsTheAutostart_data() {
    QTest::addColumn<bool>("on");
    QTest::newRow("on") << true;
    QTest::newRow("off") << false;
}

void TestTray::TheTickFollowsTheAutostart() {
    QFETCH(bool, on);
    Memory memory;
    memory.on = !on;
    Tray tray(memory.Seam());
    Open(tray);
    QVERIFY(EntryOf(tray, kAtLogin)->isCheckable());
    QCOMPARE(EntryOf(tray, kAtLogin)->isChecked(), !on);
    // Changed from outside, with the desktop's settings.
    memory.on = on;
    Open(tray);
    QCOMPARE(EntryOf(tray, kAtLogin)->isChecked(), on);
    QCOMPARE(memory.on, on);
}

void TestTray::ATickSwitchesIt() {
    Memory memory;
    Tray tray(memory.Seam());
    Open(tray);
    EntryOf(tray, kAtLogin)->trigger();
    QVERIFY(memory.on);
    QVERIFY(EntryOf(tray, kAtLogin)->isChecked());
    EntryOf(tray, kAtLogin)->trigger();
    QVERIFY(!memory.on);
    QVERIFY(!EntryOf(tray, kAtLogin)->isChecked());
}

void TestTray::ASwitchThatFailsGoesBack() {
    Memory memory;
    memory.trouble = QStringLiteral("The disc is full.");
    Tray tray(memory.Seam());
    Open(tray);
    QTest::ignoreMessage(QtWarningMsg, "The autostart cannot be changed. The disc is full.");
    EntryOf(tray, kAtLogin)->trigger();
    QVERIFY(!EntryOf(tray, kAtLogin)->isChecked());
}

KIVO_TEST(TestTray)
#include "tst_tray.moc"
