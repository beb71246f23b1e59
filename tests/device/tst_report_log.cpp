#include <QTemporaryDir>
#include <QtTest>
#include <memory>
#include <thread>

#include "device/report_log.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

namespace {

const QByteArray kTimeSync = QByteArray::fromHex("0055a2") + QByteArray(10, '\0');

int WriteTo(HidApi& api, const QByteArray& path, const QByteArray& report) {
    HidHandle* const handle = api.OpenPath(path);
    if (handle == nullptr) {
        return -100;
    }
    const int written = api.Write(handle, reinterpret_cast<const quint8*>(report.constData()),
                                  static_cast<std::size_t>(report.size()));
    api.Close(handle);
    return written;
}

std::vector<LoggedReport> ReadAll(const QString& fileName, QString* error = nullptr) {
    ReportLogReader reader(fileName);
    std::vector<LoggedReport> reports;
    while (auto report = reader.Next()) {
        reports.push_back(*report);
    }
    if (error != nullptr) {
        *error = reader.Error();
    }
    return reports;
}

QByteArray ContentOf(const QString& fileName) {
    QFile file(fileName);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void SetContent(const QString& fileName, const QByteArray& content) {
    QFile file(fileName);
    QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    QCOMPARE(file.write(content), content.size());
}

QByteArray ValidReport() {
    return QByteArray::fromHex("0055a1f2122e05") + QByteArray(4097 - 7, '\0');
}

}  // namespace

class TestReportLog : public QObject {
    Q_OBJECT

private slots:
    void init() {
        m_folder = std::make_unique<QTemporaryDir>();
        QVERIFY(m_folder->isValid());
        m_fileName = m_folder->filePath(QStringLiteral("reports.log"));
    }

    void passesEverythingThrough() {
        VirtualHidApi screen;
        ReportLogHidApi log(screen, m_fileName);
        QCOMPARE(log.Init(), 0);
        QCOMPARE(log.Enumerate(0, 0).size(), std::size_t{2});
        QCOMPARE(WriteTo(log, screen.DataPath(), ValidReport()), 4097);
        QCOMPARE(WriteTo(log, "nowhere", ValidReport()), -100);
        QCOMPARE(screen.State().clock, std::optional<QTime>(QTime(18, 46, 5)));
        QCOMPARE(screen.OpenHandles(), 0);
        QCOMPARE(log.Exit(), 0);
    }

    void passesTheQuestionForRightsThrough() {
        VirtualHidApi screen;
        ReportLogHidApi log(screen, m_fileName);
        QVERIFY(!log.IsDenied(screen.DataPath()));
        screen.DenyOpens();
        QVERIFY(log.IsDenied(screen.DataPath()));
    }

    void passesTheQuestionsForTheNodeThrough() {
        VirtualHidApi screen;
        ReportLogHidApi log(screen, m_fileName);
        const QByteArray path = screen.DataPath();
        HidHandle* const handle = log.OpenPath(path);
        const std::vector<HidDeviceInfo> said = log.Identify(handle);
        log.Close(handle);
        QCOMPARE(said.size(), std::size_t{1});
        QCOMPARE(said.front().path, path);
        QCOMPARE(log.NodeStamp(path), screen.NodeStamp(path));
        QCOMPARE(log.PanelKey(path), screen.PanelKey(path));
    }

    void layoutOfTheFile() {
        VirtualHidApi screen;
        {
            ReportLogHidApi log(screen, m_fileName);
            WriteTo(log, screen.DataPath(), ValidReport());
        }
        const QByteArray content = ContentOf(m_fileName);
        QCOMPARE(content.size(), 8 + 20 + 20 + 4097);
        QCOMPARE(content.left(8), QByteArray("KIVOREP1"));
        QCOMPARE(content.mid(8, 12), QByteArray(12, '\0'));
        QCOMPARE(content.mid(28, 12), QByteArray::fromHex("01100000"
                                                          "01000000"
                                                          "01100000"));
        QCOMPARE(content.mid(48), ValidReport());
    }

