#include <QSettings>
#include <QtTest>

#include "device/screen_session.h"
#include "recording_hid_api.h"
#include "support/test_program.h"

using namespace kivo;

namespace {

QStringList* g_messages = nullptr;

void CollectMessage(QtMsgType type, const QMessageLogContext& /*context*/, const QString& text) {
    if (type == QtDebugMsg) {
        g_messages->append(text);
    }
}

// What is logged at debug level during its life.
class DebugLog {
public:
    DebugLog() {
        g_messages = &m_messages;
        m_former = qInstallMessageHandler(CollectMessage);
    }
    ~DebugLog() {
        qInstallMessageHandler(m_former);
        g_messages = nullptr;
    }
    DebugLog(const DebugLog&) = delete;
    DebugLog& operator=(const DebugLog&) = delete;

    const QStringList& Messages() const { return m_messages; }

private:
    QStringList m_messages;
    QtMessageHandler m_former;
};

QByteArray DataPath(const ScreenSession& session) {
    return TextOf(session.Entry(0).dataPath);
}
QByteArray ControlPath(const ScreenSession& session) {
    return TextOf(session.Entry(0).controlPath);
}

}  // namespace

class TestScreenSession : public QObject {
    Q_OBJECT

private slots:
    void initFillsTheTable() {
        RecordingHidApi api;
        ScreenSession session(api);
        QCOMPARE(session.EntryCount(), 0U);
        session.InitDeviceTable();
        QCOMPARE(session.EntryCount(), 1U);
        QCOMPARE(TextOf(session.Entry(0).name), QByteArray("Kivo Screen"));
        QCOMPARE(session.Entry(1).vendorId, 0U);
    }

    void initForgetsPaths() {
        RecordingHidApi api;
        api.devices = {ControlCollection("c"), DataCollection("d")};
        ScreenSession session(api);
        session.InitDeviceTable();
        session.EnumerateScreens();
        session.InitDeviceTable();
        QCOMPARE(DataPath(session), QByteArray());
        QCOMPARE(session.Entry(0).dataFound, 0U);
    }

    void theFileBesideTheProgramHasNoSay() {
        const QString path = QCoreApplication::applicationDirPath() + QLatin1String("/Default.ini");
        {
            QSettings file(path, QSettings::IniFormat);
            file.setValue(QStringLiteral("vendorId"), 1);
        }
        const auto remove = qScopeGuard([&path] { QFile::remove(path); });
        const QByteArray before = [&path] {
            QFile file(path);
            return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
        }();
        RecordingHidApi api;
        ScreenSession session(api);
        session.InitDeviceTable();
        QCOMPARE(session.Entry(0).vendorId, 0x04D9U);
        QFile file(path);
        QVERIFY(file.open(QIODevice::ReadOnly));
        QCOMPARE(file.readAll(), before);
    }

    void theFileIsNotMade() {
        RecordingHidApi api;
        ScreenSession session(api);
        session.InitDeviceTable();
        QVERIFY(!QFile::exists(QCoreApplication::applicationDirPath() + QLatin1String("/Default.ini")));
    }

    void enumerationFindsBothPaths() {
        RecordingHidApi api;
        api.devices = {ControlCollection("c"), Collection("other", 0x0001, 6, 2), DataCollection("d")};
        ScreenSession session(api);
        session.InitDeviceTable();
        QCOMPARE(session.EnumerateScreens(), 0);
        QCOMPARE(ControlPath(session), QByteArray("c"));
        QCOMPARE(DataPath(session), QByteArray("d"));
        QCOMPARE(api.misuses, 0);
    }

    void enumerationFailsWithTheLibrary() {
        RecordingHidApi api;
        api.devices = {DataCollection("d")};
        api.initResult = -1;
        ScreenSession session(api);
        session.InitDeviceTable();
        QCOMPARE(session.EnumerateScreens(), -1);
        QCOMPARE(session.Entry(0).dataFound, 0U);
    }

    void anyInitialisingResultButZeroIsAFailure() {
        RecordingHidApi api;
        api.initResult = 1;
        ScreenSession session(api);
        session.InitDeviceTable();
        QCOMPARE(session.EnumerateScreens(), -1);
    }

    void enumerationBeforeInitFindsNothing() {
        RecordingHidApi api;
        api.devices = {DataCollection("d")};
        ScreenSession session(api);
        QCOMPARE(session.EnumerateScreens(), 0);
        QCOMPARE(session.EntryCount(), 0U);
    }

    void ofTwoScreensTheLastOneWins() {
        RecordingHidApi api;
        api.devices = {ControlCollection("c1"), DataCollection("d1"), ControlCollection("c2"),
                       DataCollection("d2")};
        ScreenSession session(api);
        session.InitDeviceTable();
        session.EnumerateScreens();
        QCOMPARE(ControlPath(session), QByteArray("c2"));
        QCOMPARE(DataPath(session), QByteArray("d2"));
    }

