#include <QtTest>

#include "device/report_descriptor.h"
#include "support/test_program.h"

using namespace kivo;

class TestReportDescriptor : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void Usages_data();
    void Usages();
};

// Expected: "page:usage" of each collection, hexadecimal.
void TestReportDescriptor::Usages_data() {
    QTest::addColumn<QByteArray>("descriptor");
    QTest::addColumn<QString>("usages");
    const QByteArray data = "06a0ff 0901 a101 0902 150026ff00 7508 96ff0f 9102 c0";
    const QByteArray control = "050c 0901 a101 19002a3c02 15002a3c02 7510 9501 8100 c0";
    QTest::newRow("data collection") << data << QStringLiteral("ffa0:1");
    QTest::newRow("control collection") << control << QStringLiteral("c:1");
    QTest::newRow("both in one device") << control + data << QStringLiteral("c:1 ffa0:1");
    QTest::newRow("a collection within")
        << QByteArray("0501 0902 a101 0901 a100 0509 c0 c0 050c 0901 a101 c0") << QStringLiteral("1:2 c:1");
    QTest::newRow("page within the usage") << QByteArray("0b 0100a0ff a101 c0") << QStringLiteral("ffa0:1");
    QTest::newRow("page put away and taken back")
        << QByteArray("06a0ff a4 050c b4 0901 a101 c0") << QStringLiteral("ffa0:1");
    QTest::newRow("nothing was put away") << QByteArray("06a0ff b4 0901 a101 c0") << QStringLiteral("ffa0:1");
    QTest::newRow("usage of one item is not the next one's")
        << QByteArray("06a0ff 0901 a101 c0 a101 c0") << QStringLiteral("ffa0:1 ffa0:0");
    QTest::newRow("long item in between")
        << QByteArray("06a0ff fe 03 10 a1a1a1 0901 a101 c0") << QStringLiteral("ffa0:1");
    QTest::newRow("long item cut short") << QByteArray("06a0ff 0901 a101 c0 fe") << QStringLiteral("ffa0:1");
    QTest::newRow("more ends than beginnings") << QByteArray("c0 c0 06a0ff 0901 a101 c0") << QString();
    QTest::newRow("item cut short") << QByteArray("06a0ff 0901 a101 c0 06a0") << QStringLiteral("ffa0:1");
    QTest::newRow("collection cut short") << QByteArray("06a0ff 0901 a1") << QString();
    QTest::newRow("empty") << QByteArray() << QString();
}

void TestReportDescriptor::Usages() {
    QFETCH(QByteArray, descriptor);
    QStringList found;
    for (const HidUsage& usage : TopLevelUsages(QByteArray::fromHex(descriptor))) {
        found.append(QStringLiteral("%1:%2").arg(usage.page, 0, 16).arg(usage.usage, 0, 16));
    }
    QTEST(found.join(QLatin1Char(' ')), "usages");
}

KIVO_GUILESS_TEST(TestReportDescriptor)
#include "tst_report_descriptor.moc"
