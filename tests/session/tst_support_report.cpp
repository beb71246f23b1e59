#include <QTemporaryDir>
#include <QtTest>

#include "session/support_report.h"
#include "support/test_program.h"

using namespace kivo;

class TestSupportReport : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void FactsBecomeSections();
    void EmptySectionsSaySo();
    void TellsWhoWroteIt_data();
    void TellsWhoWroteIt();
    void NamesAreTakenOutOfEverySection();
    void HasAFileOfItsOwn();
    void IsSavedOrSaysWhyNot();
};

namespace {

const QDateTime kMoment(QDate(2026, 11, 23), QTime(4, 36, 55));

SupportFacts Facts() {
    SupportFacts facts;
    facts.at = kMoment;
    facts.version = QStringLiteral("1.0.0 (1a2b3c)");
    facts.system = {{QStringLiteral("Qt"), QStringLiteral("5.15.8")},
                    {QStringLiteral("platform"), QStringLiteral("xcb")}};
    facts.hidNodes = QStringList{QStringLiteral("hidraw1"), QStringLiteral("hidraw2")};
    facts.panel = {{QStringLiteral("owed"), QStringLiteral("nothing")}};
    facts.sensors = QStringLiteral("Power  15w\nFan    900\n");
    facts.settings = QStringList{QStringLiteral("Config/Hor = 1")};
    facts.log = QStringList{QStringLiteral("2026-11-23 04:36:55.120 a fact")};
    return facts;
}

}  // namespace

void TestSupportReport::FactsBecomeSections() {
    const QString report = SupportReport(Facts(), {});
    QVERIFY(
        report.startsWith(QStringLiteral("Kivo Screen, report for support\n"
                                         "version  1.0.0 (1a2b3c)\n"
                                         "written  2026-11-23T04:36:55, by the copy that runs\n"
                                         "\n"
                                         "System\n"
                                         "------\n"
                                         "Qt        5.15.8\n"
                                         "platform  xcb\n"
                                         "\n"
                                         "HID devices\n"
                                         "-----------\n"
                                         "hidraw1\n"
                                         "hidraw2\n"
                                         "\n"
                                         "Panel\n"
                                         "-----\n"
                                         "owed  nothing\n"
                                         "\n"
                                         "Sensors\n"
                                         "-------\n"
                                         "Power  15w\n"
                                         "Fan    900\n"
                                         "\n"
                                         "Settings\n"
                                         "--------\n"
                                         "Config/Hor = 1\n"
                                         "\n"
                                         "Last log lines\n"
                                         "--------------\n"
                                         "2026-11-23 04:36:55.120 a fact\n")));
    QVERIFY(report.contains(QStringLiteral("--report-log FILE")));
    QVERIFY(report.contains(QStringLiteral("kivo-report-log --image PANEL.png FILE")));
    QVERIFY(report.endsWith(QLatin1Char('\n')));
}

void TestSupportReport::EmptySectionsSaySo() {
    SupportFacts facts;
    facts.at = kMoment;
    QCOMPARE(SupportReport(facts, {}).count(QStringLiteral("\n(none)\n")), 6);
}

void TestSupportReport::TellsWhoWroteIt_data() {
    QTest::addColumn<int>("teller");
    QTest::addColumn<QString>("says");
    QTest::newRow("running") << int(SupportFacts::Teller::RunningCopy)
                             << QStringLiteral(", by the copy that runs\n");
    QTest::newRow("alone") << int(SupportFacts::Teller::OnItsOwn) << QStringLiteral("; no copy runs\n");
    QTest::newRow("beside") << int(SupportFacts::Teller::BesideACopy)
                            << QStringLiteral("(Save report...) tells more\n");
}

void TestSupportReport::TellsWhoWroteIt() {
    QFETCH(int, teller);
    QFETCH(QString, says);
    SupportFacts facts = Facts();
    facts.teller = SupportFacts::Teller(teller);
    QVERIFY(SupportReport(facts, {}).contains(says));
}

void TestSupportReport::NamesAreTakenOutOfEverySection() {
    const QString secret = QStringLiteral("anna at /home/anna/x.png on desk7");
    SupportFacts facts = Facts();
    facts.system.append({QStringLiteral("a"), secret});
    facts.hidNodes.append(secret);
    facts.panel.append({QStringLiteral("b"), secret});
    facts.sensors += secret + QLatin1Char('\n');
    facts.settings.append(secret);
    facts.log.append(secret);
    PersonalNames names;
    names.homes = QStringList{QStringLiteral("/home/anna")};
    names.users = QStringList{QStringLiteral("anna")};
    names.hosts = QStringList{QStringLiteral("desk7")};
    names.pictures = QStringList{QStringLiteral("/home/anna/x.png")};
    const QString report = SupportReport(facts, names);
    QCOMPARE(report.count(QStringLiteral("<user> at <picture 1>.png on <host>")), 6);
    QVERIFY(!report.contains(QStringLiteral("anna")));
    QVERIFY(!report.contains(QStringLiteral("desk7")));
}

void TestSupportReport::HasAFileOfItsOwn() {
    QCOMPARE(SupportReportName(kMoment), QStringLiteral("kivo-screen-report-20261123-0436.txt"));
}

void TestSupportReport::IsSavedOrSaysWhyNot() {
    const QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("report.txt"));
    QCOMPARE(SaveSupportReport(QStringLiteral("old and long"), path), QString());
    QCOMPARE(SaveSupportReport(QStringLiteral("25 ℃"), path), QString());
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    QCOMPARE(file.readAll(), QByteArray("25 ℃"));
    QVERIFY(!SaveSupportReport(QStringLiteral("x"), folder.filePath(QStringLiteral("no folder/report.txt")))
                 .isEmpty());
    QVERIFY(!SaveSupportReport(QStringLiteral("x"), folder.path()).isEmpty());
}

KIVO_GUILESS_TEST(TestSupportReport)
#include "tst_support_report.moc"
