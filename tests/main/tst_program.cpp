#include <QProcess>
#include <QRegularExpression>
#include <QtTest>
#include <csignal>

#include "../telemetry/energy_library_folders.h"
#include "device/report_log.h"
#include "program_home.h"
#include "support/built_paths.h"
#include "support/test_program.h"
#include "virtualscreen/panel_decoder.h"

using namespace kivo;
using namespace kivo::test;

namespace {

// The output reports of a report log so far, decoded.
struct Wire {
    explicit Wire(const QString& log) {
        ReportLogReader reader(log);
        PanelDecoder decoder;
        while (const std::optional<LoggedReport> logged = reader.Next()) {
            if (logged->kind == LoggedKind::OutputReport) {
                reports.append(decoder.Decode(reinterpret_cast<const quint8*>(logged->bytes.constData()),
                                              size_t(logged->bytes.size())));
            }
        }
        panel = decoder.State();
        error = reader.Error();
    }

    QVector<PanelReport> reports;
    PanelState panel;
    QString error;
};

QSet<QRgb> ColoursOf(const QString& fileName) {
    const QImage image(fileName);
    QSet<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            colours.insert(image.pixel(x, y));
        }
    }
    return colours;
}

}  // namespace

// The program as a process of its own, the way a person starts it.
class TestProgram : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init();
    void OneStartOnTheWire();
    void PictureThatCannotBeWritten();
    void LogThatCannotBeWrittenEndsTheStart();
    void DisplayThatRefusesIsNone_data();
    void DisplayThatRefusesIsNone();
    void RestoredSessionRuns();
    void EndsCleanlyWhenAsked();
    void HelpAndVersionNeedNoDisplay_data();
    void HelpAndVersionNeedNoDisplay();
    void TheAutostartIsSwitchedFromTheCommandLine();
    void SensorsAreToldWithoutADisplay_data();
    void SensorsAreToldWithoutADisplay();
    void SensorsAreToldBesideALibraryThatHangs();
    void ReportIsPrintedAndChangesNothing();
    void ReportIsWrittenBesideARunningCopy();
    void ReportThatCannotBeWritten();
    void StartIsLogged();
    void BadArgumentsEndWithOneLine();
    void WithoutAScreenItSaysSoAndRunsOn();
    void HomeThatCannotBeWritten();
    void PortableProgramKeepsEverythingBesideItself();

private:
    void Start(QProcess& process, const QStringList& arguments) const;
    int Run(QProcess& process, const QStringList& arguments) const;

    QScopedPointer<ProgramHome> m_home;
};

void TestProgram::init() {
    m_home.reset(new ProgramHome);
    QVERIFY(m_home->IsValid());
}

void TestProgram::Start(QProcess& process, const QStringList& arguments) const {
    process.setProcessEnvironment(m_home->Environment());
    process.start(BuiltProgram("kivo-screen"), arguments);
}

int TestProgram::Run(QProcess& process, const QStringList& arguments) const {
    Start(process, arguments);
    return ExitCode(process, kLongMs);
}

void TestProgram::OneStartOnTheWire() {
    const QString log = m_home->File("wire.log");
    const QString image = m_home->File("panel.png");
    QProcess process;
    // It says what it sent at the end of a run that has a limit, whatever ends it.
    Start(process, {QStringLiteral("--virtual-screen"), QStringLiteral("--run-for"), QStringLiteral("600"),
                    QStringLiteral("--report-log"), log, QStringLiteral("--panel-image"), image});
    QTRY_VERIFY_WITH_TIMEOUT(Wire(log).panel.counts.areas > 10, kLongMs);
    End(process);
    QVERIFY(process.readAllStandardOutput().startsWith("Live values sent last: "));

    const Wire wire(log);
    const QVector<PanelReport>& reports = wire.reports;
    const PanelState& state = wire.panel;
    QVERIFY2(wire.error.isEmpty(), qPrintable(wire.error));
    QCOMPARE(state.counts.errors, quint64(0));
    QCOMPARE(state.counts.frames, quint64(1));

    // A first run: a clock as the screen is opened and before the frame, the frame in one piece, its
    // orientation, again with the time, and live values after that.
    QVERIFY(reports.size() > 36);
    QCOMPARE(int(reports[0].kind), int(PanelReportKind::TimeSync));
    QCOMPARE(int(reports[1].kind), int(PanelReportKind::TimeSync));
    for (int chunk = 1; chunk <= 27; ++chunk) {
        QCOMPARE(int(reports[1 + chunk].kind), int(PanelReportKind::Chunk));
        QCOMPARE(reports[1 + chunk].chunkNumber, chunk);
    }
    QCOMPARE(int(reports[29].kind), int(PanelReportKind::Orientation));
    QCOMPARE(int(reports[30].kind), int(PanelReportKind::Orientation));
    QCOMPARE(int(reports[31].kind), int(PanelReportKind::TimeShow));
    QCOMPARE(int(reports[32].kind), int(PanelReportKind::TimeSync));

    const QImage saved(image);
    QCOMPARE(saved.size(), QSize(320, 170));
    QCOMPARE(saved.convertToFormat(QImage::Format_RGB16), state.image);
}

