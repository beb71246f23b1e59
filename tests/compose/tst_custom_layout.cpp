#include <QFile>
#include <QSettings>
#include <QTest>

#include "compose/custom_layout.h"
#include "compose/theme_catalogue.h"
#include "config/folders.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

// The ten keys in the order in which they are kept.
QStringList SlotKeys() {
    QStringList keys;
    for (int row = 0; row < 2; ++row) {
        for (int slot = 0; slot < 5; ++slot) {
            keys.append(QStringLiteral("CustomShow/%1-%2").arg(row).arg(slot));
        }
    }
    return keys;
}

// What stands under the ten keys; empty where a key is missing.
QStringList StoredEntries() {
    const QSettings file(ConfigFilePath(), QSettings::IniFormat);
    QStringList entries;
    for (const QString& key : SlotKeys()) {
        entries.append(file.value(key).toString());
    }
    return entries;
}

void Store(const QString& key, const QVariant& value) {
    QSettings file(ConfigFilePath(), QSettings::IniFormat);
    file.setValue(key, value);
}

QVector<int> Entries(const SlotTable& table) {
    QVector<int> entries;
    for (const SlotRow& row : table) {
        for (const int item : row) {
            entries.append(item);
        }
    }
    return entries;
}

const QVector<int> kTenEmpty(10, -1);

}  // namespace

class TestCustomLayout : public QObject {
    Q_OBJECT

private slots:
    void init() { QFile::remove(ConfigFilePath()); }
    void cleanupTestCase() { QFile::remove(ConfigFilePath()); }

    void Slots_data() {
        QTest::addColumn<int>("slot");
        QTest::addColumn<QRect>("landscape");
        QTest::addColumn<QRect>("portrait");
        QTest::newRow("top left") << 0 << Corners(10, 16, 91, 45) << Corners(1, 18, 67, 41);
        QTest::newRow("bottom left") << 1 << Corners(10, 116, 91, 145) << Corners(1, 271, 67, 294);
        QTest::newRow("centre") << 2 << Corners(120, 60, 201, 89) << Corners(29, 145, 140, 174);
        QTest::newRow("bottom right") << 3 << Corners(227, 116, 308, 145) << Corners(101, 271, 167, 294);
        QTest::newRow("top right") << 4 << Corners(227, 16, 308, 45) << Corners(101, 18, 167, 41);
    }
    void Slots() {
        QFETCH(int, slot);
        QFETCH(QRect, landscape);
        QFETCH(QRect, portrait);
        QCOMPARE(SlotRect(slot, Orientation::Landscape), landscape);
        QCOMPARE(SlotRect(slot, Orientation::Portrait), portrait);
    }

    void SlotSizes() {
        for (int slot = 0; slot < kSlotCount; ++slot) {
            QCOMPARE(SlotRect(slot, Orientation::Landscape).size(), QSize(82, 30));
            QCOMPARE(SlotRect(slot, Orientation::Portrait).size(),
                     slot == kCentreSlot ? QSize(112, 30) : QSize(67, 24));
        }
    }

    void TextRows_data() {
        QTest::addColumn<int>("row");
        QTest::addColumn<QRect>("landscape");
        QTest::addColumn<QRect>("portrait");
        QTest::newRow("first") << 0 << Corners(10, 10, 309, 49) << Corners(10, 36, 159, 73);
        QTest::newRow("second") << 1 << Corners(10, 63, 309, 102) << Corners(10, 131, 159, 168);
        QTest::newRow("third") << 2 << Corners(10, 115, 309, 154) << Corners(10, 225, 159, 262);
    }
    void TextRows() {
        QFETCH(int, row);
        QFETCH(QRect, landscape);
        QFETCH(QRect, portrait);
        QCOMPARE(TextRowRect(row, Orientation::Landscape), landscape);
        QCOMPARE(TextRowRect(row, Orientation::Portrait), portrait);
    }

    void SizesAndColours() {
        QCOMPARE(FreeTextPixelSize(0), 17);
        QCOMPARE(FreeTextPixelSize(1), 15);
        QCOMPARE(FreeTextPixelSize(2), 12);
        QCOMPARE(FreeTextColor(0), QColor(255, 255, 255));
        QCOMPARE(FreeTextColor(1), QColor(0, 0, 0));
        QCOMPARE(FreeTextColor(2), QColor(255, 100, 34));
        QCOMPARE(FreeTextColor(3), QColor(245, 224, 33));
        QCOMPARE(FreeTextColor(4), QColor(66, 131, 228));
        QCOMPARE(FreeTextColor(5), QColor(58, 200, 163));
    }

