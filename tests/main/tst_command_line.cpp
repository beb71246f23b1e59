#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtTest>
#include <algorithm>

#include "main/command_line.h"
#include "main/version.h"
#include "session/display.h"
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
    void VersionIsToldWithItsCommit();
    void ReportIsPrintedOrWritten();
    void HelpForAllNamesQtsOptionsToo();
    void QtsOwnOptionsArePassedOver_data();
    void QtsOwnOptionsArePassedOver();
    void WhatIsAskedAloneIsKnown();
    void CommandsAreRead_data();
    void CommandsAreRead();
    void PictureIsFoundFromWhereThePersonStands();
    void RandomArgumentsAreReadOrRefused();
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
    QTest::newRow("report with other options")
        << list({"--report", "--virtual-screen"}) << QStringLiteral("no other option");
    QTest::newRow("report and a command")
        << list({"--report", "--show"}) << QStringLiteral("no other option");
    QTest::newRow("reports to two files") << list({"--report", "a", "b"}) << QStringLiteral("'b'");
    QTest::newRow("report to no file") << list({"--report", ""}) << QStringLiteral("file name");
    QTest::newRow("session without its value") << list({"-session"}) << QStringLiteral("-session");
    QTest::newRow("a theme too many") << list({"--theme", "4"}) << QStringLiteral("'4'");
    QTest::newRow("a theme in another form") << list({"--theme", "02"}) << QStringLiteral("'02'");
    QTest::newRow("no theme") << list({"--theme", ""}) << QStringLiteral("theme");
    QTest::newRow("six items") << list({"--layout", "six"}) << QStringLiteral("'six'");
    QTest::newRow("upside down") << list({"--orientation", "inverted"}) << QStringLiteral("'inverted'");
    QTest::newRow("half blank") << list({"--blank", "half"}) << QStringLiteral("'half'");
    QTest::newRow("no picture") << list({"--picture", ""}) << QStringLiteral("picture");
    QTest::newRow("a picture that is not there")
        << list({"--picture", "/nowhere/a.png"}) << QStringLiteral("/nowhere/a.png");
    QTest::newRow("a layout that is not there")
        << list({"--apply", "/nowhere/a.kivolayout"}) << QStringLiteral("/nowhere/a.kivolayout'");
    QTest::newRow("a layout and a theme")
        << list({"--apply", "/a", "--theme", "1"}) << QStringLiteral("theme");
    QTest::newRow("a folder as a picture") << list({"--picture", "/"}) << QStringLiteral("/'");
    QTest::newRow("a text that is too long")
        << QStringList{QStringLiteral("--text"), QString(41, QLatin1Char('x'))} << QStringLiteral("40");
    QTest::newRow("a value of show") << list({"--show=now"}) << QStringLiteral("show");
    QTest::newRow("theme and layout")
        << list({"--theme", "1", "--layout", "one"}) << QStringLiteral("do not go together");
    QTest::newRow("text of a theme") << list({"--text", "a", "--theme", "1"})
                                     << QStringLiteral("do not go together");
    QTest::newRow("a command beside the autostart")
        << list({"--autostart", "on", "--theme", "1"}) << QStringLiteral("no other option");
    QTest::newRow("lines in what is refused") << list({"--theme", "1\n2"}) << QStringLiteral("'1 2'");
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
    for (const char* option :
         {"--virtual-screen", "--panel-image", "--run-for", "--report-log", "--autostart", "--sensors",
          "--report", "--version", "--theme <0..3>", "--layout <five|one>",
          "--orientation <landscape|portrait>", "--picture <file>", "--text <text>", "--apply <file>",
          "--blank <on|off>", "--show"}) {
        QVERIFY2(help.text.contains(QLatin1String(option)), option);
    }
    QCOMPARE(int(Parse({QStringLiteral("--version")}).action), int(CommandLine::Action::ShowText));
    QCOMPARE(int(Parse({QStringLiteral("--sensors")}).action), int(CommandLine::Action::ShowSensors));
}

void TestCommandLine::VersionIsToldWithItsCommit() {
    const QString version = QStringLiteral("1.2.3");
    QCOMPARE(VersionText(version, QString()), version);
    QCOMPARE(VersionText(version, QStringLiteral("1a2b3c-dirty")), QStringLiteral("1.2.3 (1a2b3c-dirty)"));
}

