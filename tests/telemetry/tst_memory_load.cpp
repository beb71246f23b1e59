#include <QtTest>

#include "support/test_program.h"
#include "telemetry/memory_load.h"

using namespace kivo;

class TestMemoryLoad : public QObject {
    Q_OBJECT

private slots:
    void isWhatIsNotAvailable_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::addColumn<int>("percent");
        QTest::newRow("a real machine")
            << QByteArray(
                   "MemTotal:       16303428 kB\nMemFree:          512000 kB\nMemAvailable:    9781204 kB\n"
                   "Buffers:          100 kB\nCached:        1000 kB\nSwapCached:  5 kB\n")
            << 40;
        QTest::newRow("cut, not rounded") << QByteArray("MemTotal: 1000 kB\nMemAvailable: 1 kB\n") << 99;
        QTest::newRow("exactly 29") << QByteArray("MemTotal: 100 kB\nMemAvailable: 71 kB\n") << 29;
        QTest::newRow("nothing in use") << QByteArray("MemTotal: 1000 kB\nMemAvailable: 1000 kB\n") << 0;
        QTest::newRow("all in use") << QByteArray("MemTotal: 1000 kB\nMemAvailable: 0 kB\n") << 100;
        QTest::newRow("more available than there is")
            << QByteArray("MemTotal: 1000 kB\nMemAvailable: 2000 kB\n") << 0;
        QTest::newRow("an old kernel")
            << QByteArray("MemTotal: 1000 kB\nMemFree: 100 kB\nBuffers: 50 kB\nCached: 250 kB\n") << 60;
        QTest::newRow("swap is not cache")
            << QByteArray("MemTotal: 1000 kB\nMemFree: 100 kB\nSwapCached: 500 kB\n") << 90;
        QTest::newRow("no line end") << QByteArray("MemAvailable: 250 kB\nMemTotal: 1000") << 75;
        QTest::newRow("numbers that no 64-bit product holds")
            << QByteArray("MemTotal: 18446744073709551615 kB\nMemAvailable: 9223372036854775807 kB\n") << 50;
    }
    void isWhatIsNotAvailable() {
        QFETCH(QByteArray, text);
        QFETCH(int, percent);
        const auto load = ParseMemoryLoad({text.constData(), std::size_t(text.size())});
        QVERIFY(load.has_value());
        QCOMPARE(*load, percent);
    }

    void isNothingWhereTheTextIsOfNoUse_data() {
        QTest::addColumn<QByteArray>("text");
        QTest::newRow("nothing") << QByteArray();
        QTest::newRow("no total") << QByteArray("MemAvailable: 5 kB\n");
        QTest::newRow("a total of zero") << QByteArray("MemTotal: 0 kB\nMemAvailable: 0 kB\n");
        QTest::newRow("nothing about what is free") << QByteArray("MemTotal: 1000 kB\nCached: 5 kB\n");
        QTest::newRow("words") << QByteArray("MemTotal: much\nMemAvailable: some\n");
        QTest::newRow("a negative total") << QByteArray("MemTotal: -5 kB\nMemAvailable: 1 kB\n");
        QTest::newRow("a longer name") << QByteArray("MemTotalX: 1000 kB\nMemAvailable: 1 kB\n");
        QTest::newRow("a number on the next line") << QByteArray("MemTotal:\n1000\nMemAvailable: 1 kB\n");
        QTest::newRow("noise") << QByteArray("\0\xff:\n\n::1\n", 9);
    }
    void isNothingWhereTheTextIsOfNoUse() {
        QFETCH(QByteArray, text);
        QVERIFY(!ParseMemoryLoad({text.constData(), std::size_t(text.size())}).has_value());
    }

    void thisMachineUsesSomeMemory() {
        const int load = ReadMemoryLoad().value_or(-1);
        QVERIFY2(load >= 0 && load <= 100, qPrintable(QString::number(load)));
        // Reading as well as parsing works here: more than nothing is in use on any machine that runs this.
        QVERIFY(load > 0);
    }
};

KIVO_APPLESS_TEST(TestMemoryLoad)
#include "tst_memory_load.moc"
