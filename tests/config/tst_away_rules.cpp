#include <QtTest>

#include "config/away_rules.h"
#include "config/folders.h"
#include "config/settings_file.h"
#include "log_catcher.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

// When the panel is dark by itself, as the person has ticked it.
class TestAwayRules : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void SleepAloneIsTickedAtFirst();
    void RulesAreKept_data();
    void RulesAreKept();
    void UsualRulesLeaveNoTicksInTheFile();
    void NoiseIsWhatIsTickedAtFirst_data();
    void NoiseIsWhatIsTickedAtFirst();
    void NightLiesBetweenTheTimes_data();
    void NightLiesBetweenTheTimes();
    void ClockThatIsPutForwardOrBack();
};

namespace {

AwayRules Night(int from, int to) {
    AwayRules rules;
    rules.nightFrom = from;
    rules.nightTo = to;
    return rules;
}

}  // namespace

void TestAwayRules::init() {
    QVERIFY(QDir(SettingsFolder()).removeRecursively());
    QVERIFY(QDir().mkpath(SettingsFolder()));
}

void TestAwayRules::SleepAloneIsTickedAtFirst() {
    const AwayRules rules = LoadAwayRules();
    QVERIFY(rules.darkAtSleep);
    QVERIFY(!rules.darkAtLock && !rules.darkAtScreenSaver && !rules.darkAtExit);
    QVERIFY(rules.night == NightLight::Usual);
    QCOMPARE(rules.nightFrom, 22 * 60);
    QCOMPARE(rules.nightTo, 7 * 60);
    QVERIFY(rules == AwayRules());
}

void TestAwayRules::RulesAreKept_data() {
    QTest::addColumn<int>("changed");
    QTest::newRow("lock") << 0;
    QTest::newRow("sleep") << 1;
    QTest::newRow("screen saver") << 2;
    QTest::newRow("exit") << 3;
    QTest::newRow("dimmed night") << 4;
    QTest::newRow("black night") << 5;
    QTest::newRow("times") << 6;
}

void TestAwayRules::RulesAreKept() {
    QFETCH(int, changed);
    AwayRules rules;
    bool AwayRules::*const ticks[] = {&AwayRules::darkAtLock, &AwayRules::darkAtSleep,
                                      &AwayRules::darkAtScreenSaver, &AwayRules::darkAtExit};
    if (changed < 4) {
        rules.*ticks[changed] = !(rules.*ticks[changed]);
    } else if (changed < 6) {
        rules.night = changed == 4 ? NightLight::Dimmed : NightLight::Black;
    } else {
        rules.nightFrom = 0;
        rules.nightTo = 24 * 60 - 1;
    }
    QVERIFY(SaveAwayRules(rules));
    QVERIFY(LoadAwayRules() == rules);
    QVERIFY(rules != AwayRules());
    QVERIFY(SaveAwayRules(AwayRules()));
    QVERIFY(LoadAwayRules() == AwayRules());
}

void TestAwayRules::UsualRulesLeaveNoTicksInTheFile() {
    QVERIFY(SaveAwayRules(AwayRules()));
    const SettingsReader settings;
    for (const SettingKey& key : {keys::kDarkAtLock, keys::kLitAtSleep, keys::kDarkAtScreenSaver,
                                  keys::kDarkAtExit, keys::kNightLight}) {
        QVERIFY(!settings.Contains(QString(key.name)));
    }
}

void TestAwayRules::NoiseIsWhatIsTickedAtFirst_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QString>("value");
    for (const SettingKey& key : {keys::kDarkAtLock, keys::kLitAtSleep, keys::kDarkAtScreenSaver,
                                  keys::kDarkAtExit, keys::kNightLight, keys::kNightFrom, keys::kNightTo}) {
        for (const char* value : {"-1", "1440", "99999999999", "yes", ""}) {
            QTest::addRow("%s=%s", key.name.data(), value) << QString(key.name) << QString::fromLatin1(value);
        }
    }
}

void TestAwayRules::NoiseIsWhatIsTickedAtFirst() {
    QFETCH(QString, key);
    QFETCH(QString, value);
    const LogCatcher log;
    SettingsWriter settings;
    settings.SetText(key, value);
    QVERIFY(settings.Commit());
    QVERIFY(LoadAwayRules() == AwayRules());
}

void TestAwayRules::NightLiesBetweenTheTimes_data() {
    QTest::addColumn<int>("from");
    QTest::addColumn<int>("to");
    QTest::addColumn<QTime>("time");
    QTest::addColumn<bool>("isNight");
    const auto row = [](const char* name, int from, int to, const QTime& time, bool isNight) {
        QTest::newRow(name) << from << to << time << isNight;
    };
    constexpr int kTen = 22 * 60;
    constexpr int kSeven = 7 * 60;
    row("before it", kTen, kSeven, QTime(21, 59, 59), false);
    row("its first moment", kTen, kSeven, QTime(22, 0), true);
    row("before midnight", kTen, kSeven, QTime(23, 59, 59), true);
    row("midnight", kTen, kSeven, QTime(0, 0), true);
    row("its last moment", kTen, kSeven, QTime(6, 59, 59), true);
    row("after it", kTen, kSeven, QTime(7, 0), false);
    row("noon", kTen, kSeven, QTime(12, 0), false);
    row("on one day, before it", kSeven, kTen, QTime(6, 59), false);
    row("on one day", kSeven, kTen, QTime(7, 0), true);
    row("on one day, after it", kSeven, kTen, QTime(22, 0), false);
    row("until midnight", kTen, 0, QTime(23, 59), true);
    row("until midnight, after it", kTen, 0, QTime(0, 0), false);
    row("from midnight", 0, kSeven, QTime(0, 0), true);
    row("equal times", kTen, kTen, QTime(22, 0), false);
}

void TestAwayRules::NightLiesBetweenTheTimes() {
    QFETCH(int, from);
    QFETCH(int, to);
    QFETCH(QTime, time);
    QTEST(IsNight(Night(from, to), time), "isNight");
}

// A night from half past one to half past two. In spring three o'clock follows two, in autumn two follows
// three.
void TestAwayRules::ClockThatIsPutForwardOrBack() {
    const AwayRules rules = Night(90, 150);
    const auto nights = [&rules](std::initializer_list<QTime> times) {
        QVector<bool> are;
        for (const QTime& time : times) {
            are.append(IsNight(rules, time));
        }
        return are;
    };
    QCOMPARE(nights({QTime(1, 29), QTime(1, 30), QTime(1, 59), QTime(3, 0), QTime(3, 1)}),
             (QVector<bool>{false, true, true, false, false}));
    QCOMPARE(nights({QTime(1, 59), QTime(2, 29), QTime(2, 30), QTime(2, 59), QTime(2, 0), QTime(2, 29),
                     QTime(2, 30)}),
             (QVector<bool>{true, true, false, false, true, true, false}));
}

KIVO_GUILESS_TEST(TestAwayRules)
#include "tst_away_rules.moc"