void TestProgram::PictureThatCannotBeWritten() {
    QProcess process;
    QCOMPARE(
        Run(process, {QStringLiteral("--virtual-screen"), QStringLiteral("--run-for"), QStringLiteral("2"),
                      QStringLiteral("--panel-image"), QStringLiteral("/nowhere/panel.png")}),
        0);
    QCOMPARE(process.readAllStandardError().count("/nowhere/panel.png"), 1);
}

// Without a limit: it would run for ever.
void TestProgram::LogThatCannotBeWrittenEndsTheStart() {
    QProcess process;
    QCOMPARE(Run(process, {QStringLiteral("--virtual-screen"), QStringLiteral("--report-log"),
                           QStringLiteral("/nowhere/wire.log")}),
             1);
    QCOMPARE(process.readAllStandardError().count("/nowhere/wire.log"), 1);
    QVERIFY(!QFile::exists(m_home->File("data")));
}

void TestProgram::DisplayThatRefusesIsNone_data() {
    QTest::addColumn<QByteArray>("variable");
    QTest::addColumn<QStringList>("options");
    QTest::newRow("X11") << QByteArray("DISPLAY") << QStringList();
    QTest::newRow("Wayland") << QByteArray("WAYLAND_DISPLAY") << QStringList();
    QTest::newRow("X11, asked for by name")
        << QByteArray("DISPLAY") << QStringList{QStringLiteral("-platform"), QStringLiteral("xcb")};
    QTest::newRow("Wayland, asked for by name")
        << QByteArray("WAYLAND_DISPLAY")
        << QStringList{QStringLiteral("-platform"), QStringLiteral("wayland")};
}

void TestProgram::DisplayThatRefusesIsNone() {
    QFETCH(QByteArray, variable);
    QFETCH(QStringList, options);
    QProcessEnvironment environment = m_home->Environment();
    environment.insert(QString::fromLatin1(variable), QStringLiteral(":4711"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(BuiltProgram("kivo-screen"),
                  options + QStringList{QStringLiteral("--virtual-screen"), QStringLiteral("--run-for"),
                                        QStringLiteral("1")});
    QCOMPARE(ExitCode(process, kLongMs), 0);
    const QByteArray said = process.readAllStandardError();
    QCOMPARE(said.count("kivo-screen: no display, running without windows.\n"), 1);
}

void TestProgram::RestoredSessionRuns() {
    QProcess process;
    QCOMPARE(Run(process, {QStringLiteral("-session"), QStringLiteral("10_abc_1"), QStringLiteral("-style"),
                           QStringLiteral("fusion"), QStringLiteral("--virtual-screen"),
                           QStringLiteral("--run-for"), QStringLiteral("1")}),
             0);
}

void TestProgram::EndsCleanlyWhenAsked() {
    QProcess process;
    Start(process, {QStringLiteral("--virtual-screen")});
    // Settings are there once it is well under way.
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_home->File("data/Kivo Tool/Config.ini")), kLongMs);
    End(process);
}

void TestProgram::HelpAndVersionNeedNoDisplay_data() {
    QTest::addColumn<QString>("option");
    QTest::addColumn<QByteArray>("says");
    QTest::newRow("help") << QStringLiteral("--help") << QByteArray("--virtual-screen");
    QTest::newRow("all of the help") << QStringLiteral("--help-all") << QByteArray("-session <session>");
    QTest::newRow("version") << QStringLiteral("--version") << QByteArray("Kivo Screen 1.0.0");
}

void TestProgram::HelpAndVersionNeedNoDisplay() {
    QFETCH(QString, option);
    QFETCH(QByteArray, says);
    QProcess process;
    QCOMPARE(Run(process, {option}), 0);
    QVERIFY(process.readAllStandardOutput().contains(says));
    QVERIFY(!QFile::exists(m_home->File("data")));
}

void TestProgram::SensorsAreToldWithoutADisplay_data() {
    QTest::addColumn<QString>("locale");
    QTest::addColumn<QString>("load");
    QTest::newRow("English") << QStringLiteral("en_US.UTF-8") << QStringLiteral("CPU Load");
    QTest::newRow("Chinese") << QStringLiteral("zh_CN.UTF-8") << QStringLiteral("CPU使用率");
    QTest::newRow("Russian") << QStringLiteral("ru_RU.UTF-8") << QStringLiteral("Загр. ЦП");
}

