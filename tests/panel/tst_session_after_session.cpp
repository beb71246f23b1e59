#include <QtTest>

#include "compose/panel_text.h"
#include "config/folders.h"
#include "resources/resources.h"
#include "support/built_paths.h"
#include "support/session_start.h"
#include "support/test_program.h"
#include "virtualscreen/virtual_hid_api.h"

using namespace kivo;
using namespace kivo::test;

// What a session knows of its panel from the one before it, and what it owes it therefore.
class TestSessionAfterSession : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void FrameMadeWithoutAScreenIsOwed();
    void KnownPanelGetsNoFrameAtTheNextStart();
    void PanelWithoutARecordGetsItsFrame_data();
    void PanelWithoutARecordGetsItsFrame();
    void SoftwarePanelGetsItsFrameInEachProcess();
    void SoftwarePanelPaysNothingThatTheRealOneIsOwed();

private:
    ScreenState m_state;
};

namespace {

const QString kBin = ProgramFolder();
}  // namespace

void TestSessionAfterSession::initTestCase() {
    InitResources();
    InstallFontSubstitutes();
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestSessionAfterSession::init() {
    QVERIFY(QDir(SettingsFolder()).removeRecursively());
    QVERIFY(QDir(WorkingFolder()).removeRecursively());
    m_state = LoadState(kBin, InterfaceLanguage::English);
}

void TestSessionAfterSession::FrameMadeWithoutAScreenIsOwed() {
    VirtualHidApi panel;
    panel.Unplug();
    {
        LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
        QSignalSpy done(&session, &LiveSession::uploadDone);
        Open(session, m_state);
        session.SetChosen(InPortrait(m_state));
        session.StartUpload();
        QVERIFY(done.wait(kPatienceMs));
        QVERIFY(!done.takeFirst().first().toBool());
        QVERIFY(session.Status().isFrameOwed);
        QVERIFY(session.Status().condition == PanelCondition::NoScreen);
    }
    // The next process owes it too, and sends it by itself.
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, InPortrait(m_state));
    session.StartRefresh();
    panel.Plug();
    session.OpenScreen();
    QTRY_COMPARE(Frames(panel), quint64(1));
    QTRY_VERIFY(!session.Status().isFrameOwed);
    QTRY_COMPARE(panel.State().orientation, std::optional<int>(2));
}

void TestSessionAfterSession::KnownPanelGetsNoFrameAtTheNextStart() {
    VirtualHidApi panel;
    {
        LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
        Open(session, m_state);
        session.StartRefresh();
        QTRY_COMPARE(Frames(panel), quint64(1));
        QTRY_VERIFY(panel.State().counts.areas > 0);
    }
    const PanelCounts before = panel.State().counts;
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, m_state);
    session.StartRefresh();
    // Values, orientation and clock are sent all the same.
    QTRY_VERIFY(panel.State().counts.areas >= before.areas + 7);
    QVERIFY(session.Stop());
    QCOMPARE(Frames(panel), quint64(1));
    QVERIFY(session.Status().condition == PanelCondition::Connected);
}

void TestSessionAfterSession::PanelWithoutARecordGetsItsFrame_data() {
    QTest::addColumn<QString>("loss");
    QTest::newRow("no record") << "no record";
    QTest::newRow("damaged record") << "damaged record";
    QTest::newRow("another panel") << "another panel";
    QTest::newRow("other settings") << "other settings";
    QTest::newRow("mark of version 1.0") << "mark";
}

void TestSessionAfterSession::PanelWithoutARecordGetsItsFrame() {
    QFETCH(QString, loss);
    VirtualHidApi panel;
    {
        LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
        Open(session, m_state);
        session.StartRefresh();
        QTRY_COMPARE(Frames(panel), quint64(1));
        QTRY_VERIFY(panel.State().counts.areas > 0);
    }
    ScreenState state = m_state;
    QFile record(WorkingFolder() + QStringLiteral("/whole.state"));
    QFile mark(WorkingFolder() + QStringLiteral("/whole.pending"));
    if (loss == QLatin1String("damaged record")) {
        QVERIFY(record.open(QIODevice::ReadWrite) && record.resize(20));
    } else if (loss == QLatin1String("another panel")) {
        panel.Unplug();
        panel.SetPanelKey("another one");
        panel.Plug();
    } else if (loss == QLatin1String("other settings")) {
        state = InPortrait(m_state);
    } else if (loss == QLatin1String("mark")) {
        // That version has been started in between, and the record is from before.
        QVERIFY(mark.open(QIODevice::WriteOnly));
    } else {
        QVERIFY(record.remove());
    }
    record.close();
    mark.close();
    LiveSession session(panel, InterfaceLanguage::English, kShortPauses);
    Open(session, state);
    session.StartRefresh();
    QTRY_COMPARE(Frames(panel), quint64(2));
    QTRY_VERIFY(!session.Status().isFrameOwed);
    QVERIFY(session.Applied() == state);
    QVERIFY(!QFile::exists(mark.fileName()));
}

void TestSessionAfterSession::SoftwarePanelGetsItsFrameInEachProcess() {
    for (int process = 0; process < 2; ++process) {
        VirtualHidApi panel;
        LiveSession session(panel, InterfaceLanguage::English, kSoftwarePanel);
        Open(session, m_state);
        session.StartRefresh();
        QTRY_VERIFY(panel.State().counts.areas > 0);
        QCOMPARE(Frames(panel), quint64(1));
        QVERIFY(session.Status().isSoftwarePanel);
    }
}

void TestSessionAfterSession::SoftwarePanelPaysNothingThatTheRealOneIsOwed() {
    VirtualHidApi real;
    {
        LiveSession session(real, InterfaceLanguage::English, kShortPauses);
        Open(session, m_state);
        session.StartRefresh();
        QTRY_COMPARE(Frames(real), quint64(1));
        QTRY_VERIFY(real.State().counts.areas > 0);
    }
    {
        VirtualHidApi software;
        LiveSession session(software, InterfaceLanguage::English, kSoftwarePanel);
        QSignalSpy done(&session, &LiveSession::uploadDone);
        Open(session, m_state);
        session.SetChosen(InPortrait(m_state));
        session.StartUpload();
        QVERIFY(done.wait(kPatienceMs));
        QCOMPARE(Frames(software), quint64(1));
    }
    LiveSession session(real, InterfaceLanguage::English, kShortPauses);
    Open(session, InPortrait(m_state));
    session.StartRefresh();
    QTRY_COMPARE(Frames(real), quint64(2));
    QTRY_COMPARE(real.State().orientation, std::optional<int>(2));
}

KIVO_TEST(TestSessionAfterSession)
#include "tst_session_after_session.moc"