    void anAbsentScreenKeepsItsPaths() {
        RecordingHidApi api;
        api.devices = {ControlCollection("c"), DataCollection("d")};
        ScreenSession session(api);
        session.InitDeviceTable();
        session.EnumerateScreens();
        api.devices.clear();
        QCOMPARE(session.EnumerateScreens(), 0);
        QCOMPARE(DataPath(session), QByteArray("d"));
        QCOMPARE(session.Entry(0).dataFound, 1U);
    }

    void everyCollectionOfAScreenIsLogged() {
        RecordingHidApi api;
        HidDeviceInfo stranger = DataCollection("stranger");
        stranger.vendorId = 1;
        HidDeviceInfo screen = DataCollection("/dev/hidraw3");
        screen.manufacturer = QStringLiteral("Größe");
        screen.product = QString();
        api.devices = {stranger, screen};
        ScreenSession session(api);
        session.InitDeviceTable();
        const DebugLog log;
        session.EnumerateScreens();
        const QStringList expected{QStringLiteral("type: 4d9 fd01\n"),
                                   QStringLiteral("path: /dev/hidraw3\n"),
                                   QStringLiteral("usge 1 uu ffa0\n"),
                                   QStringLiteral("Manufacturer: Größe\n"),
                                   QStringLiteral("Product:      \n"),
                                   QStringLiteral("Release:      107\n"),
                                   QStringLiteral("Interface:    1\n"),
                                   QStringLiteral("\n"),
                                   QStringLiteral("\n")};
        QCOMPARE(log.Messages(), expected);
    }