    void readsWhatWasWritten() {
        VirtualHidApi screen;
        {
            ReportLogHidApi log(screen, m_fileName);
            QVERIFY(log.IsLogging());
            WriteTo(log, screen.DataPath(), ValidReport());
            screen.FailWritesFrom(1);
            WriteTo(log, screen.DataPath(), kTimeSync);
            HidHandle* const handle = log.OpenPath(screen.DataPath());
            const quint8 feature = 0x42;
            log.SendFeatureReport(handle, &feature, 1);
            log.Close(handle);
        }
        QString error;
        const std::vector<LoggedReport> reports = ReadAll(m_fileName, &error);
        QCOMPARE(error, QString());
        QCOMPARE(reports.size(), std::size_t{4});
        QVERIFY(reports[0].kind == LoggedKind::StartMark);
        QVERIFY(reports[1].kind == LoggedKind::OutputReport);
        QCOMPARE(reports[1].bytes, ValidReport());
        QCOMPARE(reports[1].result, 4097);
        QCOMPARE(reports[2].bytes, kTimeSync);
        QCOMPARE(reports[2].result, -1);
        QVERIFY(reports[3].kind == LoggedKind::FeatureReport);
        QCOMPARE(reports[3].bytes, QByteArray("\x42"));
        for (std::size_t i = 1; i < reports.size(); ++i) {
            QVERIFY(reports[i].nanoseconds >= reports[i - 1].nanoseconds);
        }
        QVERIFY(reports[0].nanoseconds > 0);
    }

    void isReadableWhileItGrows() {
        VirtualHidApi screen;
        ReportLogHidApi log(screen, m_fileName);
        WriteTo(log, screen.DataPath(), ValidReport());
        QCOMPARE(ReadAll(m_fileName).size(), std::size_t{2});
    }

    void appendsToAFormerLog() {
        VirtualHidApi screen;
        for (int run = 0; run < 2; ++run) {
            ReportLogHidApi log(screen, m_fileName);
            WriteTo(log, screen.DataPath(), ValidReport());
        }
        QString error;
        const std::vector<LoggedReport> reports = ReadAll(m_fileName, &error);
        QCOMPARE(error, QString());
        QCOMPARE(reports.size(), std::size_t{4});
        QVERIFY(reports[2].kind == LoggedKind::StartMark);
    }

    void cutsHalfARecordOff_data() {
        QTest::addColumn<int>("lost");
        QTest::newRow("one byte missing") << 1;
        QTest::newRow("only its header") << 4097;
        QTest::newRow("half its header") << 4097 + 10;
        QTest::newRow("a byte of its header") << 4097 + 19;
    }

    void cutsHalfARecordOff() {
        QFETCH(int, lost);
        VirtualHidApi screen;
        {
            ReportLogHidApi log(screen, m_fileName);
            WriteTo(log, screen.DataPath(), ValidReport());
            WriteTo(log, screen.DataPath(), ValidReport());
        }
        QByteArray content = ContentOf(m_fileName);
        content.chop(lost);
        SetContent(m_fileName, content);
        QString error;
        QCOMPARE(ReadAll(m_fileName, &error).size(), std::size_t{2});
        QVERIFY(!error.isEmpty());

        { const ReportLogHidApi log(screen, m_fileName); }

        const std::vector<LoggedReport> reports = ReadAll(m_fileName, &error);
        QCOMPARE(error, QString());
        QCOMPARE(reports.size(), std::size_t{3});
        QVERIFY(reports[2].kind == LoggedKind::StartMark);
    }

    void leavesAForeignFileAlone_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("text") << QByteArray("This is my diary, and not a log of reports.\n");
        QTest::newRow("shorter than the first word") << QByteArray("KIV");
        QTest::newRow("a log with a damaged record") << QByteArray("KIVOREP1") + QByteArray(40, '\x7f');
    }

