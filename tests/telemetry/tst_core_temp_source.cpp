#include <QtTest>

#include <limits>

#include "sensor_bytes.h"
#include "sensor_words.h"
#include "support/test_program.h"
#include "telemetry/core_temp_memory.h"
#include "telemetry/core_temp_source.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr int kIsFahrenheit = 2684;
constexpr int kIsDistance = 2685;
constexpr int kVersion = 2688;

QString TemperatureIn(const QByteArray& memory) {
    return Said(ReadCoreTempMemory(memory)[Quantity::Temperature]);
}

}  // namespace

class TestCoreTempSource : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void HottestCoreCounts() {
        const SensorReadings readings = ReadCoreTempMemory(CoreTempBytes().bytes);
        QCOMPARE(Said(readings), QStringLiteral("no source, 57.5, no source"));
        QVERIFY(AreAllOf(readings, SourceId::CoreTemp));
    }

    void CoresOfAnotherProcessorDoNotCount() {
        CoreTempBytes memory;
        memory.SetCores({41.0F, 57.5F, 43.0F, 99.0F});
        PutNumber<quint32>(memory.bytes, 1536, 3);
        PutNumber<quint32>(memory.bytes, 1540, 2);
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("57.5"));
    }

    void EveryPlaceOfACoreIsLookedAt() {
        CoreTempBytes memory;
        memory.SetCores({0.0F, 0.0F, 0.0F});
        PutNumber<quint32>(memory.bytes, 1536, 256);
        PutNumber<quint32>(memory.bytes, 2564, 0x42480000);  // 50.0, of the last core
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("50"));
        PutNumber<quint32>(memory.bytes, 1536, 257);
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("no source"));
    }

    void UnitsAreConverted() {
        CoreTempBytes memory;
        memory.SetCores({113.0F, 104.0F});
        memory.bytes[kIsFahrenheit] = 1;
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("45"));

        memory.bytes[kIsFahrenheit] = 0;
        memory.bytes[kIsDistance] = 1;
        memory.SetCores({60.0F, 45.0F, 70.0F});
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("55"));
        PutNumber<quint32>(memory.bytes, 1024, 0);
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("no source"));
        PutNumber<quint32>(memory.bytes, 1024, 100);
        memory.bytes[kIsFahrenheit] = 1;
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("no source"));
    }

    void LiarsAreLeftOut_data() {
        QTest::addColumn<float>("lie");
        QTest::newRow("minus 273") << -273.0F;
        QTest::newRow("0") << 0.0F;
        QTest::newRow("255") << 255.0F;
        QTest::newRow("no number") << std::numeric_limits<float>::quiet_NaN();
        QTest::newRow("infinite") << std::numeric_limits<float>::infinity();
    }
    void LiarsAreLeftOut() {
        QFETCH(float, lie);
        CoreTempBytes memory;
        memory.SetCores({lie, 44.0F, lie});
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("44"));
        memory.SetCores({lie, lie});
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("unbelievable"));
    }

    void MemoryHasToBeAsLongAsItsVersion() {
        CoreTempBytes memory;
        QCOMPARE(TemperatureIn(memory.bytes.left(4739)), QStringLiteral("no source"));
        QCOMPARE(TemperatureIn(memory.bytes + QByteArray(4000, 'x')), QStringLiteral("57.5"));
        PutNumber<quint32>(memory.bytes, kVersion, 7);
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("57.5"));
        PutNumber<quint32>(memory.bytes, kVersion, 1);
        QCOMPARE(TemperatureIn(memory.bytes.left(2692)), QStringLiteral("57.5"));
        QCOMPARE(TemperatureIn(memory.bytes.left(2691)), QStringLiteral("no source"));
        PutNumber<quint32>(memory.bytes, kVersion, 0);
        QCOMPARE(TemperatureIn(memory.bytes), QStringLiteral("no source"));
        QCOMPARE(TemperatureIn({}), QStringLiteral("no source"));
        QCOMPARE(TemperatureIn(QByteArray(4740, '\0')), QStringLiteral("no source"));
        QCOMPARE(TemperatureIn(QByteArray(4740, '\xff')), QStringLiteral("no source"));
    }

    void ProgramComesGoesAndComesBack() {
        std::optional<CoreTempCopy> copy;
        CoreTempSource source([&copy] { return copy; });
        QCOMPARE(source.Id(), SourceId::CoreTemp);
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("no source, no source, no source"));
        copy = CoreTempCopy{CoreTempBytes().bytes, false};
        QCOMPARE(Temperature(source, At(1)), QStringLiteral("57.5"));
        copy.reset();
        QCOMPARE(Temperature(source, At(2)), QStringLiteral("not running"));
        copy = CoreTempCopy{CoreTempBytes().bytes, false};
        QCOMPARE(Temperature(source, At(3)), QStringLiteral("57.5"));
    }

    void WhileItWritesTheLastValuesStand() {
        std::optional<CoreTempCopy> copy = CoreTempCopy{{}, true};
        CoreTempSource source([&copy] { return copy; });
        QCOMPARE(Temperature(source, At(0)), QStringLiteral("not read"));
        copy = CoreTempCopy{CoreTempBytes().bytes, false};
        QCOMPARE(Temperature(source, At(1)), QStringLiteral("57.5"));
        copy = CoreTempCopy{{}, true};
        QCOMPARE(Temperature(source, At(2)), QStringLiteral("57.5 still"));
        QCOMPARE(Temperature(source, At(200)), QStringLiteral("57.5 still"));
        copy = CoreTempCopy{CoreTempBytes().bytes, false};
        QCOMPARE(Temperature(source, At(201)), QStringLiteral("57.5"));
    }
};

KIVO_APPLESS_TEST(TestCoreTempSource)
#include "tst_core_temp_source.moc"