    void IndicesOutsideCountAsTheFirst() {
        for (const int noise :
             {-1, 3, 6, 1000000, std::numeric_limits<int>::min(), std::numeric_limits<int>::max()}) {
            if (noise != 3) {
                QCOMPARE(FreeTextColor(noise), QColor(255, 255, 255));
            }
            QCOMPARE(FreeTextPixelSize(noise), 17);
        }
    }

    void FactoryAssignment() {
        QCOMPARE(Entries(FactorySlotTable()), (QVector<int>{0, 1, 3, 2, 4, -1, -1, 0, -1, -1}));
        QCOMPARE(Entries(EmptySlotTable()), kTenEmpty);
    }

    void FactoryLayoutHasItsItemsTicked() {
        const LayoutRecord five = FactoryCustomLayout(0, InterfaceLanguage::Chinese);
        const LayoutRecord one = FactoryCustomLayout(1, InterfaceLanguage::Russian);
        for (int item = 0; item < kLiveValueCount; ++item) {
            QCOMPARE(five.shown[size_t(item)], item <= CpuPower);
            QCOMPARE(one.selected[size_t(item)], item == CpuTemperature);
        }
        QVERIFY(five.freeText.isEmpty());
        QVERIFY(five.sample == SampleTexts(InterfaceLanguage::Chinese));
        QVERIFY(one.sample == SampleTexts(InterfaceLanguage::Russian));
    }

    void WithoutAFileEverySlotIsEmpty() {
        QVERIFY(!QFile::exists(ConfigFilePath()));
        QCOMPARE(Entries(LoadSlotTable()), kTenEmpty);
    }

    void SavesTenIntegersAndNothingElse() {
        SaveSlotTable({{{5, -1, 3, 8, 0}, {-1, -1, 6, -1, -1}}});
        const QStringList entries{QStringLiteral("5"),  QStringLiteral("-1"), QStringLiteral("3"),
                                  QStringLiteral("8"),  QStringLiteral("0"),  QStringLiteral("-1"),
                                  QStringLiteral("-1"), QStringLiteral("6"),  QStringLiteral("-1"),
                                  QStringLiteral("-1")};
        QCOMPARE(StoredEntries(), entries);
        QStringList keys = QSettings(ConfigFilePath(), QSettings::IniFormat).allKeys();
        keys.sort();
        QCOMPARE(keys, SlotKeys());
    }

    void LoadsWhatWasSaved() {
        const SlotTable table{{{4, 2, 0, 6, 1}, {7, -1, 5, -1, 3}}};
        SaveSlotTable(table);
        QCOMPARE(Entries(LoadSlotTable()), Entries(table));
        SaveSlotTable(EmptySlotTable());
        QCOMPARE(Entries(LoadSlotTable()), kTenEmpty);
    }

    void SavingLeavesOtherKeysAlone() {
        Store(QStringLiteral("Config/Mode"), 1);
        Store(QStringLiteral("H1/String_3"), QStringLiteral("12:00"));
        SaveSlotTable(FactorySlotTable());
        const QSettings file(ConfigFilePath(), QSettings::IniFormat);
        QCOMPARE(file.value(QStringLiteral("Config/Mode")).toInt(), 1);
        QCOMPARE(file.value(QStringLiteral("H1/String_3")).toString(), QStringLiteral("12:00"));
    }

    void OddEntries_data() {
        QTest::addColumn<QVariant>("stored");
        QTest::addColumn<int>("loaded");
        QTest::newRow("word") << QVariant(QStringLiteral("abc")) << -1;
        QTest::newRow("empty") << QVariant(QString()) << -1;
        QTest::newRow("fraction") << QVariant(QStringLiteral("2.5")) << -1;
        QTest::newRow("list") << QVariant(QStringList{QStringLiteral("1"), QStringLiteral("2")}) << -1;
        // Kept in the table; it matches no kind.
        QTest::newRow("no kind") << QVariant(9) << 9;
        QTest::newRow("negative") << QVariant(-7) << -7;
        QTest::newRow("last kind") << QVariant(8) << 8;
    }
    void OddEntries() {
        QFETCH(QVariant, stored);
        QFETCH(int, loaded);
        SaveSlotTable(FactorySlotTable());
        Store(QStringLiteral("CustomShow/0-1"), stored);
        QVector<int> expected = Entries(FactorySlotTable());
        expected[1] = loaded;
        QCOMPARE(Entries(LoadSlotTable()), expected);
    }

    void AMissingKeyIsAnEmptySlot() {
        SaveSlotTable(FactorySlotTable());
        QSettings(ConfigFilePath(), QSettings::IniFormat).remove(QStringLiteral("CustomShow/0-4"));
        QVector<int> expected = Entries(FactorySlotTable());
        expected[4] = -1;
        QCOMPARE(Entries(LoadSlotTable()), expected);
    }
};

KIVO_GUILESS_TEST(TestCustomLayout)
#include "tst_custom_layout.moc"
