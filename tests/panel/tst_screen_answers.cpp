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

namespace {

const QString kBin = ProgramFolder();

// Counts what is asked of a panel, and what it takes; may refuse one chunk of every frame.
class CountingHidApi final : public ForwardingHidApi {
public:
    using ForwardingHidApi::ForwardingHidApi;
    HidHandle* OpenPath(const QByteArray& path) override {
        ++opens;
        return ForwardingHidApi::OpenPath(path);
    }
    int Write(HidHandle* handle, const quint8* data, std::size_t length) override {
        PanelReport report;
        {
            const std::lock_guard<std::mutex> lock(m_mutex);
            report = m_decoder.Decode(data, length);
        }
        const bool isChunk = report.kind == PanelReportKind::Chunk;
        framesBegun += isChunk && report.chunkNumber == 1 ? 1 : 0;
        const bool isRefused = isChunk && report.chunkNumber == refusedChunk;
        const int written = isRefused ? -1 : ForwardingHidApi::Write(handle, data, length);
        if (written < 0) {
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_decoder.AbandonFrame();
            return written;
        }
        rounds += report.kind == PanelReportKind::TimeSync ? 1 : 0;
        temperatures += report.kind == PanelReportKind::Area && report.area.contains(temperature) ? 1 : 0;
        return written;
    }

    QPoint temperature;
    std::atomic<int> refusedChunk{0};
    std::atomic<int> opens{0};
    std::atomic<int> framesBegun{0};
    std::atomic<int> rounds{0};  // each sets the clock
    std::atomic<int> temperatures{0};

private:
    std::mutex m_mutex;
    PanelDecoder m_decoder;
};

// A session that refreshes, with a temperature that stands still.
struct Running {
    explicit Running(const ScreenState& state) {
        hid.temperature = state.layout.textRect[CpuTemperature].center();
        session.SetCpuPowClock(83, 61);
        Open(session, state);
    }

    VirtualHidApi panel;
    CountingHidApi hid{panel};
    LiveSession session{hid, InterfaceLanguage::English, kShortPauses};
};

}  // namespace

// A screen that does not answer for a while, though nobody says that it went or came.
class TestScreenAnswers : public QObject {
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void init();
    void ValuesComeBack_data();
    void ValuesComeBack();
    void OwedFrameIsSent();
    void FrameThatIsNeverTakenIsTriedSeldom();
    void ScreenThatAnswersIsNotRedrawn();

private:
    ScreenState m_state;
};

void TestScreenAnswers::initTestCase() {
    InitResources();
    InstallFontSubstitutes();
    QLoggingCategory::setFilterRules(QStringLiteral("*.debug=false"));
}

void TestScreenAnswers::init() {
    QVERIFY(QDir(SettingsFolder()).removeRecursively());
    QVERIFY(QDir(WorkingFolder()).removeRecursively());
    m_state = LoadState(kBin, InterfaceLanguage::English);
}

void TestScreenAnswers::ValuesComeBack_data() {
    QTest::addColumn<bool>("canBeOpened");
    QTest::addColumn<bool>("isResume");
    QTest::newRow("cannot be opened after a resume") << false << true;
    QTest::newRow("takes nothing after a resume") << true << true;
    QTest::newRow("cannot be opened for a while") << false << false;
}

void TestScreenAnswers::ValuesComeBack() {
    QFETCH(bool, canBeOpened);
    QFETCH(bool, isResume);
    Running run(m_state);
    run.session.StartRefresh();
    QTRY_COMPARE_WITH_TIMEOUT(run.hid.temperatures.load(), 1, kPatienceMs);
    const int frames = run.hid.framesBegun;
    if (canBeOpened) {
        run.panel.FailWritesFrom(1);
    } else {
        run.panel.FailOpens();
    }
    if (isResume) {
        run.session.NoteArrival();
    }
    // Some rounds go by: everything that the resume asked for has been tried, in vain.
    const int opens = run.hid.opens;
    QTRY_VERIFY_WITH_TIMEOUT(run.hid.opens > opens + 12, kPatienceMs);
    run.panel.ClearFaults();
    QTRY_VERIFY_WITH_TIMEOUT(run.hid.temperatures >= 2, kPatienceMs);
    // Once is enough; a panel that begins to answer in the middle of a round gets it in the next round too.
    const auto roundsGoBy = [&run](int count) {
        const int rounds = run.hid.rounds;
        QTRY_VERIFY_WITH_TIMEOUT(run.hid.rounds > rounds + count, kPatienceMs);
    };
    roundsGoBy(2);
    const int sent = run.hid.temperatures;
    QVERIFY(sent <= 3);
    roundsGoBy(4);
    QCOMPARE(run.hid.temperatures.load(), sent);
    QCOMPARE(run.hid.framesBegun.load(), frames);
}

void TestScreenAnswers::OwedFrameIsSent() {
    Running run(m_state);
    QSignalSpy done(&run.session, &LiveSession::uploadDone);
    run.panel.FailOpens();
    run.session.StartUpload();
    run.session.StartRefresh();
    QVERIFY(done.wait(kPatienceMs));
    QVERIFY(run.session.Status().isFrameOwed);
    const int opens = run.hid.opens;
    QTRY_VERIFY_WITH_TIMEOUT(run.hid.opens > opens + 6, kPatienceMs);
    run.panel.ClearFaults();
    QTRY_VERIFY_WITH_TIMEOUT(!run.session.Status().isFrameOwed, kPatienceMs);
    const quint64 areas = run.panel.State().counts.areas;
    QTRY_VERIFY_WITH_TIMEOUT(run.panel.State().counts.areas > areas + 2, kPatienceMs);
    QCOMPARE(run.panel.State().counts.frames, quint64(1));
    QCOMPARE(run.panel.State().counts.errors, quint64(0));
}

void TestScreenAnswers::FrameThatIsNeverTakenIsTriedSeldom() {
    Running run(m_state);
    QSignalSpy done(&run.session, &LiveSession::uploadDone);
    run.hid.refusedChunk = 14;
    run.session.StartUpload();
    run.session.StartRefresh();
    QVERIFY(done.wait(kPatienceMs));
    const int rounds = run.hid.rounds;
    QTRY_VERIFY_WITH_TIMEOUT(run.hid.rounds > rounds + 8, kPatienceMs);
    // After one second and after two more; the clock goes out in every round.
    QVERIFY(run.hid.framesBegun >= 2);
    QVERIFY(run.hid.framesBegun <= 3);
    QCOMPARE(run.panel.State().counts.areas, quint64(0));
    QVERIFY(run.session.Status().isFrameOwed);
}

void TestScreenAnswers::ScreenThatAnswersIsNotRedrawn() {
    Running run(m_state);
    run.session.StartRefresh();
    QTRY_VERIFY_WITH_TIMEOUT(run.hid.rounds > 6, kPatienceMs);
    QCOMPARE(run.hid.temperatures.load(), 1);
}

KIVO_TEST(TestScreenAnswers)
#include "tst_screen_answers.moc"