void TestProgram::SensorsAreToldWithoutADisplay() {
    QFETCH(QString, locale);
    QFETCH(QString, load);
    QProcessEnvironment environment = m_home->Environment();
    environment.insert(QStringLiteral("LC_ALL"), locale);
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(BuiltProgram("kivo-screen"), {QStringLiteral("--sensors")});
    QCOMPARE(ExitCode(process, kLongMs), 0);
    const QString said = QString::fromUtf8(process.readAllStandardOutput());
    const QRegularExpression loadWithNumber(
        QStringLiteral("^%1 +[0-9]+%").arg(QRegularExpression::escape(load)),
        QRegularExpression::MultilineOption);
    QVERIFY2(said.contains(loadWithNumber), qPrintable(said));
    QVERIFY2(said.count(QLatin1Char('\n')) >= 7, qPrintable(said));
    QCOMPARE(process.readAllStandardError(), QByteArray());
}

// Would not end otherwise.
void TestProgram::SensorsAreToldBesideALibraryThatHangs() {
    QProcessEnvironment environment = m_home->Environment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("en_US.UTF-8"));
    environment.insert(QStringLiteral("IPG_Dir"), LibraryFolder("calls_hang"));
    environment.insert(QStringLiteral("IPG_Ver"), QStringLiteral("3.6"));
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(BuiltProgram("kivo-screen"), {QStringLiteral("--sensors")});
    QCOMPARE(ExitCode(process, kLongMs), 0);
    const QString said = QString::fromUtf8(process.readAllStandardOutput());
    QVERIFY2(said.contains(QStringLiteral("CPU Load")), qPrintable(said));
}

void TestProgram::TheAutostartIsSwitchedFromTheCommandLine() {
    QFile entry(m_home->File("config/autostart/kivo-screen.desktop"));
    QProcess process;
    QCOMPARE(Run(process, {QStringLiteral("--autostart"), QStringLiteral("on")}), 0);
    QCOMPARE(process.readAllStandardOutput().count('\n'), 1);
    QVERIFY(entry.open(QIODevice::ReadOnly));
    QVERIFY(entry.readAll().contains("TryExec=" +
                                     QFileInfo(BuiltProgram("kivo-screen")).canonicalFilePath().toUtf8()));
    QCOMPARE(Run(process, {QStringLiteral("--autostart"), QStringLiteral("off")}), 0);
    QVERIFY(!entry.exists());
    // The program itself has not run.
    QVERIFY(!QFile::exists(m_home->File("data")));

    QVERIFY(QDir().mkpath(entry.fileName()));
    QCOMPARE(Run(process, {QStringLiteral("--autostart"), QStringLiteral("off")}), 1);
    QCOMPARE(process.readAllStandardError().count('\n'), 1);
}

void TestProgram::ReportIsPrintedAndChangesNothing() {
    QProcess process;
    QCOMPARE(Run(process, {QStringLiteral("--report")}), 0);
    const QByteArray report = process.readAllStandardOutput();
    for (const char* fact :
         {"Kivo Screen, report for support\n", "version  1.0.0", "; no copy runs\n", "platform offscreen",
          "settings folder  not there\n", "working folder   not there\n", "\nCPU Load "}) {
        QVERIFY2(report.contains(fact), report.constData());
    }
    QVERIFY(!report.contains(QFile::encodeName(m_home->File(""))));
    QVERIFY(!QFile::exists(m_home->File("data")));
    QVERIFY(!QFile::exists(m_home->File("Kivo Tool")));
    QVERIFY(!QFile::exists(m_home->File("config")));
}

void TestProgram::ReportIsWrittenBesideARunningCopy() {
    QProcess running;
    Start(running, {QStringLiteral("--virtual-screen")});
    QTRY_VERIFY_WITH_TIMEOUT(QFile::exists(m_home->File("data/Kivo Tool/Config.ini")), kLongMs);
    QProcess process;
    QCOMPARE(Run(process, {QStringLiteral("--report"), m_home->File("report.txt")}), 0);
    QCOMPARE(process.readAllStandardOutput(), QByteArray());
    QFile file(m_home->File("report.txt"));
    QVERIFY(file.open(QIODevice::ReadOnly));
    const QByteArray report = file.readAll();
    QVERIFY2(report.contains("beside a copy that runs"), report.constData());
    // That copy's log, which is nothing of this process's.
    QVERIFY2(report.contains("kivo.start: Kivo Screen 1.0.0"), report.constData());
    QVERIFY2(report.contains("kivo.start: A software panel stands in for the screen.\n"), report.constData());
    QVERIFY2(report.contains("~/data/Kivo Tool: Config.ini "), report.constData());
    // It goes on, and is asked for nothing.
    QCOMPARE(running.state(), QProcess::Running);
    End(running);
}