void TestCommandLine::ReportIsPrintedOrWritten() {
    const CommandLine printed = Parse({QStringLiteral("--report")});
    QCOMPARE(int(printed.action), int(CommandLine::Action::Report));
    QCOMPARE(printed.reportFile, QString());
    for (const QStringList& options : {QStringList{QStringLiteral("--report"), QStringLiteral("a b.txt")},
                                       QStringList{QStringLiteral("a b.txt"), QStringLiteral("--report")}}) {
        const CommandLine written = Parse(options);
        QCOMPARE(int(written.action), int(CommandLine::Action::Report));
        QCOMPARE(written.reportFile, QStringLiteral("a b.txt"));
    }
    const CommandLine onPlatform =
        Parse({QStringLiteral("-platform"), QStringLiteral("xcb"), QStringLiteral("--report")});
    QCOMPARE(int(onPlatform.action), int(CommandLine::Action::Report));
    QCOMPARE(onPlatform.platform, QStringLiteral("xcb"));
}

void TestCommandLine::HelpForAllNamesQtsOptionsToo() {
    const CommandLine help = Parse({QStringLiteral("--help-all")});
    QCOMPARE(int(help.action), int(CommandLine::Action::ShowText));
    QVERIFY(help.text.startsWith(Parse({QStringLiteral("--help")}).text));
    for (const char* option : {"-platform <platform>", "-session <session>", "-style <style>"}) {
        QVERIFY2(help.text.contains(QLatin1String(option)), option);
    }
}

void TestCommandLine::QtsOwnOptionsArePassedOver_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<QString>("platform");
    const QString session = QStringLiteral("-session");
    const QString platform = QStringLiteral("-platform");
    const QString id = QStringLiteral("10_abc");
    QTest::newRow("a session that is restored") << QStringList{session, id} << QString();
    QTest::newRow("two dashes") << QStringList{QStringLiteral("--session"), id} << QString();
    QTest::newRow("a platform") << QStringList{platform, QStringLiteral("xcb")} << QStringLiteral("xcb");
    QTest::newRow("the last platform counts")
        << QStringList{platform, QStringLiteral("xcb"), platform, QStringLiteral("vnc")}
        << QStringLiteral("vnc");
    QTest::newRow("a style") << QStringList{QStringLiteral("-style"), QStringLiteral("fusion")} << QString();
    QTest::newRow("a style behind a sign") << QStringList{QStringLiteral("-style=fusion")} << QString();
    QTest::newRow("from right to left") << QStringList{QStringLiteral("-reverse")} << QString();
    QTest::newRow("a value that looks like an option")
        << QStringList{session, QStringLiteral("--theme")} << QString();
}

void TestCommandLine::QtsOwnOptionsArePassedOver() {
    QFETCH(QStringList, options);
    const CommandLine line = Parse(QStringList{QStringLiteral("--virtual-screen")} + options +
                                   QStringList{QStringLiteral("--run-for"), QStringLiteral("2")});
    QVERIFY2(line.action == CommandLine::Action::Run, qPrintable(line.text));
    QVERIFY(line.options.virtualScreen);
    QCOMPARE(*line.options.runSeconds, 2.0);
    QVERIFY(!IsAnyAsked(line.commands));
    QTEST(line.platform, "platform");
}

void TestCommandLine::WhatIsAskedAloneIsKnown() {
    const auto isShownAlone = [](const QStringList& options) {
        return IsAskedAlone(Parse(options).commands, OutsideKind::Show);
    };
    const QString show = QStringLiteral("--show");
    QVERIFY(isShownAlone({show}));
    QVERIFY(isShownAlone({show, QStringLiteral("--virtual-screen")}));
    QVERIFY(!isShownAlone({show, QStringLiteral("--blank"), QStringLiteral("off")}));
    QVERIFY(!isShownAlone({QStringLiteral("--blank"), QStringLiteral("off")}));
    QVERIFY(!isShownAlone({}));
}

