#include <QtTest>

#include "config/default_profile.h"
#include "config/first_run_marker.h"
#include "config/folders.h"
#include "config/kept_settings.h"
#include "log_catcher.h"
#include "private_home.h"
#include "support/test_program.h"

using namespace kivo;
using namespace kivo::test;

namespace {

const QByteArray kDefaults("[Config]\nThemeID=2\n");

// A person's folders and the program's, whose Config.ini is the default one.
struct Desk {
    Desk() {
        WriteFile(program.path() + QStringLiteral("/Config.ini"), kDefaults);
        WriteFile(program.path() + QStringLiteral("/whole.png"), "a picture");
    }

    // The next start, after the mark was lost.
    void StartUnmarked() const {
        QFile::remove(home.marker());
        SeedDefaultProfile(program.path());
    }
    void Write(const QByteArray& settings) const { WriteFile(Path(), settings); }
    bool Restore() const { return RestoreKeptSettings(DefaultConfigFile(program.path())); }
    QString Path(const char* ending = "") const {
        return home.settings(QStringLiteral("/Config.ini") + QLatin1String(ending));
    }
    QByteArray Content(const char* ending = "") const { return ReadFile(Path(ending)); }

    PrivateHome home;
    QTemporaryDir program;
};

const QByteArray kNoFile("<no such file>");

}  // namespace

class TestKeptSettings : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void LostMarkKeepsWhatThePersonMade() {
        const Desk desk;
        desk.Write("mine");
        desk.StartUnmarked();
        QCOMPARE(desk.Content(), kDefaults);
        QCOMPARE(desk.Content(".kept"), QByteArray("mine"));
        QVERIFY(HasKeptSettings());
    }

    void DefaultsAndNewPeopleHaveNothingToKeep() {
        const Desk desk;
        desk.StartUnmarked();
        QVERIFY(!HasKeptSettings());
        desk.StartUnmarked();
        QVERIFY(!HasKeptSettings());
        QVERIFY(!desk.Restore());
        QCOMPARE(desk.Content(), kDefaults);
    }

    void RestoringBringsThemBack() {
        const Desk desk;
        desk.Write("mine");
        desk.StartUnmarked();
        desk.Write("made since");
        QVERIFY(desk.Restore());
        QCOMPARE(desk.Content(), QByteArray("mine"));
        QCOMPARE(desk.Content(".replaced"), QByteArray("made since"));
        QCOMPARE(desk.Content(".kept"), kNoFile);
        QVERIFY(!HasKeptSettings());
    }

    void RestoringWithoutAFileThereBringsThemBack() {
        const Desk desk;
        desk.Write("mine");
        desk.StartUnmarked();
        QVERIFY(QFile::remove(desk.Path()));
        QVERIFY(desk.Restore());
        QCOMPARE(desk.Content(), QByteArray("mine"));
    }

    void DismissedOnesAreAskedForNoMoreAndLieThere() {
        const Desk desk;
        desk.Write("mine");
        desk.StartUnmarked();
        desk.Write("made since");
        desk.StartUnmarked();
        DismissKeptSettings();
        QVERIFY(!HasKeptSettings());
        QCOMPARE(desk.Content(), kDefaults);
        QCOMPARE(desk.Content(".replaced"), QByteArray("mine"));
        QCOMPARE(desk.Content(".replaced.2"), QByteArray("made since"));
    }

    void SecondLossTakesNothingFromTheFirst() {
        const Desk desk;
        desk.Write("mine");
        desk.StartUnmarked();
        desk.Write("made since");
        desk.StartUnmarked();
        QCOMPARE(desk.Content(".kept"), QByteArray("mine"));
        QCOMPARE(desk.Content(".kept.2"), QByteArray("made since"));
        QVERIFY(desk.Restore());
        QCOMPARE(desk.Content(), QByteArray("made since"));
        // That was the answer: the older ones are not offered, and not lost.
        QVERIFY(!HasKeptSettings());
        QCOMPARE(desk.Content(".replaced"), QByteArray("mine"));
        QVERIFY(!desk.Restore());
        QCOMPARE(desk.Content(), QByteArray("made since"));
    }

    void DefaultsThatGiveWayAreNotKept() {
        const Desk desk;
        desk.Write("mine");
        desk.StartUnmarked();
        QVERIFY(desk.Restore());
        QCOMPARE(desk.Content(".replaced"), kNoFile);
    }

    void WhatGivesWayTwiceIsKeptOnce() {
        const Desk desk;
        for (int again = 0; again < 3; ++again) {
            desk.Write("mine");
            desk.StartUnmarked();
            desk.Write("made since");
            QVERIFY(desk.Restore());
        }
        QCOMPARE(desk.Content(".replaced"), QByteArray("made since"));
        QCOMPARE(desk.Content(".replaced.2"), kNoFile);
    }

    void SameSettingsAreKeptOnce() {
        const Desk desk;
        for (int loss = 0; loss < 3; ++loss) {
            desk.Write("mine");
            desk.StartUnmarked();
        }
        QCOMPARE(desk.Content(".kept"), QByteArray("mine"));
        QCOMPARE(desk.Content(".kept.2"), kNoFile);
    }

    void ManyLossesFillNoDisk() {
        const Desk desk;
        for (int loss = 1; loss <= 12; ++loss) {
            desk.Write("number " + QByteArray::number(loss));
            desk.StartUnmarked();
        }
        // The oldest have gone.
        QCOMPARE(desk.Content(".kept"), QByteArray("number 4"));
        QCOMPARE(desk.Content(".kept.9"), QByteArray("number 12"));
        QCOMPARE(desk.Content(".kept.10"), kNoFile);
    }

    void FreeNumbersAreUsedBeforeAnythingGoes() {
        const Desk desk;
        WriteFile(desk.Path(".kept.3"), "three");
        WriteFile(desk.Path(".kept.9"), "nine");
        desk.Write("mine");
        desk.StartUnmarked();
        QCOMPARE(desk.Content(".kept"), QByteArray("three"));
        QCOMPARE(desk.Content(".kept.2"), QByteArray("nine"));
        QCOMPARE(desk.Content(".kept.3"), QByteArray("mine"));
        QCOMPARE(desk.Content(".kept.9"), kNoFile);
    }

    void WhatCannotBeKeptIsNotReplaced() {
        const Desk desk;
        desk.Write("mine");
        // Nothing can be written in the place of a folder that is not empty.
        QVERIFY(WriteFile(desk.Path(".kept/in the way"), "x"));
        const LogCatcher log;
        desk.StartUnmarked();
        QCOMPARE(desk.Content(), QByteArray("mine"));
        QVERIFY(log.lines().filter(QStringLiteral("cannot be kept")).size() == 1);
    }

    void RestoringThatFailsChangesNothing() {
        const Desk desk;
        desk.Write("mine");
        desk.StartUnmarked();
        desk.Write("made since");
        QVERIFY(WriteFile(desk.Path(".replaced/in the way"), "x"));
        const LogCatcher log;
        QVERIFY(!desk.Restore());
        QCOMPARE(desk.Content(), QByteArray("made since"));
        QCOMPARE(desk.Content(".kept"), QByteArray("mine"));
        QVERIFY(HasKeptSettings());
        QVERIFY(log.lines().filter(QStringLiteral("cannot be kept")).size() == 1);
    }
};

KIVO_GUILESS_TEST(TestKeptSettings)
#include "tst_kept_settings.moc"