void TestProgram::ReportThatCannotBeWritten() {
    QProcess process;
    QCOMPARE(Run(process, {QStringLiteral("--report"), QStringLiteral("/nowhere/report.txt")}), 1);
    QCOMPARE(process.readAllStandardError().count(
                 "kivo-screen: the report cannot be written to /nowhere/report.txt. "),
             1);
}

// Version, display, fonts, screen: a line each, none blank.
void TestProgram::StartIsLogged() {
    QProcess process;
    process.setReadChannel(QProcess::StandardError);
    Start(process, {QStringLiteral("--virtual-screen"), QStringLiteral("--run-for"), QStringLiteral("600")});
    QByteArray said;
    // The last to come: the sensors are asked beside the window.
    while (!said.contains("kivo.sources: Temperature: ") && process.waitForReadyRead(kLongMs)) {
        said += process.readAllStandardError();
    }
    End(process);
    said += process.readAllStandardError();
    // What a sanitizer says at the end has blank lines.
    if (const int end = said.indexOf("\n----"); end >= 0) {
        said.truncate(end);
    }
    for (const char* line :
         {"kivo.start: Kivo Screen 1.0.0", "kivo.start: Display ", "kivo.start: Fonts: window ",
          "kivo.screen: Screen: ", "kivo.sources: Temperature: "}) {
        QVERIFY2(said.contains(line), said.constData());
    }
    QVERIFY2(!said.contains("\n\n"), said.constData());
}

void TestProgram::BadArgumentsEndWithOneLine() {
    QProcess process;
    QCOMPARE(Run(process, {QStringLiteral("--run-for"), QStringLiteral("soon")}), 2);
    const QByteArray said = process.readAllStandardError();
    QCOMPARE(said.count('\n'), 1);
    QVERIFY(said.contains("--run-for"));
}

void TestProgram::WithoutAScreenItSaysSoAndRunsOn() {
    QProcess process;
    QCOMPARE(Run(process, {QStringLiteral("--run-for"), QStringLiteral("2")}), 0);
    QVERIFY(process.readAllStandardError().contains("no screen"));
    QCOMPARE(process.readAllStandardOutput(), QByteArray("No screen took any value.\n"));
}

void TestProgram::HomeThatCannotBeWritten() {
    // A file where the folders should go; permissions would not stop a superuser.
    for (const char* name : {"data", "config"}) {
        QFile file(m_home->File(name));
        QVERIFY(file.open(QIODevice::WriteOnly));
    }
    QFile blocked(m_home->File("Kivo Tool"));
    QVERIFY(blocked.open(QIODevice::WriteOnly));
    const QString image = m_home->File("panel.png");
    QProcess process;
    Start(process, {QStringLiteral("--virtual-screen"), QStringLiteral("--panel-image"), image});
    // The panel shows a picture all the same.
    QTRY_VERIFY_WITH_TIMEOUT(ColoursOf(image).size() > 100, kLongMs);
    End(process);
    QVERIFY(ColoursOf(image).size() > 100);
}

void TestProgram::PortableProgramKeepsEverythingBesideItself() {
    const QDir stick(m_home->File("stick"));
    QVERIFY(stick.mkpath(QStringLiteral(".")));
    const QDir built(QFileInfo(BuiltProgram("kivo-screen")).path());
    for (const char* name : {"kivo-screen", "Config.ini", "whole.png", "Default.ini", "DefaultProfile.bin"}) {
        const QString file = QString::fromLatin1(name);
        QVERIFY(QFile::copy(built.filePath(file), stick.filePath(file)));
    }
    QFile asks(stick.filePath(QStringLiteral("portable.txt")));
    QVERIFY(asks.open(QIODevice::WriteOnly));
    QProcess process;
    process.setProcessEnvironment(m_home->Environment());
    process.start(stick.filePath(QStringLiteral("kivo-screen")), {QStringLiteral("--virtual-screen")});
    for (const char* kept : {"data/settings/Config.ini", "data/working/whole.png", "data/Kivo Config.ini"}) {
        QTRY_VERIFY2_WITH_TIMEOUT(QFileInfo::exists(stick.filePath(QString::fromLatin1(kept))), kept,
                                  kLongMs);
    }
    End(process);
    // Nothing in the user's folders.
    for (const char* folder : {"Kivo Tool", "data/Kivo Tool", "config/Kivo Tool"}) {
        QVERIFY2(!QFileInfo::exists(m_home->File(folder)), folder);
    }
}

KIVO_GUILESS_TEST(TestProgram)
#include "tst_program.moc"
