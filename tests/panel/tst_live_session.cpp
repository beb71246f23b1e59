#include <QtTest>

#include "compose/panel_text.h"
#include "config/folders.h"
#include "resources/resources.h"
#include "support/built_paths.h"
#include "support/forwarding_hid_api.h"
#include "support/session_start.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;
using namespace kivo::test;

// The whole way from counter to panel, without the process around it.
class TestLiveSession : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void OnlyItsNameOpensTheScreen();
    void ClockIsSetWhileNoEventIsHandled();
    void FirstFrameThenLiveValues();
    void ScreenThatVanishesInTheFrame_data();
    void ScreenThatVanishesInTheFrame();
    void EndsWhileTheFirstFrameIsOnItsWay();
    void DoesNotWaitForAScreenThatHangs();
    void SettingsAreSeededOnce();
    void NoiseInTheSettingsStillGivesAPicture_data();
    void NoiseInTheSettingsStillGivesAPicture();
};

namespace {

const QString kBin = ProgramFolder();

bool WriteFile(const QString& path, const QByteArray& bytes) {
    QFile file(path);
    return file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size();
}

int PixelsThatDiffer(const QImage& a, const QImage& b) {
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x) {
            count += a.pixel(x, y) != b.pixel(x, y) ? 1 : 0;
        }
    }
    return count;
}

}  // namespace

void TestLiveSession::initTestCase() {
    InitResources();
    InstallFontSubstitutes();
    // Threads and settings log freely here; what matters is looked at directly.
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestLiveSession::init() {
    QVERIFY(QDir(SettingsFolder()).removeRecursively());
    QVERIFY(QDir(WorkingFolder()).removeRecursively());
}

void TestLiveSession::OnlyItsNameOpensTheScreen() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    session.OpenScreen("Kivo Bildschirm");
    QTRY_COMPARE(int(session.Screen().Entry(0).dataFound), 1);
    // Changes are handled after the opening.
    QSignalSpy handled(&session, &LiveSession::screenChanged);
    session.HandleScreenChange({QStringLiteral("HID#VID_046D&PID_C31C&MI_01#8"), true}, false,
                               ArrivalPath::Enumeration);
    QVERIFY(handled.wait(20000));
    QVERIFY(session.Screen().controlHandle() == nullptr);
    session.OpenScreen("Kivo Screen");
    QTRY_VERIFY(session.Screen().controlHandle() != nullptr);
}

// The window is being built meanwhile.
void TestLiveSession::ClockIsSetWhileNoEventIsHandled() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    session.OpenScreen();
    QDeadlineTimer patience(20000);
    while (!panel.State().clock && !patience.hasExpired()) {
        QThread::msleep(1);
    }
    QVERIFY(panel.State().clock.has_value());
}

void TestLiveSession::FirstFrameThenLiveValues() {
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    StartWithFrame(session, LoadState(kBin, InterfaceLanguage::English));
    QVERIFY(done.wait(20000));
    QVERIFY(done.first().first().toBool());
    PanelState state = panel.State();
    QCOMPARE(state.counts.frames, quint64(1));
    QCOMPARE(state.orientation, std::optional<int>(1));
    QVERIFY(state.shownTime.has_value());
    const QImage first = state.image;

    QTRY_VERIFY(panel.State().counts.areas >= 7);
    session.Stop();
    state = panel.State();
    QCOMPARE(state.counts.errors, quint64(0));
    const ItemTexts texts = session.ShownTexts();
    QVERIFY(texts[Time].contains(QLatin1Char(':')));
    QVERIFY(texts[MemoryUsage].endsWith(QLatin1Char('%')));
    // Live values stand where the first frame had them: the rest of the picture has not changed.
    QVERIFY(PixelsThatDiffer(first, state.image) < 3000);
    QVERIFY(QFile::exists(WorkingFolder() + QStringLiteral("/whole.png")));
    QCOMPARE(panel.OpenHandles(), 1);  // the control handle; every transfer closes what it opened
}

void TestLiveSession::ScreenThatVanishesInTheFrame_data() {
    QTest::addColumn<quint64>("report");
    // Report 1 is the time that start-up sends.
    for (quint64 chunk = 1; chunk <= 27; ++chunk) {
        QTest::addRow("chunk %d", int(chunk)) << chunk + 1;
    }
}

