#include <QtTest>

#include "session/autostart.h"
#include "support/test_program.h"

using namespace kivo;

// What is written and read, and the switch as a whole, in a home of the test's own.
class TestAutostart : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void TheEntryNamesItsProgram_data();
    void TheEntryNamesItsProgram();
    void TheProgramIsReadBack_data();
    void TheProgramIsReadBack();
    void ABlankMayBeEscaped();
    void EntriesThatStartNothing_data();
    void EntriesThatStartNothing();
    void AnEntryThatWasEditedIsSwitchedOn_data();
    void AnEntryThatWasEditedIsSwitchedOn();
    void TheRunCommandNamesItsProgram_data();
    void TheRunCommandNamesItsProgram();
    void CommandsWithoutAProgram_data();
    void CommandsWithoutAProgram();
    void OnAndOff();

private:
    static QByteArray Line(const QByteArray& entry, const QByteArray& key);
};

QByteArray TestAutostart::Line(const QByteArray& entry, const QByteArray& key) {
    QByteArray found;
    const QList<QByteArray> lines = entry.split('\n');
    for (const QByteArray& line : lines) {
        if (line.startsWith(key + '=')) {
            found = line.mid(key.size() + 1);
        }
    }
    return found;
}

void TestAutostart::TheEntryNamesItsProgram_data() {
    QTest::addColumn<QString>("program");
    QTest::addColumn<QByteArray>("exec");
    QTest::addColumn<QByteArray>("tryExec");
    QTest::newRow("as installed") << QStringLiteral("/usr/lib/kivo-screen/kivo-screen")
                                  << QByteArray(R"("/usr/lib/kivo-screen/kivo-screen")")
                                  << QByteArray("/usr/lib/kivo-screen/kivo-screen");
    QTest::newRow("a blank") << QStringLiteral("/my apps/kivo") << QByteArray(R"("/my apps/kivo")")
                             << QByteArray("/my apps/kivo");
    QTest::newRow("what a shell would read")
        << QStringLiteral("/a\"b`c$d/kivo") << QByteArray(R"("/a\\"b\\`c\\$d/kivo")")
        << QByteArray("/a\"b`c$d/kivo");
    // Escaped once for the quotes and once more as a value: the desktop entry standard's own example.
    QTest::newRow("a backslash") << QStringLiteral("/a\\b") << QByteArray(R"("/a\\\\b")")
                                 << QByteArray(R"(/a\\b)");
    QTest::newRow("a field code") << QStringLiteral("/100%f/kivo") << QByteArray(R"("/100%%f/kivo")")
                                  << QByteArray("/100%f/kivo");
    QTest::newRow("a place marker") << QStringLiteral("/%2/kivo") << QByteArray(R"("/%%2/kivo")")
                                    << QByteArray("/%2/kivo");
    QTest::newRow("a line feed") << QStringLiteral("/a\nHidden=true") << QByteArray(R"("/a\nHidden=true")")
                                 << QByteArray(R"(/a\nHidden=true)");
    QTest::newRow("other blanks") << QStringLiteral("/a\tb\rc") << QByteArray(R"("/a\tb\rc")")
                                  << QByteArray(R"(/a\tb\rc)");
    QTest::newRow("Chinese") << QString::fromUtf8("/主页/kivo") << QByteArray("\"/主页/kivo\"")
                             << QByteArray("/主页/kivo");
}

void TestAutostart::TheEntryNamesItsProgram() {
    QFETCH(QString, program);
    const QByteArray entry = AutostartEntry(program);
    QVERIFY(entry.startsWith("[Desktop Entry]\nType=Application\n"));
    QTEST(Line(entry, "Exec"), "exec");
    QTEST(Line(entry, "TryExec"), "tryExec");
    QCOMPARE(ProgramOfEntry(entry), program);
}

void TestAutostart::TheProgramIsReadBack_data() {
    QTest::addColumn<QByteArray>("entry");
    QTest::newRow("blanks around the sign") << QByteArray("[Desktop Entry]\nTryExec = /bin/kivo \n");
    QTest::newRow("ends of lines of another system")
        << QByteArray("[Desktop Entry]\r\nTryExec=/bin/kivo\r\n");
    QTest::newRow("said to be on") << QByteArray(
        "[Desktop Entry]\nHidden=false\nX-GNOME-Autostart-enabled=true\nTryExec=/bin/kivo");
    QTest::newRow("another group is hidden")
        << QByteArray("[Desktop Entry]\nTryExec=/bin/kivo\n[Other]\nHidden=true\nTryExec=/bin/other\n");
    QTest::newRow("an escape that is none") << QByteArray("[Desktop Entry]\nTryExec=/b\\in/kivo\n");
    QTest::newRow("a comment") << QByteArray(
        "#Hidden=true\n[Desktop Entry]\n#Hidden=true\nTryExec=/bin/kivo");
}

void TestAutostart::TheProgramIsReadBack() {
    QFETCH(QByteArray, entry);
    QCOMPARE(ProgramOfEntry(entry), QStringLiteral("/bin/kivo"));
}

void TestAutostart::ABlankMayBeEscaped() {
    QCOMPARE(ProgramOfEntry("[Desktop Entry]\nTryExec=/my\\sapps/kivo\n"), QStringLiteral("/my apps/kivo"));
}

