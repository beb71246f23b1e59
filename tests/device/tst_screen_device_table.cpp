#include <QtTest>
#include <memory>

#include "device/screen_device_table.h"
#include "recording_hid_api.h"
#include "support/test_program.h"

using namespace kivo;

class TestScreenDeviceTable : public QObject {
    Q_OBJECT

private slots:
    void defaultsAreTheScreen() {
        const ScreenDeviceEntry entry = DefaultScreenEntry();
        QCOMPARE(entry.vendorId, 0x04D9U);
        QCOMPARE(entry.productId, 0xFD01U);
        QCOMPARE(entry.releaseMin, 0U);
        QCOMPARE(entry.releaseMax, 0U);
        QCOMPARE(entry.controlUsage, 1U);
        QCOMPARE(entry.controlUsagePage, 0x000CU);
        QCOMPARE(entry.dataUsage, 1U);
        QCOMPARE(entry.dataUsagePage, 0xFFA0U);
        QCOMPARE(TextOf(entry.controlPathFilter), QByteArray());
        QCOMPARE(TextOf(entry.dataPathFilter), QByteArray());
        QCOMPARE(TextOf(entry.controlPath), QByteArray());
        QCOMPARE(TextOf(entry.dataPath), QByteArray());
        QCOMPARE(entry.controlFound, 0U);
        QCOMPARE(entry.dataFound, 0U);
        QCOMPARE(TextOf(entry.name), QByteArray("Kivo Screen"));
    }

    void resetFillsEveryRecordAndCountsOne() {
        const auto table = std::make_unique<ScreenDeviceTable>();
        table->count = 7;
        SetText(table->entries.at(0).dataPath, "old");
        ResetScreenTable(*table);
        QCOMPARE(table->count, 1U);
        QCOMPARE(table->entries.size(), std::size_t{200});
        for (const ScreenDeviceEntry& entry : table->entries) {
            QCOMPARE(TextOf(entry.name), QByteArray("Kivo Screen"));
            QCOMPARE(entry.productId, 0xFD01U);
            QCOMPARE(TextOf(entry.dataPath), QByteArray());
        }
    }

    void collections_data() {
        QTest::addColumn<int>("vendorId");
        QTest::addColumn<int>("productId");
        QTest::addColumn<int>("usagePage");
        QTest::addColumn<int>("usage");
        QTest::addColumn<bool>("control");
        QTest::addColumn<bool>("data");
        QTest::newRow("consumer control") << 0x04D9 << 0xFD01 << 0x000C << 1 << true << false;
        QTest::newRow("picture data") << 0x04D9 << 0xFD01 << 0xFFA0 << 1 << false << true;
        QTest::newRow("control page, other usage") << 0x04D9 << 0xFD01 << 0x000C << 2 << false << false;
        QTest::newRow("data page, other usage") << 0x04D9 << 0xFD01 << 0xFFA0 << 2 << false << false;
        QTest::newRow("other vendor page") << 0x04D9 << 0xFD01 << 0xFFA1 << 1 << false << false;
        QTest::newRow("page not known") << 0x04D9 << 0xFD01 << 0 << 0 << false << false;
        QTest::newRow("other vendor") << 0x04D8 << 0xFD01 << 0xFFA0 << 1 << false << false;
        QTest::newRow("other product") << 0x04D9 << 0xFD02 << 0x000C << 1 << false << false;
    }

    void collections() {
        QFETCH(int, vendorId);
        QFETCH(int, productId);
        QFETCH(int, usagePage);
        QFETCH(int, usage);
        HidDeviceInfo device =
            Collection("path", static_cast<quint16>(usagePage), static_cast<quint16>(usage), 0);
        device.vendorId = static_cast<quint16>(vendorId);
        device.productId = static_cast<quint16>(productId);
        const auto table = std::make_unique<ScreenDeviceTable>();
        ResetScreenTable(*table);

        NoteDevice(*table, device);

        const ScreenDeviceEntry& entry = table->entries.at(0);
        QTEST(IsControlCollection(entry, device), "control");
        QTEST(IsDataCollection(entry, device), "data");
        QTEST(entry.controlFound == 1, "control");
        QTEST(entry.dataFound == 1, "data");
        QCOMPARE(TextOf(entry.controlPath), entry.controlFound == 1 ? QByteArray("path") : QByteArray());
        QCOMPARE(TextOf(entry.dataPath), entry.dataFound == 1 ? QByteArray("path") : QByteArray());
    }

    void releases_data() {
        QTest::addColumn<quint32>("min");
        QTest::addColumn<quint32>("max");
        QTest::addColumn<int>("release");
        QTest::addColumn<bool>("accepted");
        QTest::newRow("no test: zero") << 0U << 0U << 0 << true;
        QTest::newRow("no test: highest") << 0U << 0U << 0xFFFF << true;
        QTest::newRow("no test, whatever the lowest says") << 0x100U << 0U << 0x0FF << true;
        QTest::newRow("below") << 0x100U << 0x200U << 0x0FF << false;
        QTest::newRow("lowest") << 0x100U << 0x200U << 0x100 << true;
        QTest::newRow("highest") << 0x100U << 0x200U << 0x200 << true;
        QTest::newRow("above") << 0x100U << 0x200U << 0x201 << false;
    }

