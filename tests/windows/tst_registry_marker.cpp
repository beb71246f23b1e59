// clang-format off
#include <windows.h>
// clang-format on

#include <QtTest>

#include "../config/forget_mark.h"
#include "config/first_run_marker.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr char kKeyPath[] = "Software\\Kivo Tool\\Kivo Config";
constexpr char kParentPath[] = "Software\\Kivo Tool";
constexpr char kValueName[] = "isInitialized";

void WriteMark(DWORD type, const QByteArray& bytes) {
    HKEY key = nullptr;
    QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, kKeyPath, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
             LSTATUS(ERROR_SUCCESS));
    // The system takes a zero that happens to follow a text along.
    const QByteArray followed = bytes + 'x';
    QCOMPARE(RegSetValueExA(key, kValueName, 0, type, reinterpret_cast<const BYTE*>(followed.constData()),
                            static_cast<DWORD>(bytes.size())),
             LSTATUS(ERROR_SUCCESS));
    RegCloseKey(key);
}

}  // namespace

// The mark of the first run in the registry, written by hand and by the program.
class TestRegistryMarker : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() { test::ForgetMark(); }
    void cleanupTestCase() { test::ForgetMark(); }

    void NoKeyIsAFirstRun() { QVERIFY(IsFirstRun()); }

    void KeyWithoutTheValueIsAFirstRun() {
        HKEY key = nullptr;
        QCOMPARE(
            RegCreateKeyExA(HKEY_CURRENT_USER, kKeyPath, 0, nullptr, 0, KEY_WRITE, nullptr, &key, nullptr),
            LSTATUS(ERROR_SUCCESS));
        RegCloseKey(key);
        QVERIFY(IsFirstRun());
    }

    void OnlyTheExactMarkCounts_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("isFirstRun");
        QTest::newRow("the mark") << int(REG_SZ) << QByteArray("true\0", 5) << false;
        QTest::newRow("capitals") << int(REG_SZ) << QByteArray("TRUE\0", 5) << true;
        QTest::newRow("a trailing blank") << int(REG_SZ) << QByteArray("true \0", 6) << true;
        QTest::newRow("a leading blank") << int(REG_SZ) << QByteArray(" true\0", 6) << true;
        QTest::newRow("an expandable text") << int(REG_EXPAND_SZ) << QByteArray("true\0", 5) << true;
        QTest::newRow("binary") << int(REG_BINARY) << QByteArray("true\0", 5) << true;
        QTest::newRow("a number") << int(REG_DWORD) << QByteArray("\1\0\0\0", 4) << true;
        QTest::newRow("no closing zero") << int(REG_SZ) << QByteArray("true", 4) << true;
        QTest::newRow("two closing zeros") << int(REG_SZ) << QByteArray("true\0\0", 6) << true;
        QTest::newRow("five other bytes") << int(REG_SZ) << QByteArray("truex", 5) << true;
        QTest::newRow("a list of texts") << int(REG_MULTI_SZ) << QByteArray("true\0", 5) << true;
        QTest::newRow("false") << int(REG_SZ) << QByteArray("false\0", 6) << true;
        QTest::newRow("an empty text") << int(REG_SZ) << QByteArray("\0", 1) << true;
        QTest::newRow("far too long") << int(REG_SZ) << QByteArray(5000, 't') + '\0' << true;
    }
    void OnlyTheExactMarkCounts() {
        QFETCH(int, type);
        QFETCH(QByteArray, bytes);
        WriteMark(static_cast<DWORD>(type), bytes);
        QTEST(IsFirstRun(), "isFirstRun");
    }

    void MarkingWritesFiveBytes() {
        QCOMPARE(MarkInitialized(), 0);
        QVERIFY(!IsFirstRun());
        HKEY key = nullptr;
        QCOMPARE(RegOpenKeyExA(HKEY_CURRENT_USER, kKeyPath, 0, KEY_READ, &key), LSTATUS(ERROR_SUCCESS));
        char bytes[100] = {};
        DWORD size = sizeof(bytes);
        DWORD type = 0;
        QCOMPARE(RegQueryValueExA(key, kValueName, nullptr, &type, reinterpret_cast<BYTE*>(bytes), &size),
                 LSTATUS(ERROR_SUCCESS));
        RegCloseKey(key);
        QCOMPARE(type, DWORD(REG_SZ));
        QCOMPARE(QByteArray(bytes, static_cast<int>(size)), QByteArray("true\0", 5));
    }

    // A key may only hold keys that last as long as itself: below a passing one none can be made to stay.
    void KeyThatCannotBeMadeGivesItsCode() {
        RegDeleteKeyA(HKEY_CURRENT_USER, kParentPath);
        HKEY passing = nullptr;
        QCOMPARE(RegCreateKeyExA(HKEY_CURRENT_USER, kParentPath, 0, nullptr, REG_OPTION_VOLATILE, KEY_WRITE,
                                 nullptr, &passing, nullptr),
                 LSTATUS(ERROR_SUCCESS));
        const qint32 code = MarkInitialized();
        RegCloseKey(passing);
        RegDeleteKeyA(HKEY_CURRENT_USER, kParentPath);
        QCOMPARE(code, qint32(ERROR_CHILD_MUST_BE_VOLATILE));
        QVERIFY(IsFirstRun());
    }

    void MarkingMendsAWrongMark() {
        WriteMark(REG_EXPAND_SZ, QByteArray("TRUE\0", 5));
        QCOMPARE(MarkInitialized(), 0);
        QVERIFY(!IsFirstRun());
    }
};

KIVO_GUILESS_TEST(TestRegistryMarker)
#include "tst_registry_marker.moc"
