#ifndef NOMINMAX
#define NOMINMAX
#endif
#include <windows.h>

#include <QtTest>

#include "session/autostart.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

constexpr wchar_t kRunKey[] = L"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
constexpr wchar_t kApprovedKey[] =
    L"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\StartupApproved\\Run";
constexpr wchar_t kName[] = L"Kivo Screen";
constexpr wchar_t kNeighbour[] = L"Another program";

bool Has(const wchar_t* key, const wchar_t* name) {
    return RegGetValueW(HKEY_CURRENT_USER, key, name, RRF_RT_ANY, nullptr, nullptr, nullptr) == ERROR_SUCCESS;
}

void Write(const wchar_t* key, const wchar_t* name, DWORD type, const QByteArray& bytes) {
    QCOMPARE(RegSetKeyValueW(HKEY_CURRENT_USER, key, name, type, bytes.constData(),
                             static_cast<DWORD>(bytes.size())),
             LSTATUS(ERROR_SUCCESS));
}

}  // namespace

// The Run key, and where the task manager and the system's settings switch its entries off.
class TestAutostartRegistry : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void init() {
        QCOMPARE(SetStartsAtLogin(false), QString());
        RegDeleteKeyValueW(HKEY_CURRENT_USER, kApprovedKey, kName);
    }
    void cleanupTestCase() { init(); }

    void SwitchedOffBySystem_data() {
        QTest::addColumn<int>("type");
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<bool>("starts");
        const QByteArray rest(11, '\0');
        QTest::newRow("on") << int(REG_BINARY) << '\x02' + rest << true;
        QTest::newRow("off") << int(REG_BINARY) << '\x03' + rest << false;
        QTest::newRow("off, with its time")
            << int(REG_BINARY) << QByteArray("\x03\0\0\0\x12\x34\x56\x78\x9a\xbc\xda\x01", 12) << false;
        QTest::newRow("on, the other way") << int(REG_BINARY) << '\x06' + rest << true;
        QTest::newRow("off, the other way") << int(REG_BINARY) << '\x07' + rest << false;
        QTest::newRow("nothing in it") << int(REG_BINARY) << QByteArray() << true;
        QTest::newRow("far too long") << int(REG_BINARY) << QByteArray(500, '\x03') << true;
        QTest::newRow("a text") << int(REG_SZ) << QByteArray("3\0\0\0", 4) << true;
    }
    void SwitchedOffBySystem() {
        QFETCH(int, type);
        QFETCH(QByteArray, bytes);
        QCOMPARE(SetStartsAtLogin(true), QString());
        Write(kApprovedKey, kName, static_cast<DWORD>(type), bytes);
        QTEST(StartsAtLogin(), "starts");
    }

    void OnIsOnAgain() {
        QCOMPARE(SetStartsAtLogin(true), QString());
        Write(kApprovedKey, kName, REG_BINARY, '\x03' + QByteArray(11, '\0'));
        QVERIFY(!StartsAtLogin());
        QCOMPARE(SetStartsAtLogin(true), QString());
        QVERIFY(StartsAtLogin());
        QVERIFY(!Has(kApprovedKey, kName));
    }

    void OffLeavesNothingButTheNeighbours() {
        QCOMPARE(SetStartsAtLogin(true), QString());
        Write(kApprovedKey, kName, REG_BINARY, '\x03' + QByteArray(11, '\0'));
        Write(kApprovedKey, kNeighbour, REG_BINARY, '\x03' + QByteArray(11, '\0'));
        Write(kRunKey, kNeighbour, REG_SZ, QByteArray("a\0\0\0", 4));
        QCOMPARE(SetStartsAtLogin(false), QString());
        QVERIFY(!Has(kRunKey, kName));
        QVERIFY(!Has(kApprovedKey, kName));
        QVERIFY(Has(kRunKey, kNeighbour));
        QVERIFY(Has(kApprovedKey, kNeighbour));
        RegDeleteKeyValueW(HKEY_CURRENT_USER, kRunKey, kNeighbour);
        RegDeleteKeyValueW(HKEY_CURRENT_USER, kApprovedKey, kNeighbour);
    }

    void OffClearsWhatAnEarlierEntryLeft() {
        Write(kApprovedKey, kName, REG_BINARY, '\x03' + QByteArray(11, '\0'));
        QCOMPARE(SetStartsAtLogin(false), QString());
        QVERIFY(!Has(kApprovedKey, kName));
    }
};

KIVO_GUILESS_TEST(TestAutostartRegistry)
#include "tst_autostart_registry.moc"