    void leavesAForeignFileAlone() {
        QFETCH(QByteArray, content);
        SetContent(m_fileName, content);
        VirtualHidApi screen;
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(QStringLiteral("^Reports are not logged to .*reports.log: ")));
        ReportLogHidApi log(screen, m_fileName);
        QVERIFY(!log.IsLogging());
        QCOMPARE(WriteTo(log, screen.DataPath(), ValidReport()), 4097);
        QCOMPARE(ContentOf(m_fileName), content);
    }

    void goesOnWithoutALog_data() {
        QTest::addColumn<QString>("name");
        QTest::newRow("in a folder that does not exist") << QStringLiteral("none/reports.log");
        QTest::newRow("a folder") << QStringLiteral(".");
        QTest::newRow("no regular file") << QStringLiteral("/dev/null");
    }

    void goesOnWithoutALog() {
        QFETCH(QString, name);
        VirtualHidApi screen;
        QTest::ignoreMessage(QtWarningMsg, QRegularExpression(QStringLiteral("^Reports are not logged to ")));
        ReportLogHidApi log(screen, m_folder->filePath(name));
        QVERIFY(!log.IsLogging());
        QCOMPARE(WriteTo(log, screen.DataPath(), ValidReport()), 4097);
        QCOMPARE(WriteTo(log, screen.DataPath(), ValidReport()), 4097);
    }

    void givesUpOnceWhenTheDiskIsFull() {
        // Opening succeeds, every write fails: as a disk that is full.
        VirtualHidApi screen;
        QTest::ignoreMessage(QtWarningMsg,
                             QRegularExpression(QStringLiteral("^Reports are not logged to /dev/full: ")));
        ReportLogHidApi log(screen, QStringLiteral("/dev/full"));
        QVERIFY(!log.IsLogging());
        QCOMPARE(WriteTo(log, screen.DataPath(), ValidReport()), 4097);
    }

    void readerNamesWhatIsWrong_data() {
        QTest::addColumn<QByteArray>("content");
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("foreign") << QByteArray("something else");
        QTest::newRow("absurd length")
            << QByteArray("KIVOREP1") + QByteArray::fromHex("ffffffff") + QByteArray(16, '\0');
        QTest::newRow("unknown kind")
            << QByteArray("KIVOREP1") + QByteArray::fromHex("0000000003000000") + QByteArray(12, '\0');
    }

    void readerNamesWhatIsWrong() {
        QFETCH(QByteArray, content);
        SetContent(m_fileName, content);
        QString error;
        QVERIFY(ReadAll(m_fileName, &error).empty());
        QVERIFY(!error.isEmpty());
    }

    void readerNeedsAFile() {
        QString error;
        QVERIFY(ReadAll(m_folder->filePath(QStringLiteral("none")), &error).empty());
        QVERIFY(!error.isEmpty());
    }

    void recordsOfSeveralThreadsStayWhole() {
        constexpr std::size_t kThreads = 4;
        constexpr std::size_t kEach = 50;
        VirtualHidApi screen;
        {
            ReportLogHidApi log(screen, m_fileName);
            std::array<HidHandle*, kThreads> handles{};
            std::vector<std::thread> threads;
            threads.reserve(kThreads);
            for (HidHandle*& handle : handles) {
                handle = log.OpenPath(screen.DataPath());
            }
            for (HidHandle* const handle : handles) {
                threads.emplace_back([&log, handle] {
                    const QByteArray report = ValidReport();
                    for (std::size_t i = 0; i < kEach; ++i) {
                        log.Write(handle, reinterpret_cast<const quint8*>(report.constData()), 4097);
                    }
                });
            }
            for (std::thread& thread : threads) {
                thread.join();
            }
            for (HidHandle* const handle : handles) {
                log.Close(handle);
            }
        }
        QString error;
        const std::vector<LoggedReport> reports = ReadAll(m_fileName, &error);
        QCOMPARE(error, QString());
        QCOMPARE(reports.size(), kThreads * kEach + 1);
        for (std::size_t i = 1; i < reports.size(); ++i) {
            QCOMPARE(reports[i].bytes, ValidReport());
        }
    }

private:
    std::unique_ptr<QTemporaryDir> m_folder;
    QString m_fileName;
};

KIVO_GUILESS_TEST(TestReportLog)
#include "tst_report_log.moc"
