#include <QLoggingCategory>
#include <QTemporaryDir>
#include <QTemporaryFile>
#include <QtTest>
#include <thread>
#include <vector>

#include "session/log_file.h"
#include "session/log_lines.h"
#include "support/test_program.h"

using namespace kivo;

class TestLogLines : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void MessagesBecomeLines_data();
    void MessagesBecomeLines();
    void LinesHaveTheirTime();
    void RingKeepsTheLastHundred();
    void EveryThreadsLinesAreKept();
    void WhatIsLoggedIsKeptAndHandedOn();
    void DebugLinesAreKeptWhereTheyWereAskedFor_data();
    void DebugLinesAreKeptWhereTheyWereAskedFor();
    void FileHasWhatIsLogged();
    void FolderThatCannotBeMadeCostsNothing();
};

namespace {

QStringList& HandedOn() {
    static QStringList lines;
    return lines;
}

// A log that hands on to the test, and nothing afterwards.
class Log {
public:
    explicit Log(const QString& file = QString()) {
        HandedOn().clear();
        m_former = qInstallMessageHandler(
            [](QtMsgType, const QMessageLogContext&, const QString& line) { HandedOn().append(line); });
        StartLog(file);
    }
    ~Log() {
        StartLog();
        qInstallMessageHandler(m_former);
    }
    Q_DISABLE_COPY(Log)

private:
    QtMessageHandler m_former;
};

}  // namespace

void TestLogLines::MessagesBecomeLines_data() {
    QTest::addColumn<QString>("message");
    QTest::addColumn<QStringList>("lines");
    QTest::newRow("one line") << QStringLiteral("a fact") << QStringList{QStringLiteral("a fact")};
    QTest::newRow("a line end of its own")
        << QStringLiteral("isStop.\n") << QStringList{QStringLiteral("isStop.")};
    QTest::newRow("two facts") << QStringLiteral("one\r\n\r\n  two \n")
                               << QStringList{QStringLiteral("one"), QStringLiteral("  two")};
    QTest::newRow("blank") << QStringLiteral(" \n\t\r\n") << QStringList();
    QTest::newRow("empty") << QString() << QStringList();
    QTest::newRow("a paragraph's end")
        << QStringLiteral("one\u2029two") << QStringList{QStringLiteral("one"), QStringLiteral("two")};
}

void TestLogLines::MessagesBecomeLines() {
    QFETCH(QString, message);
    QTEST(LinesOfMessage(message), "lines");
}

void TestLogLines::LinesHaveTheirTime() {
    QCOMPARE(StampedLine(QDateTime(QDate(2026, 11, 23), QTime(4, 36, 5, 7)), QStringLiteral("a fact")),
             QStringLiteral("2026-11-23 04:36:05.007 a fact"));
}

void TestLogLines::RingKeepsTheLastHundred() {
    LogRing ring;
    QVERIFY(ring.Lines().isEmpty());
    for (int line = 0; line < 250; ++line) {
        ring.Add(QString::number(line));
    }
    QCOMPARE(ring.Lines().size(), 100);
    QCOMPARE(ring.Lines().constFirst(), QStringLiteral("150"));
    QCOMPARE(ring.Lines().constLast(), QStringLiteral("249"));
}

void TestLogLines::EveryThreadsLinesAreKept() {
    LogRing ring;
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 5; ++thread) {
        threads.emplace_back([&ring, thread] {
            for (int line = 0; line < 20; ++line) {
                ring.Add(QStringLiteral("%1-%2").arg(thread).arg(line));
                ring.Lines();
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    QStringList lines = ring.Lines();
    QCOMPARE(lines.size(), 100);
    QCOMPARE(lines.removeDuplicates(), 0);
}

void TestLogLines::WhatIsLoggedIsKeptAndHandedOn() {
    const QLoggingCategory category("kivo.test");
    {
        const Log log;
        qWarning("one\n\ntwo\n");
        qCWarning(category, "three");
        KeepLogLine(QStringLiteral("four"));
    }
    QCOMPARE(HandedOn(),
             (QStringList{QStringLiteral("one"), QStringLiteral("two"), QStringLiteral("three")}));
    const QStringList kept = KeptLogLines();
    QVERIFY(kept.size() >= 4);
    const QStringList last = kept.mid(kept.size() - 4);
    // After the time and its blank.
    constexpr int kStamp = 24;
    QCOMPARE(last.at(0).mid(kStamp), QStringLiteral("one"));
    QCOMPARE(last.at(1).mid(kStamp), QStringLiteral("two"));
    QCOMPARE(last.at(2).mid(kStamp), QStringLiteral("kivo.test: three"));
    QCOMPARE(last.at(3).mid(kStamp), QStringLiteral("four"));
}

void TestLogLines::DebugLinesAreKeptWhereTheyWereAskedFor_data() {
    QTest::addColumn<QByteArray>("rules");
    QTest::addColumn<bool>("kept");
    QTest::newRow("not asked for") << QByteArray() << false;
    QTest::newRow("asked for") << QByteArray("kivo.*=true") << true;
}

void TestLogLines::DebugLinesAreKeptWhereTheyWereAskedFor() {
    QFETCH(QByteArray, rules);
    QFETCH(bool, kept);
    qputenv("QT_LOGGING_RULES", rules);
    const QString line = QStringLiteral("debug with rules \"%1\"").arg(QLatin1String(rules));
    {
        const Log log;
        qDebug("%s", qPrintable(line));
    }
    qunsetenv("QT_LOGGING_RULES");
    QCOMPARE(HandedOn(), QStringList{line});
    QCOMPARE(!KeptLogLines().filter(line).isEmpty(), kept);
}

void TestLogLines::FileHasWhatIsLogged() {
    const QTemporaryDir folder;
    const QString file = folder.filePath(QStringLiteral("not yet/log.txt"));
    {
        const Log log;
        qWarning("before there was a file");
        StartLog(file);
        qWarning("one");
        KeepLogLine(QStringLiteral("two"));
    }
    qInfo("not in the file any more");
    const QStringList lines = LogFile(file).LastLines(3);
    QCOMPARE(lines.size(), 3);
    QVERIFY(lines.at(0).endsWith(QLatin1String(" before there was a file")));
    QVERIFY(lines.at(1).endsWith(QLatin1String(" one")));
    QVERIFY(lines.at(2).endsWith(QLatin1String(" two")));
}

void TestLogLines::FolderThatCannotBeMadeCostsNothing() {
    QTemporaryFile inTheWay;
    QVERIFY(inTheWay.open());
    const Log log(inTheWay.fileName() + QStringLiteral("/log.txt"));
    qWarning("one");
    QCOMPARE(HandedOn(), QStringList{QStringLiteral("one")});
}

KIVO_GUILESS_TEST(TestLogLines)
#include "tst_log_lines.moc"