    void releases() {
        QFETCH(quint32, min);
        QFETCH(quint32, max);
        QFETCH(int, release);
        ScreenDeviceEntry entry = DefaultScreenEntry();
        entry.releaseMin = min;
        entry.releaseMax = max;
        HidDeviceInfo data = DataCollection("d");
        data.releaseNumber = static_cast<quint16>(release);
        HidDeviceInfo control = ControlCollection("c");
        control.releaseNumber = static_cast<quint16>(release);
        QTEST(IsDataCollection(entry, data), "accepted");
        QTEST(IsControlCollection(entry, control), "accepted");
    }

    void filters_data() {
        QTest::addColumn<QByteArray>("controlFilter");
        QTest::addColumn<QByteArray>("dataFilter");
        QTest::addColumn<bool>("control");
        QTest::addColumn<bool>("data");
        QTest::newRow("empty filters match every path") << QByteArray() << QByteArray() << true << true;
        QTest::newRow("both contained") << QByteArray("mi_00") << QByteArray("mi_01") << true << true;
        QTest::newRow("control not contained") << QByteArray("mi_07") << QByteArray() << false << true;
        QTest::newRow("data not contained") << QByteArray() << QByteArray("mi_07") << true << false;
        QTest::newRow("letter case counts") << QByteArray("MI_00") << QByteArray("MI_01") << false << false;
    }

    void filters() {
        QFETCH(QByteArray, controlFilter);
        QFETCH(QByteArray, dataFilter);
        ScreenDeviceEntry entry = DefaultScreenEntry();
        SetText(entry.controlPathFilter, controlFilter);
        SetText(entry.dataPathFilter, dataFilter);
        QTEST(IsControlCollection(entry, ControlCollection("hid#mi_00#a")), "control");
        QTEST(IsDataCollection(entry, DataCollection("hid#mi_01#b")), "data");
    }

    void oneCollectionMayServeBoth() {
        const auto table = std::make_unique<ScreenDeviceTable>();
        ResetScreenTable(*table);
        table->entries.at(0).controlUsagePage = 0xFFA0;
        NoteDevice(*table, DataCollection("both"));
        QCOMPARE(TextOf(table->entries.at(0).controlPath), QByteArray("both"));
        QCOMPARE(TextOf(table->entries.at(0).dataPath), QByteArray("both"));
    }

    void onlyCountedRecordsAreLookedAt() {
        const auto table = std::make_unique<ScreenDeviceTable>();
        ResetScreenTable(*table);
        table->count = 2;
        NoteDevice(*table, DataCollection("d"));
        QCOMPARE(table->entries.at(0).dataFound, 1U);
        QCOMPARE(table->entries.at(1).dataFound, 1U);
        QCOMPARE(table->entries.at(2).dataFound, 0U);
    }

    void aCountBeyondTheRoomIsHarmless() {
        const auto table = std::make_unique<ScreenDeviceTable>();
        ResetScreenTable(*table);
        table->count = 100000;
        NoteDevice(*table, DataCollection("d"));
        QCOMPARE(table->entries.at(199).dataFound, 1U);
    }

    void longPathsAreCut_data() {
        QTest::addColumn<int>("length");
        QTest::addColumn<int>("kept");
        QTest::newRow("254 bytes fit") << 254 << 254;
        QTest::newRow("255 bytes") << 255 << 254;
        QTest::newRow("300 bytes") << 300 << 254;
        QTest::newRow("5000 bytes") << 5000 << 254;
    }

    void longPathsAreCut() {
        QFETCH(int, length);
        QFETCH(int, kept);
        const QByteArray path(length, 'p');
        const auto table = std::make_unique<ScreenDeviceTable>();
        ResetScreenTable(*table);
        NoteDevice(*table, ControlCollection(path));
        NoteDevice(*table, DataCollection(path));
        const ScreenDeviceEntry& entry = table->entries.at(0);
        QCOMPARE(TextOf(entry.controlPath), path.left(kept));
        QCOMPARE(TextOf(entry.dataPath), path.left(kept));
        QCOMPARE(entry.dataPath.back(), '\0');
        QCOMPARE(entry.controlFound, 1U);
        QCOMPARE(TextOf(entry.name), QByteArray("Kivo Screen"));
    }

    void aShorterPathLeavesNothingOfTheLonger() {
        std::array<char, 16> field{};
        SetText(field, "a longer text");
        SetText(field, "short");
        QCOMPARE(TextOf(field), QByteArray("short"));
        QCOMPARE(field.at(6), '\0');
        QCOMPARE(field.at(10), '\0');
    }

    void aFieldWithoutItsZeroIsReadToItsEnd() {
        std::array<char, 4> field{'a', 'b', 'c', 'd'};
        QCOMPARE(TextOf(field), QByteArray("abcd"));
    }
};

KIVO_APPLESS_TEST(TestScreenDeviceTable)
#include "tst_screen_device_table.moc"