void TestAutostart::EntriesThatStartNothing_data() {
    QTest::addColumn<QByteArray>("entry");
    QTest::newRow("nothing") << QByteArray();
    QTest::newRow("noise") << QByteArray("\0\xff=[[\n=", 7);
    QTest::newRow("no program") << QByteArray("[Desktop Entry]\nName=Kivo Screen\n");
    QTest::newRow("hidden") << QByteArray("[Desktop Entry]\nTryExec=/bin/kivo\nHidden=true\n");
    QTest::newRow("switched off by the desktop")
        << QByteArray("[Desktop Entry]\nX-GNOME-Autostart-enabled=false\nTryExec=/bin/kivo\n");
    QTest::newRow("outside of the group") << QByteArray("TryExec=/bin/kivo\n[Desktop Entry]\n");
}

void TestAutostart::EntriesThatStartNothing() {
    QFETCH(QByteArray, entry);
    QCOMPARE(ProgramOfEntry(entry), QString());
}

void TestAutostart::AnEntryThatWasEditedIsSwitchedOn_data() {
    QTest::addColumn<QByteArray>("former");
    QTest::addColumn<QByteArray>("entry");
    const QByteArray own = AutostartEntry(QStringLiteral("/bin/kivo"));
    QTest::newRow("as the program writes it") << own << own;
    QTest::newRow("none") << QByteArray() << own;
    QTest::newRow("noise") << QByteArray("\0\xff=[[\n=", 7) << own;
    const QByteArray head("# mine\n[Desktop Entry]\nType=Application\nName=Panel\nName[ru]=Kivo\n");
    const QByteArray tail("X-GNOME-Autostart-Delay=20\n\n[Desktop Action Day]\nExec=true\nHidden=true\n");
    const QByteArray on("TryExec=/bin/kivo\nX-GNOME-Autostart-enabled=true\n");
    QTest::newRow("switched off twice, with options")
        << head +
               "Hidden=true\nExec=nice /bin/kivo --theme 2\nTryExec=/bin/kivo\n"
               "X-GNOME-Autostart-enabled=false\nX-GNOME-Autostart-enabled=false\n" +
               tail
        << head + "Exec=nice /bin/kivo --theme 2\n" + on + tail;
    QTest::newRow("a program that has gone")
        << head + "Exec=/old/kivo --theme 2\nTryExec=/old/kivo\nX-GNOME-Autostart-enabled=true\n" + tail
        << head + "Exec=\"/bin/kivo\"\n" + on + tail;
    QTest::newRow("keys that lack") << head + tail
                                    << head + "X-GNOME-Autostart-Delay=20\nExec=\"/bin/kivo\"\n" + on +
                                           "\n[Desktop Action Day]\nExec=true\nHidden=true\n";
    QTest::newRow("no line feed at the end")
        << QByteArray("[Desktop Entry]\nName=Panel")
        << "[Desktop Entry]\nName=Panel\nType=Application\nExec=\"/bin/kivo\"\n" + on;
}

void TestAutostart::AnEntryThatWasEditedIsSwitchedOn() {
    QFETCH(QByteArray, former);
    QFETCH(QByteArray, entry);
    const QByteArray switched = SwitchedOnEntry(former, QStringLiteral("/bin/kivo"));
    QCOMPARE(switched, entry);
    QCOMPARE(ProgramOfEntry(switched), QStringLiteral("/bin/kivo"));
    QCOMPARE(SwitchedOnEntry(switched, QStringLiteral("/bin/kivo")), entry);
}

void TestAutostart::TheRunCommandNamesItsProgram_data() {
    QTest::addColumn<QString>("program");
    QTest::addColumn<QString>("command");
    QTest::newRow("blanks") << QStringLiteral("C:/Program Files/Kivo Screen/KivoScreen.exe")
                            << QStringLiteral("\"C:\\Program Files\\Kivo Screen\\KivoScreen.exe\"");
    QTest::newRow("a share") << QStringLiteral("//desk/apps/KivoScreen.exe")
                             << QStringLiteral("\"\\\\desk\\apps\\KivoScreen.exe\"");
}

void TestAutostart::TheRunCommandNamesItsProgram() {
    QFETCH(QString, program);
    QFETCH(QString, command);
    QCOMPARE(RunCommand(program), command);
    QCOMPARE(ProgramOfCommand(command), command.mid(1, command.size() - 2));
    QCOMPARE(ProgramOfCommand(command + QStringLiteral(" --quiet \"twice\"")),
             command.mid(1, command.size() - 2));
}

void TestAutostart::CommandsWithoutAProgram_data() {
    QTest::addColumn<QString>("command");
    QTest::newRow("nothing") << QString();
    QTest::newRow("one quote") << QStringLiteral("\"");
    QTest::newRow("no quotes") << QStringLiteral("C:\\KivoScreen.exe");
    QTest::newRow("quotes that never end") << QStringLiteral("\"C:\\KivoScreen.exe");
}

void TestAutostart::CommandsWithoutAProgram() {
    QFETCH(QString, command);
    QCOMPARE(ProgramOfCommand(command), QString());
}

void TestAutostart::OnAndOff() {
    QCOMPARE(SetStartsAtLogin(false), QString());
    QVERIFY(!StartsAtLogin());
    for (int time = 0; time < 2; ++time) {
        QCOMPARE(SetStartsAtLogin(true), QString());
        QVERIFY(StartsAtLogin());
    }
    for (int time = 0; time < 2; ++time) {
        QCOMPARE(SetStartsAtLogin(false), QString());
        QVERIFY(!StartsAtLogin());
    }
}

KIVO_GUILESS_TEST(TestAutostart)
#include "tst_autostart.moc"
