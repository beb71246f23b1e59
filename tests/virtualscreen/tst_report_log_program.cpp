#include <QProcess>
#include <QTemporaryDir>
#include <QtTest>
#include <memory>

#include "device/report_log.h"
#include "device/transfers.h"
#include "support/built_paths.h"
#include "support/process_end.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

namespace {

struct Outcome {
    int status = -1;
    QStringList lines;
    QString errors;
};

Outcome RunTool(const QStringList& arguments) {
    QProcess process;
    process.start(test::BuiltProgram("kivo-report-log"), arguments);
    Outcome outcome;
    outcome.status = test::ExitCode(process);
    // Windows ends its lines in two characters.
    const QString output = QString::fromUtf8(process.readAllStandardOutput()).remove(QLatin1Char('\r'));
    outcome.lines = output.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    outcome.errors = QString::fromUtf8(process.readAllStandardError());
    return outcome;
}

}  // namespace

// The program kivo-report-log, run as a person runs it.
class TestReportLogProgram : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_log = m_folder->filePath(QStringLiteral("reports.log"));
        m_screen = std::make_unique<VirtualHidApi>();
    }

    void tellsTheSequence() {
        Record([](Transfers& transfers, const quint8* frame) {
            transfers.SendTimeSync();
            transfers.SendWholeImage(frame, 0);
            transfers.SendOrientation(0);
            transfers.SendTimeShow();
            transfers.SendAreaImageWithPos(frame, 158, 38, 47, 24);
            transfers.SendTimeSync();
            transfers.SendTimeSync();
        });
        const QString image = m_folder->filePath(QStringLiteral("last.png"));
        const Outcome outcome = RunTool({m_log, QStringLiteral("--image"), image});
        const QStringList expected{
            QStringLiteral("log begins"),
            QStringLiteral("time sync 18:46:05"),
            QStringLiteral("frame chunks 1..27"),
            QStringLiteral("orientation 1"),
            QStringLiteral("time show 18:46:05"),
            QStringLiteral("area 158,38 47x24"),
            QStringLiteral("time sync 18:46:05 (2 times)"),
            QStringLiteral(
                "reports 33, bytes 135416, frames 1, areas 1, commands 5, failed writes 0, errors 0")};
        QCOMPARE(outcome.lines, expected);
        QCOMPARE(outcome.status, 0);
        QVERIFY(QImage(image).convertToFormat(QImage::Format_RGB16) == m_screen->State().image);
    }

    void aFrameThatWasGivenUpIsNoError() {
        Record([this](Transfers& transfers, const quint8* frame) {
            m_screen->FailWritesFrom(6);
            transfers.SendWholeImage(frame, 0);
            m_screen->ClearFaults();
            transfers.SendAreaImageWithPos(frame, 0, 0, 2, 2);
        });
        const Outcome outcome = RunTool({m_log});
        const QStringList expected{
            QStringLiteral("log begins"), QStringLiteral("frame chunks 1..5"),
            QStringLiteral("write of 4105 bytes failed"), QStringLiteral("area 0,0 2x2"),
            QStringLiteral(
                "reports 6, bytes 24621, frames 0, areas 1, commands 0, failed writes 1, errors 0")};
        QCOMPARE(outcome.lines, expected);
        QCOMPARE(outcome.status, 0);
    }

    void errorsGiveStatusOne() {
        Record([](Transfers& transfers, const quint8* frame) {
            transfers.SendOrientation(4);
            transfers.SendAreaImageWithPos(frame, 318, 0, 5, 1);
        });
        const Outcome outcome = RunTool({m_log});
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.lines.contains(QStringLiteral("ERROR parameter")));
        QVERIFY(outcome.lines.contains(QStringLiteral("ERROR area outside")));
        QVERIFY(outcome.lines.constLast().endsWith(QStringLiteral("errors 2")));
    }

    void aLogCutShortGivesStatusOne() {
        Record([](Transfers& transfers, const quint8* /*frame*/) { transfers.SendTimeSync(); });
        QFile file(m_log);
        QVERIFY(file.resize(file.size() - 5));
        const Outcome outcome = RunTool({m_log});
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.errors.contains(QLatin1String("reports.log: it ends inside a record")));
    }

    void aPictureThatCannotBeWrittenGivesStatusOne() {
        Record([](Transfers& /*transfers*/, const quint8* /*frame*/) {});
        const Outcome outcome =
            RunTool({m_log, QStringLiteral("--image"), m_folder->filePath(QStringLiteral("no/x.png"))});
        QCOMPARE(outcome.status, 1);
        QVERIFY(outcome.errors.contains(QLatin1String("x.png")));
    }

    void badArguments_data() {
        QTest::addColumn<QStringList>("arguments");
        QTest::newRow("none") << QStringList{};
        QTest::newRow("two files") << QStringList{QStringLiteral("a"), QStringLiteral("b")};
        QTest::newRow("an unknown option") << QStringList{QStringLiteral("--loud"), QStringLiteral("a")};
        QTest::newRow("an image without a name")
            << QStringList{QStringLiteral("a"), QStringLiteral("--image")};
        QTest::newRow("a file that does not exist") << QStringList{QStringLiteral("/none/reports.log")};
        QTest::newRow("a file that is no log") << QStringList{test::BuiltProgram("kivo-report-log")};
    }

    void badArguments() {
        QFETCH(QStringList, arguments);
        const Outcome outcome = RunTool(arguments);
        QCOMPARE(outcome.status, 2);
        QVERIFY(outcome.lines.isEmpty());
        QCOMPARE(outcome.errors.count(QLatin1Char('\n')), 1);
    }

    void help() {
        const Outcome outcome = RunTool({QStringLiteral("--help")});
        QCOMPARE(outcome.status, 0);
        QVERIFY(outcome.lines.join(QLatin1Char(' ')).contains(QLatin1String("--image")));
    }

private:
    // Logs what the transfers send to the virtual screen.
    void Record(const std::function<void(Transfers&, const quint8* frame)>& send) {
        ReportLogHidApi log(*m_screen, m_log);
        ScreenSession session(log);
        session.InitDeviceTable();
        session.EnumerateScreens();
        Transfers transfers(session, [] { return QTime(18, 46, 5); });
        std::vector<quint8> frame(static_cast<std::size_t>(kFrameBytes));
        for (std::size_t i = 0; i < frame.size(); ++i) {
            frame[i] = static_cast<quint8>(i % 253);
        }
        send(transfers, frame.data());
    }

    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_log;
    std::unique_ptr<VirtualHidApi> m_screen;
};

KIVO_GUILESS_TEST(TestReportLogProgram)
#include "tst_report_log_program.moc"
