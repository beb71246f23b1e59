#include <QtTest>

#include "app/command_line.h"
#include "app/display.h"
#include "support/test_program.h"

using namespace kivo;

class TestCommandLine : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void AcceptsItsOptions();
    void RunsWithNoOptions();
    void RefusesBadArguments_data();
    void RefusesBadArguments();
    void SwitchesTheAutostart_data();
    void SwitchesTheAutostart();
    void ShowsHelpAndVersion();
    void WithoutADisplayNoPlatformNeedsOne_data();
    void WithoutADisplayNoPlatformNeedsOne();
};

namespace {

CommandLine Parse(const QStringList& options) {
    return ParseCommandLine(QStringList{QStringLiteral("kivo-screen")} + options);
}

}  // namespace

void TestCommandLine::AcceptsItsOptions() {
    const CommandLine line =
        Parse({QStringLiteral("--virtual-screen"), QStringLiteral("--panel-image"), QStringLiteral("p.png"),
               QStringLiteral("--run-for"), QStringLiteral("2.5"), QStringLiteral("--report-log"),
               QStringLiteral("l")});
    QCOMPARE(int(line.action), int(CommandLine::Action::Run));
    QVERIFY(line.options.virtualScreen);
    QCOMPARE(line.options.panelImage, QStringLiteral("p.png"));
    QCOMPARE(line.options.reportLog, QStringLiteral("l"));
    QCOMPARE(*line.options.runSeconds, 2.5);
}

void TestCommandLine::RunsWithNoOptions() {
    const CommandLine line = Parse({});
    QCOMPARE(int(line.action), int(CommandLine::Action::Run));
    QVERIFY(!line.options.virtualScreen);
    QVERIFY(!line.options.runSeconds);
}

void TestCommandLine::RefusesBadArguments_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("named");
    const auto list = [](std::initializer_list<const char*> words) {
        QStringList result;
        for (const char* word : words) {
            result.append(QString::fromLatin1(word));
        }
        return result;
    };
    QTest::newRow("unknown option") << list({"--colour"}) << QStringLiteral("colour");
    QTest::newRow("stray argument") << list({"now"}) << QStringLiteral("now");
    QTest::newRow("seconds that are no number") << list({"--run-for", "soon"}) << QStringLiteral("soon");
    QTest::newRow("no seconds at all") << list({"--run-for"}) << QStringLiteral("run-for");
    QTest::newRow("zero seconds") << list({"--run-for", "0"}) << QStringLiteral("run-for");
    QTest::newRow("negative seconds") << list({"--run-for", "-3"}) << QStringLiteral("run-for");
    QTest::newRow("not a number") << list({"--run-for", "nan"}) << QStringLiteral("run-for");
    QTest::newRow("for ever") << list({"--run-for", "1e300"}) << QStringLiteral("run-for");
    QTest::newRow("empty log name") << list({"--report-log", ""}) << QStringLiteral("report-log");
    QTest::newRow("empty picture name")
        << list({"--virtual-screen", "--panel-image", ""}) << QStringLiteral("panel-image");
    QTest::newRow("autostart perhaps") << list({"--autostart", "perhaps"}) << QStringLiteral("perhaps");
    QTest::newRow("autostart of nothing") << list({"--autostart", ""}) << QStringLiteral("autostart");
    QTest::newRow("no word for the autostart") << list({"--autostart"}) << QStringLiteral("autostart");
    QTest::newRow("sensors with other options")
        << list({"--sensors", "--virtual-screen"}) << QStringLiteral("no other option");
    QTest::newRow("autostart with other options")
        << list({"--autostart", "on", "--virtual-screen"}) << QStringLiteral("no other option");
    QTest::newRow("picture of a real panel")
        << list({"--panel-image", "p.png"}) << QStringLiteral("virtual-screen");
}

void TestCommandLine::RefusesBadArguments() {
    QFETCH(QStringList, options);
    QFETCH(QString, named);
    const CommandLine line = Parse(options);
    QCOMPARE(int(line.action), int(CommandLine::Action::Refuse));
    QVERIFY2(line.text.contains(named), qPrintable(line.text));
    QVERIFY(!line.text.contains(QLatin1Char('\n')));
}

void TestCommandLine::SwitchesTheAutostart_data() {
    QTest::addColumn<QString>("word");
    QTest::addColumn<bool>("on");
    QTest::newRow("on") << QStringLiteral("on") << true;
    QTest::newRow("off") << QStringLiteral("off") << false;
}

void TestCommandLine::SwitchesTheAutostart() {
    QFETCH(QString, word);
    const CommandLine line = Parse({QStringLiteral("--autostart"), word});
    QCOMPARE(int(line.action), int(CommandLine::Action::SwitchAutostart));
    QTEST(line.autostart, "on");
}

void TestCommandLine::ShowsHelpAndVersion() {
    const CommandLine help = Parse({QStringLiteral("--help")});
    QCOMPARE(int(help.action), int(CommandLine::Action::ShowText));
    for (const char* option : {"--virtual-screen", "--panel-image", "--run-for", "--report-log",
                               "--autostart", "--sensors", "--version"}) {
        QVERIFY2(help.text.contains(QLatin1String(option)), option);
    }
    QCOMPARE(int(Parse({QStringLiteral("--version")}).action), int(CommandLine::Action::ShowText));
    QCOMPARE(int(Parse({QStringLiteral("--sensors")}).action), int(CommandLine::Action::ShowSensors));
}

void TestCommandLine::WithoutADisplayNoPlatformNeedsOne_data() {
    QTest::addColumn<QByteArray>("asked");
    QTest::addColumn<QByteArray>("used");
    QTest::newRow("nothing said") << QByteArray() << QByteArray("offscreen");
    QTest::newRow("an X server") << QByteArray("xcb") << QByteArray("offscreen");
    QTest::newRow("a compositor") << QByteArray("wayland-egl") << QByteArray("offscreen");
    QTest::newRow("a frame buffer") << QByteArray("linuxfb") << QByteArray("linuxfb");
}

void TestCommandLine::WithoutADisplayNoPlatformNeedsOne() {
    QFETCH(QByteArray, asked);
    QFETCH(QByteArray, used);
    QCOMPARE(QByteArray(PlatformWithoutDisplay(asked.constData())), used);
}

KIVO_GUILESS_TEST(TestCommandLine)
#include "tst_command_line.moc"
