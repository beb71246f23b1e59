// clang-format off
#include <windows.h>
// clang-format on

#include <QtTest>

#include "../telemetry/sensor_bytes.h"
#include "../telemetry/sensor_words.h"
#include "support/built_paths.h"
#include "support/test_program.h"
#include "telemetry/hwinfo_source.h"

using namespace kivo;
using namespace kivo::test;

namespace {

constexpr wchar_t kKey64[] = L"Software\\HWiNFO64";
constexpr wchar_t kValues64[] = L"Software\\HWiNFO64\\VSB";
constexpr wchar_t kKey32[] = L"Software\\HWiNFO32";
constexpr wchar_t kValues32[] = L"Software\\HWiNFO32\\VSB";

const wchar_t* Wide(const QString& text) {
    return reinterpret_cast<const wchar_t*>(text.utf16());
}

void Write(const wchar_t* path, const QString& name, DWORD type, const QByteArray& bytes) {
    HKEY key = nullptr;
    QCOMPARE(RegCreateKeyExW(HKEY_CURRENT_USER, path, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
             LSTATUS(ERROR_SUCCESS));
    const LSTATUS status =
        RegSetValueExW(key, Wide(name), 0, type, reinterpret_cast<const BYTE*>(bytes.constData()),
                       static_cast<DWORD>(bytes.size()));
    RegCloseKey(key);
    QCOMPARE(status, LSTATUS(ERROR_SUCCESS));
}

void WriteTexts(const wchar_t* path, const std::vector<NamedText>& values) {
    for (const NamedText& value : values) {
        Write(path, value.name, REG_SZ, Utf16Bytes(value.text + QChar(QChar::Null)));
    }
}

void Forget() {
    RegDeleteTreeW(HKEY_CURRENT_USER, kKey64);
    RegDeleteTreeW(HKEY_CURRENT_USER, kKey32);
}

QString SaidByRegistry() {
    return Said(ReadHwInfoValues(SystemHwInfo().values()));
}

constexpr char kMachine[] = "65.25, 46.9, 1234";
constexpr char kNothing[] = "no source, no source, no source";

}  // namespace

// What HWiNFO leaves in the registry, written by hand, and a program of its name.
class TestHwInfoRegistry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { Forget(); }
    void cleanupTestCase() { Forget(); }

    void NoKeyHasNoValues() { QVERIFY(SystemHwInfo().values().empty()); }

    void ValuesAreRead() {
        WriteTexts(kValues64, HwInfoOfAMachine());
        QCOMPARE(SaidByRegistry(), QString::fromLatin1(kMachine));
        QVERIFY(SystemHwInfo().values().size() == HwInfoOfAMachine().size());
    }

    void OlderSystemsHaveAnotherKey() {
        WriteTexts(kValues32, HwInfoOfAMachine());
        QCOMPARE(SaidByRegistry(), QString::fromLatin1(kMachine));
        // An empty key of the other hides nothing.
        Write(kKey64, QStringLiteral("x"), REG_SZ, {});
        HKEY key = nullptr;
        RegCreateKeyExW(HKEY_CURRENT_USER, kValues64, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr);
        RegCloseKey(key);
        QCOMPARE(SaidByRegistry(), QString::fromLatin1(kMachine));
    }

    void ValuesOfAnotherTypeAreNone_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("said");
        const QByteArray text = Utf16Bytes(QStringLiteral("47.5"));
        const QString none = QStringLiteral("no source, unbelievable, no source");
        const QString read = QStringLiteral("no source, 47.5, no source");
        const QByteArray zero(2, '\0');
        QTest::newRow("a text") << int(REG_SZ) << text + zero << read;
        QTest::newRow("no closing zero") << int(REG_SZ) << text << read;
        QTest::newRow("zeros at its end") << int(REG_SZ) << text + zero + zero + zero << read;
        QTest::newRow("text behind its zero") << int(REG_SZ) << text + zero + text << read;
        QTest::newRow("an odd number of bytes") << int(REG_SZ) << text + zero + 'x' << read;
        QTest::newRow("a number") << int(REG_DWORD) << QByteArray("\x2F\0\0\0", 4) << none;
        QTest::newRow("bytes") << int(REG_BINARY) << text + zero << none;
        QTest::newRow("a list of texts") << int(REG_MULTI_SZ) << text + zero + zero << none;
        QTest::newRow("an expandable text") << int(REG_EXPAND_SZ) << text + zero << none;
        QTest::newRow("an empty text") << int(REG_SZ) << zero << none;
        QTest::newRow("nothing") << int(REG_SZ) << QByteArray() << none;
        QTest::newRow("a megabyte") << int(REG_SZ) << QByteArray(1024 * 1024, '4') << none;
        QTest::newRow("noise") << int(REG_SZ) << QByteArray("\x00\xD8\xFF\xFF\x01\xDC", 6) << none;
    }
    void ValuesOfAnotherTypeAreNone() {
        QFETCH(int, type);
        QFETCH(QByteArray, bytes);
        std::vector<NamedText> values;
        AddHwInfo(values, 0, "CPU", "CPU Package", "46,9 °C", "");
        WriteTexts(kValues64, values);
        Write(kValues64, QStringLiteral("ValueRaw0"), static_cast<DWORD>(type), bytes);
        QTEST(SaidByRegistry(), "said");
    }

    void StrangeNamesHideNothing() {
        WriteTexts(kValues64, HwInfoOfAMachine());
        Write(kValues64, QString(), REG_SZ, Utf16Bytes(QStringLiteral("default")));
        Write(kValues64, QString(200, QLatin1Char('A')), REG_SZ, Utf16Bytes(QStringLiteral("long")));
        Write(kValues64, QStringLiteral("Label"), REG_SZ, Utf16Bytes(QStringLiteral("CPU Package")));
        QCOMPARE(SaidByRegistry(), QString::fromLatin1(kMachine));
    }

    // Values alone, whose program has ended, count for nothing.
    void ProgramIsFoundByItsName() {
        WriteTexts(kValues64, HwInfoOfAMachine());
        HwInfoSource source(SystemHwInfo());
        QCOMPARE(Said(source.Read(At(0))), QStringLiteral("not running, not running, not running"));

        const QTemporaryDir folder;
        const QString program = folder.filePath(QStringLiteral("HWiNFO64.EXE"));
        QVERIFY(QFile::copy(TestHelper("thermal_stand_in"), program));
        QProcess process;
        process.start(program, {QStringLiteral("hang")});
        QVERIFY(process.waitForStarted());
        QTRY_VERIFY(SystemHwInfo().isRunning());
        QCOMPARE(Said(source.Read(At(5))), QString::fromLatin1(kMachine));
        process.kill();
        QVERIFY(process.waitForFinished());
        QTRY_VERIFY(!SystemHwInfo().isRunning());
        QCOMPARE(Said(source.Read(At(10))), QStringLiteral("not running, not running, not running"));
        Forget();
        QCOMPARE(Said(source.Read(At(15))), QString::fromLatin1(kNothing));
    }
};

KIVO_GUILESS_TEST(TestHwInfoRegistry)
#include "tst_hwinfo_registry.moc"