void TestCommandLine::CommandsAreRead_data() {
    QTest::addColumn<QStringList>("options");
    QTest::addColumn<int>("kind");
    QTest::addColumn<QString>("value");
    const auto row = [](const char* name, const QStringList& options, OutsideKind kind, const char* value) {
        QTest::newRow(name) << options << int(kind) << QString::fromUtf8(value);
    };
    const auto words = [](const char* text) { return QString::fromUtf8(text).split(QLatin1Char(' ')); };
    row("a theme", words("--theme 3"), OutsideKind::Theme, "3");
    row("behind a sign", words("--theme=0"), OutsideKind::Theme, "0");
    row("the last one counts", words("--theme 1 --theme 2"), OutsideKind::Theme, "2");
    row("a layout", words("--layout one"), OutsideKind::Layout, "one");
    row("upright", words("--orientation portrait"), OutsideKind::Orientation, "portrait");
    row("dark", words("--blank on"), OutsideKind::Blank, "on");
    row("to the front", words("--show"), OutsideKind::Show, "");
    row("a text", words("--text 你好"), OutsideKind::Text, "你好");
    row("no text", {QStringLiteral("--text"), QString()}, OutsideKind::Text, "");
    row("a text that looks like Qt's", words("--text -reverse"), OutsideKind::Text, "-reverse");
}

void TestCommandLine::CommandsAreRead() {
    QFETCH(QStringList, options);
    QFETCH(int, kind);
    const CommandLine line = Parse(options);
    QVERIFY2(line.action == CommandLine::Action::Run, qPrintable(line.text));
    QVERIFY(ValueOf(line.commands, OutsideKind(kind)));
    QTEST(*ValueOf(line.commands, OutsideKind(kind)), "value");
    QCOMPARE(std::count_if(line.commands.begin(), line.commands.end(),
                           [](const auto& value) { return value.has_value(); }),
             std::ptrdiff_t(1));
}

void TestCommandLine::PictureIsFoundFromWhereThePersonStands() {
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("a.png")));
    QVERIFY(file.open(QIODevice::WriteOnly));
    const QString former = QDir::currentPath();
    QVERIFY(QDir::setCurrent(folder.path()));
    const CommandLine line = Parse({QStringLiteral("--picture"), QStringLiteral("a.png")});
    QVERIFY(QDir::setCurrent(former));
    QVERIFY2(line.action == CommandLine::Action::Run, qPrintable(line.text));
    const QString path = *ValueOf(line.commands, OutsideKind::Picture);
    QVERIFY(QDir::isAbsolutePath(path));
    QCOMPARE(QFileInfo(path).canonicalFilePath(), QFileInfo(file).canonicalFilePath());
}

// In any order, with values where none belong and without them where they do.
void TestCommandLine::RandomArgumentsAreReadOrRefused() {
    QRandomGenerator random(20261122);
    const QStringList parts =
        QString::fromUtf8(
            "--theme --layout --orientation --picture --text --apply --blank --show --theme=1 "
            "--virtual-screen --panel-image --run-for --report-log --autostart "
            "--sensors --help --help-all --version -h -v -session -platform -style "
            "-style=x -reverse - -- --= = 0 3 4 -1 five one on off portrait 你好 1e9 "
            "nan / /nowhere . ../.. %1 %2 \"")
            .split(QLatin1Char(' '));
    int read = 0;
    for (int run = 0; run < 10000; ++run) {
        QStringList options;
        for (int count = random.bounded(6); count > 0; --count) {
            switch (random.bounded(12)) {
                case 0:
                    options.append(QString());
                    break;
                case 1:
                    options.append(QString(random.bounded(3000), QChar(random.bounded(1, 0xFFFF))));
                    break;
                default:
                    options.append(parts[random.bounded(parts.size())]);
            }
        }
        const CommandLine line = Parse(options);
        const QByteArray tried = options.join(QLatin1Char('|')).toUtf8();
        if (line.action == CommandLine::Action::Refuse) {
            QVERIFY2(!line.text.isEmpty() && !line.text.contains(QLatin1Char('\n')), tried.constData());
            continue;
        }
        ++read;
        QVERIFY2(TroubleOf(line.commands).isEmpty(), tried.constData());
        if (IsAnyAsked(line.commands)) {
            // What is sent is what arrives.
            const OutsideMessage message = LookAtOutsideMessage(OutsideRequest(line.commands));
            QVERIFY2(message.state == OutsideMessage::State::Whole, tried.constData());
            QVERIFY2(ReadOutsideRequest(message.body) == line.commands, tried.constData());
        }
    }
    QVERIFY(read > 1000);
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
    QCOMPARE(PlatformWithoutDisplay(asked), used);
}

KIVO_GUILESS_TEST(TestCommandLine)
#include "tst_command_line.moc"
