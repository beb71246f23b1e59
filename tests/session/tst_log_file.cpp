#include <QTemporaryDir>
#include <QtTest>

#include "session/log_file.h"
#include "support/test_program.h"

using namespace kivo;

class TestLogFile : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void LinesAreAppendedRunAfterRun();
    void BoundHolds_data();
    void BoundHolds();
    void LastLinesSpanBothHalves();
    void LineThatIsTooLongIsLeftOut();
    void OlderHalfThatStaysCostsOnlyLines();
};

namespace {

constexpr qint64 kBound = 200;

qint64 SizeOf(const QString& path) {
    return QFileInfo(path).size();
}

}  // namespace

void TestLogFile::LinesAreAppendedRunAfterRun() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("a/log.txt"));
    QVERIFY(LogFile(path).LastLines(5).isEmpty());
    LogFile(path).Append(QStringLiteral("one ℃"));
    LogFile(path).Append(QStringLiteral("two"));
    QCOMPARE(LogFile(path).LastLines(5), (QStringList{QStringLiteral("one ℃"), QStringLiteral("two")}));
    QCOMPARE(LogFile(path).LastLines(1), QStringList{QStringLiteral("two")});
}

void TestLogFile::BoundHolds_data() {
    QTest::addColumn<int>("length");
    QTest::newRow("short lines") << 3;
    QTest::newRow("lines of half a half") << 50;
    QTest::newRow("lines as long as a half") << 99;
}

void TestLogFile::BoundHolds() {
    QFETCH(int, length);
    const QTemporaryDir folder;
    LogFile log(folder.filePath(QStringLiteral("log.txt")), kBound);
    for (int line = 0; line < 500; ++line) {
        log.Append(QStringLiteral("%1").arg(line, length));
        QVERIFY(SizeOf(folder.filePath(QStringLiteral("log.txt"))) + SizeOf(log.OlderHalf()) <= kBound);
    }
    QCOMPARE(log.LastLines(1).constFirst().trimmed(), QStringLiteral("499"));
    QCOMPARE(QDir(folder.path()).entryList(QDir::Files).size(), 2);
}

void TestLogFile::LastLinesSpanBothHalves() {
    const QTemporaryDir folder;
    LogFile log(folder.filePath(QStringLiteral("log.txt")), kBound);
    for (int line = 0; line < 26; ++line) {
        log.Append(QStringLiteral("line %1").arg(line, 4));  // ten bytes
    }
    const QStringList lines = log.LastLines(10);
    QCOMPARE(lines.size(), 10);
    for (int line = 0; line < 10; ++line) {
        QCOMPARE(lines.at(line), QStringLiteral("line %1").arg(16 + line, 4));
    }
}

void TestLogFile::LineThatIsTooLongIsLeftOut() {
    const QTemporaryDir folder;
    LogFile log(folder.filePath(QStringLiteral("log.txt")), kBound);
    log.Append(QString(100, QLatin1Char('x')));
    log.Append(QStringLiteral("next"));
    QCOMPARE(log.LastLines(5), QStringList{QStringLiteral("next")});
}

// As where another program has it open.
void TestLogFile::OlderHalfThatStaysCostsOnlyLines() {
    const QTemporaryDir folder;
    LogFile log(folder.filePath(QStringLiteral("log.txt")), kBound);
    QVERIFY(QDir().mkpath(log.OlderHalf() + QStringLiteral("/occupied")));
    for (int line = 0; line < 100; ++line) {
        log.Append(QStringLiteral("line %1").arg(line, 4));
    }
    QCOMPARE(SizeOf(folder.filePath(QStringLiteral("log.txt"))), kBound / 2);
    QCOMPARE(log.LastLines(1), QStringList{QStringLiteral("line    9")});
}

KIVO_GUILESS_TEST(TestLogFile)
#include "tst_log_file.moc"