void TestLiveSession::ScreenThatVanishesInTheFrame() {
    QFETCH(quint64, report);
    VirtualHidApi panel;
    panel.VanishAtReport(report);
    LiveSession session(panel, InterfaceLanguage::Chinese, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    StartWithFrame(session, LoadState(kBin, InterfaceLanguage::Chinese));
    QVERIFY(done.wait(20000));
    QVERIFY(!done.first().first().toBool());
    QCOMPARE(panel.State().counts.frames, quint64(0));
    // It comes back, and live values go on.
    panel.ClearFaults();
    panel.Plug();
    QTRY_VERIFY(panel.State().counts.areas > 0);
    session.Stop();
    QCOMPARE(panel.State().counts.errors, quint64(0));
}

void TestLiveSession::EndsWhileTheFirstFrameIsOnItsWay() {
    VirtualHidApi panel;
    {
        LiveSession session(panel, InterfaceLanguage::Chinese,
                            {LiveSession::PanelKind::Real, std::chrono::seconds(1), ReadFramePicture});
        StartWithFrame(session, LoadState(kBin, InterfaceLanguage::Chinese));
    }
    // It was asked to stop before it had measured the load.
    QCOMPARE(panel.State().counts.frames, quint64(0));
    QCOMPARE(panel.OpenHandles(), 0);
}

void TestLiveSession::DoesNotWaitForAScreenThatHangs() {
    VirtualHidApi panel;
    HangingHidApi hid(panel);
    LiveSession session(hid, InterfaceLanguage::Chinese, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    StartWithFrame(session, LoadState(kBin, InterfaceLanguage::Chinese));
    QVERIFY(done.wait(20000));
    hid.hang = true;
    QVERIFY(hid.entered.tryAcquire(1, 10000));
    QVERIFY(!session.Stop());
    hid.hang = false;
    hid.letGo.release();
    QTRY_VERIFY(session.Stop());
}

void TestLiveSession::SettingsAreSeededOnce() {
    VirtualHidApi panel;
    LoadState(kBin, InterfaceLanguage::Chinese);
    QVERIFY(QFile::exists(ConfigFilePath()));
    QVERIFY(QFile::exists(SettingsFolder() + QStringLiteral("/whole.png")));
    // What is changed later stays.
    QSettings(ConfigFilePath(), QSettings::IniFormat).setValue(QStringLiteral("Config/Hor"), 1);
    LiveSession session(panel, InterfaceLanguage::Chinese, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    StartWithFrame(session, LoadState(kBin, InterfaceLanguage::Chinese));
    QVERIFY(done.wait(20000));
    session.Stop();
    QCOMPARE(panel.State().orientation, std::optional<int>(2));
}

void TestLiveSession::NoiseInTheSettingsStillGivesAPicture_data() {
    QTest::addColumn<QByteArray>("config");
    QByteArray random;
    QRandomGenerator generator(4711);
    for (int k = 0; k < 20000; ++k) {
        random.append(char(generator.bounded(256)));
    }
    QTest::newRow("random bytes") << random;
    QTest::newRow("empty") << QByteArray();
    QTest::newRow("an item far off the panel")
        << QByteArray("[H1]\nShow_3=1\nShowStringRect_3=@Rect(5000 5000 60 20)\nhighlight=3\n");
    QTest::newRow("an item as large as the panel") << QByteArray(
        "[H1]\nShow_0=1\nShow_3=1\nShowStringRect_3=@Rect(0 0 320 170)\n"
        "ShowStringRect_0=@Rect(0 0 320 170)\nhighlight=3\n");
    QTest::newRow("numbers out of range")
        << QByteArray("[Config]\nMode=-7\nThemeID=99\nHor=12\nStyle=2147483647\nCurRectID=-4\n");
    QTest::newRow("a custom layout of nonsense") << QByteArray(
        "[Config]\nMode=1\n[CustomShow]\n0-0=77\n0-1=-5\n0-2=3\n0-3=abc\n0-4=3\n[CUSTOM0]\nSize=9\n"
        "Color=-1\nStringD1=text\nShow_7=1\nStringPixmap=/dev/null\n");
    QTest::newRow("a folder as picture") << QByteArray("[H1]\nShow_3=1\nStringPixmap=/usr\n");
}

void TestLiveSession::NoiseInTheSettingsStillGivesAPicture() {
    QFETCH(QByteArray, config);
    // The mark of an earlier run, or the file would be replaced.
    LoadState(kBin, InterfaceLanguage::Russian);
    QVERIFY(WriteFile(ConfigFilePath(), config));
    VirtualHidApi panel;
    LiveSession session(panel, InterfaceLanguage::Russian, kShortPauses);
    QSignalSpy done(&session, &LiveSession::uploadDone);
    StartWithFrame(session, LoadState(kBin, InterfaceLanguage::Russian));
    QVERIFY(done.wait(20000));
    QVERIFY(done.first().first().toBool());
    QTRY_VERIFY(panel.State().counts.commands >= 6);
    session.Stop();
    QCOMPARE(panel.State().counts.errors, quint64(0));
    QCOMPARE(panel.State().counts.frames, quint64(1));
}

KIVO_TEST(TestLiveSession)
#include "tst_live_session.moc"