    void opensByName() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName("Kivo Screen");
        QVERIFY(session.controlHandle());
        QVERIFY(session.dataHandle());
        QCOMPARE(api.opened, (std::vector<QByteArray>{"c", "d"}));
    }

    void opensNothing_data() {
        QTest::addColumn<QByteArray>("name");
        QTest::newRow("first byte differs") << QByteArray("kivo Screen");
        QTest::newRow("last byte differs") << QByteArray("Kivo Screem");
        QTest::newRow("one byte more") << QByteArray("Kivo Screen ");
        QTest::newRow("one byte less") << QByteArray("Kivo Scree");
        QTest::newRow("a zero byte more") << QByteArray("Kivo Screen\0", 12);
        QTest::newRow("empty") << QByteArray();
        QTest::newRow("a translated title") << QByteArray("Kivo 屏幕");
    }

    void opensNothing() {
        QFETCH(QByteArray, name);
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName(name);
        QVERIFY(api.opened.empty());
        QVERIFY(!session.dataHandle());
    }

    void opensNothingThatWasNotFound() {
        RecordingHidApi api;
        api.devices = {ControlCollection("c")};
        ScreenSession session(api);
        session.InitDeviceTable();
        session.EnumerateScreens();
        const DebugLog log;
        session.OpenScreenByName("Kivo Screen");
        QVERIFY(api.opened.empty());
        QVERIFY(log.Messages().isEmpty());
    }

    void opensNothingWithoutTheLibrary() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        api.initResult = -1;
        session.OpenScreenByName("Kivo Screen");
        QCOMPARE(session.OpenScreenById(0x04D9, 0xFD01), nullptr);
        QVERIFY(api.opened.empty());
    }

    void opensNothingWithAnEmptyTable() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.ChangeTable([](ScreenDeviceTable& table) { table.count = 0; });
        session.OpenScreenByName("Kivo Screen");
        QVERIFY(api.opened.empty());
    }

    void whatCannotBeOpenedIsNullAndNotLogged() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        api.refusesOpen = [](const QByteArray& path) { return path == "d"; };
        const DebugLog log;
        session.OpenScreenByName("Kivo Screen");
        QVERIFY(session.controlHandle());
        QVERIFY(!session.dataHandle());
        QVERIFY(log.Messages().isEmpty());
    }

    void openingAgainClosesTheFormerHandles() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName("Kivo Screen");
        session.OpenScreenByName("Kivo Screen");
        QCOMPARE(api.OpenPaths(), (std::vector<QByteArray>{"c", "d"}));
        QCOMPARE(api.closed, (std::vector<QByteArray>{"c", "d"}));
    }

    void aFailedOpeningClosesTheFormerHandles() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName("Kivo Screen");
        api.refusesOpen = [](const QByteArray& /*path*/) { return true; };
        session.OpenScreenByName("Kivo Screen");
        QCOMPARE(api.OpenCount(), 0);
        QVERIFY(!session.controlHandle());
    }

    void ofTwoEntriesOfOneNameTheLastStaysOpen() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.ChangeTable([](ScreenDeviceTable& table) {
            table.count = 2;
            table.entries.at(1) = table.entries.at(0);
            SetText(table.entries.at(1).controlPath, "c2");
            SetText(table.entries.at(1).dataPath, "d2");
        });
        session.OpenScreenByName("Kivo Screen");
        QCOMPARE(api.OpenPaths(), (std::vector<QByteArray>{"c2", "d2"}));
    }

    void closesBothHandles() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName("Kivo Screen");
        session.CloseScreen();
        QCOMPARE(api.OpenCount(), 0);
        QVERIFY(!session.controlHandle());
        QVERIFY(!session.dataHandle());
    }

    void closesNothingWhileTheDataHandleIsNull() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName("Kivo Screen");
        session.OpenForTransfer().reset();
        session.CloseScreen();
        QVERIFY(session.controlHandle());
        QCOMPARE(api.OpenPaths(), (std::vector<QByteArray>{"c"}));
    }

    void closesWithoutAControlHandle() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        api.refusesOpen = [](const QByteArray& path) { return path == "c"; };
        session.OpenScreenByName("Kivo Screen");
        session.CloseScreen();
        QCOMPARE(api.OpenCount(), 0);
        QCOMPARE(api.misuses, 0);
    }

    void aWriterKeepsItsHandleThroughAClosing() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName("Kivo Screen");
        SharedScreenHandle writer = session.dataHandle();
        session.CloseScreen();
        QCOMPARE(api.OpenPaths(), (std::vector<QByteArray>{"d"}));
        const quint8 byte = 0;
        QCOMPARE(writer->Write(&byte, 1), 1);
        writer.reset();
        QCOMPARE(api.OpenCount(), 0);
        QCOMPARE(api.misuses, 0);
    }

    void opensById() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        const SharedScreenHandle handle = session.OpenScreenById(0x04D9, 0xFD01);
        QVERIFY(handle);
        QCOMPARE(handle, session.dataHandle());
        QCOMPARE(handle->Path(), QByteArray("d"));
        QVERIFY(session.controlHandle());
    }

    void opensNothingByAnotherId() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        QCOMPARE(session.OpenScreenById(0x04D9, 0xFD02), nullptr);
        QCOMPARE(session.OpenScreenById(0x04D8, 0xFD01), nullptr);
        QVERIFY(api.opened.empty());
    }

    void releaseNumberIsThatOfTheDevice() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName("Kivo Screen");
        QCOMPARE(session.GetReleaseNumber(session.dataHandle()), std::optional<quint16>(0x0107));
        QCOMPARE(session.GetReleaseNumber(nullptr), std::nullopt);
        api.devices.clear();
        QCOMPARE(session.GetReleaseNumber(session.dataHandle()), std::nullopt);
    }

    void exitGivesTheLibrarysResult() {
        RecordingHidApi api;
        ScreenSession session(api);
        QCOMPARE(session.ExitHid(), 0);
        api.exitResult = -1;
        QCOMPARE(session.ExitHid(), -1);
    }

    void aTransferHasAHandleOfItsOwn() {
        RecordingHidApi api;
        ScreenSession session(api);
        FindScreen(api, session);
        session.OpenScreenByName("Kivo Screen");
        const SharedScreenHandle first = session.OpenForTransfer();
        const SharedScreenHandle second = session.OpenForTransfer();
        QVERIFY(first);
        QVERIFY(second);
        QVERIFY(first != second);
        QVERIFY(!session.dataHandle());
        // The session's own data handle is gone, both transfers' are there.
        QCOMPARE(api.OpenPaths(), (std::vector<QByteArray>{"c", "d", "d"}));
    }

    void theEndLeavesNoHandleOpen() {
        RecordingHidApi api;
        {
            ScreenSession session(api);
            FindScreen(api, session);
            session.OpenScreenByName("Kivo Screen");
        }
        QCOMPARE(api.OpenCount(), 0);
    }

    void changingTheTableMayOpenTheScreen() {
        RecordingHidApi api;
        ScreenSession session(api);
        session.InitDeviceTable();
        session.ChangeTable([&session](ScreenDeviceTable& table) {
            SetText(table.entries.at(0).dataPath, "arrived");
            table.entries.at(0).dataFound = 1;
            session.OpenScreenByName("Kivo Screen");
        });
        QCOMPARE(session.dataHandle()->Path(), QByteArray("arrived"));
    }

private:
    static void FindScreen(RecordingHidApi& api, ScreenSession& session) {
        api.devices = {ControlCollection("c"), DataCollection("d")};
        session.InitDeviceTable();
        const DebugLog quiet;
        session.EnumerateScreens();
    }
};

KIVO_GUILESS_TEST(TestScreenSession)
#include "tst_screen_session.moc"
