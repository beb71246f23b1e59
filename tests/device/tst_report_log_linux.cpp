#include <QFileInfo>
#include <QTemporaryDir>
#include <QtTest>

#include "device/report_log.h"
#include "support/full_disk.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;

class TestReportLogLinux : public QObject {
    Q_OBJECT

private slots:
    void givesUpWhenTheDiskFillsUpLater() {
        const QTemporaryDir folder;
        const QString fileName = folder.filePath(QStringLiteral("reports.log"));
        VirtualHidApi screen;
        ReportLogHidApi log(screen, fileName);
        QVERIFY(log.IsLogging());
        const qint64 started = QFileInfo(fileName).size();
        QVERIFY(started > 0);
        HidHandle* const handle = log.OpenPath(screen.DataPath());
        QVERIFY(handle != nullptr);
        const QByteArray report = QByteArray::fromHex("0055a1f2122e05") + QByteArray(4097 - 7, '\0');
        const auto send = [&] {
            return log.Write(handle, reinterpret_cast<const quint8*>(report.constData()),
                             static_cast<std::size_t>(report.size()));
        };
        QTest::ignoreMessage(
            QtWarningMsg, QRegularExpression(QStringLiteral("^Reports are not logged to .*reports\\.log: ")));
        {
            const test::FullDisk disk(static_cast<rlim_t>(started));
            QCOMPARE(send(), 4097);
        }
        // Logging is over, even where there is room again: a log with a gap would mislead.
        QVERIFY(!log.IsLogging());
        QCOMPARE(send(), 4097);
        QCOMPARE(QFileInfo(fileName).size(), started);
        log.Close(handle);
    }
};

KIVO_TEST(TestReportLogLinux)
#include "tst_report_log_linux.moc"
