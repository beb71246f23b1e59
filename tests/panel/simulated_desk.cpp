#include "simulated_desk.h"

#include <QFile>

#include "compose/live_renderer.h"
#include "compose/rgb565.h"
#include "device/interface_name.h"
#include "device/screen_change.h"
#include "frame_pictures.h"
#include "pictures/picture_reader.h"

namespace kivo::test {

namespace {

constexpr std::chrono::milliseconds kRoundPause{500};
constexpr std::chrono::milliseconds kUploadPause{1000};

// Shows whatever load the desk has at that moment.
class MeasuredCounter final : public CpuCounter {
public:
    explicit MeasuredCounter(const Measured& measured) : m_measured(measured) {}
    CpuRawSample Collect() override { return {}; }
    double Calculate(const CpuRawSample& /*now*/, const CpuRawSample& /*previous*/) override {
        return m_measured.cpuLoad;
    }

private:
    const Measured& m_measured;
};

QByteArray Number(const std::optional<int>& number) {
    return number ? QByteArray::number(*number) : QByteArray("none");
}

// What these pixels, in wire order, have there.
QByteArray AreaOf(const QByteArray& pixels, const QRect& area) {
    QByteArray part;
    for (int row = area.top(); row <= area.bottom(); ++row) {
        part += pixels.mid((row * kPanelWidth + area.left()) * 2, area.width() * 2);
    }
    return part;
}

QByteArray Text(const std::optional<QTime>& time) {
    return time ? time->toString(Qt::ISODate).toLatin1() : QByteArray("none");
}

}  // namespace

// What a process holds in its memory, made in the order in which the live session makes it.
struct SimulatedDesk::Program {
    Program(HidApi& api, const SimulatedDesk& desk, PanelKind kind)
        : session(api),
          transfers(session, [&desk] { return desk.m_clock.Local().time; }),
          snapshot(desk.m_options.language,
                   {[&desk] { return desk.m_clock.Local(); }, [&desk] { return desk.measured.memoryLoad; },
                    [&desk] { return desk.m_clock.Now(); }}),
          frames(desk.File("whole.png")),
          memory(desk.File("whole.state")),
          sender({session,
                  transfers,
                  frames,
                  kind == PanelKind::Real ? &memory : nullptr,
                  [this](int item) { return snapshot.GetValueText(item); },
                  ReadFramePicture,
                  [&desk] { return desk.m_clock.Now(); },
                  {}}) {}

    ScreenSession session;
    Transfers transfers;
    MetricSnapshot snapshot;
    FrameStore frames;
    PanelMemory memory;
    PanelSender sender;
    std::unique_ptr<RefreshDataThread> refresh;  // never started: its rounds are turned by hand
};

SimulatedDesk::SimulatedDesk(const Options& options)
    : m_options(options),
      m_clock(options.start),
      m_panels{{{options.panelsHaveKeys ? "panel A" : "", '\x12', options.panelsShowParts},
                {options.panelsHaveKeys ? "panel B" : "", '\x34', options.panelsShowParts}}},
      m_wire(m_node, m_clock, options.nodesHaveStamps),
      m_settings(options.settings) {
    m_node.SetPanelKey(Panel().Key());
    m_wire.PutPanel(Panel());
    m_wire.Watch([this](const PanelReport& report, bool isRefused) { NoteTaken(report, isRefused); });
    StartProgram();
}

SimulatedDesk::~SimulatedDesk() = default;

void SimulatedDesk::Unplug(Power power, News news) {
    if (!m_node.IsPlugged()) {
        return;
    }
    m_node.Unplug();
    Panel().AbandonFrame();
    if (power == Power::Cut) {
        Panel().LosePower();
    }
    TellOf(false, news);
}

void SimulatedDesk::Plug(VirtualHidApi::NodeNumbers numbers, News news) {
    if (m_node.IsPlugged()) {
        return;
    }
    m_node.Plug(std::exchange(m_isNodeTaken, false) ? VirtualHidApi::NodeNumbers::New : numbers);
    TellOf(true, news);
}

void SimulatedDesk::SwapPanels(Power power, VirtualHidApi::NodeNumbers numbers, News news) {
    Unplug(power, news);
    if (m_options.panelsHaveKeys) {
        m_inUse = 1 - m_inUse;
        m_node.SetPanelKey(Panel().Key());
        m_wire.PutPanel(Panel());
    }
    Plug(numbers, news);
}

void SimulatedDesk::GiveNodeToKeyboard() {
    if (!m_node.IsPlugged() && m_options.nodesHaveStamps) {
        m_node.PutKeyboardAt(m_node.DataPath());
        m_isNodeTaken = true;
    }
}

void SimulatedDesk::SleepAndWake(std::chrono::minutes time, Power power, News news) {
    m_clock.Sleep(time);
    if (power == Power::Cut) {
        Panel().LosePower();
    }
    const auto wakeUp = [this] { m_program->sender.NoteArrival(); };
    // It comes from elsewhere than the news of nodes, so it may overtake them.
    if (news == News::AtOnce && m_program) {
        wakeUp();
    } else {
        BringNews(news, wakeUp);
    }
}

void SimulatedDesk::RestartPanel(int reports) {
    if (m_node.IsPlugged()) {
        Panel().LosePower();
        m_wire.Refuse({PanelReportKind::Invalid, 0, reports});
        Rounds(1);
    }
}

void SimulatedDesk::TellOf(bool arrived, News news) {
    BringNews(news, [this, arrived] { Tell(arrived); });
}

// News never overtake each other.
void SimulatedDesk::BringNews(News news, std::function<void()> tell) {
    if (news == News::Late || (news == News::AtOnce && !m_lateNews.empty())) {
        m_lateNews.push_back(std::move(tell));
    } else if (news == News::AtOnce && m_program) {
        RunProgram(tell);
    }
}

// As the window does it. The interfaces come in their order, and the data interface goes first.
void SimulatedDesk::Tell(bool arrived) {
    for (const int number : {arrived ? 0 : 1, arrived ? 1 : 0}) {
        const QString name =
            MakeInterfaceName(kScreenVendorId, kScreenProductId, number, QStringLiteral("desk"));
        const ScreenChangeOutcome outcome =
            ApplyScreenChange(m_program->session, {name, arrived}, false, ArrivalPath::Enumeration);
        if (outcome.dataArrived) {
            m_program->sender.NoteArrival();
        }
    }
}

void SimulatedDesk::TellLateNews() {
    for (const std::function<void()>& tell : std::exchange(m_lateNews, {})) {
        RunProgram(tell);
    }
}

void SimulatedDesk::ClearFaults() {
    m_wire.ClearFaults();
    m_node.ClearFaults();
}

void SimulatedDesk::EndAllTrouble() {
    ClearFaults();
    TellLateNews();
    Plug(VirtualHidApi::NodeNumbers::Same, News::AtOnce);
    if (TextOf(m_program->session.Entry(0).dataPath) != m_node.DataPath()) {
        Tell(true);
    }
}

template <typename Work>
void SimulatedDesk::RunProgram(Work work) {
    try {
        work();
    } catch (const Killed&) {
        m_program.reset();
        m_wire.ClearFaults();
        StartProgram();
    }
}

std::unique_ptr<SimulatedDesk::Program> SimulatedDesk::MakeProgram(HidApi& api, PanelKind kind) {
    auto program = std::make_unique<Program>(api, *this, kind);
    program->sender.SetLoaded(m_settings);
    program->session.InitDeviceTable();
    program->session.EnumerateScreens();
    program->session.OpenScreenByName(kScreenName);
    return program;
}

void SimulatedDesk::StartProgram() {
    m_lateNews.clear();
    RunProgram([this] {
        m_program = MakeProgram(m_wire, PanelKind::Real);
        m_program->sender.SendTimeSync();
        BeginRefresh(*m_program, m_options.language, measured);
    });
}

void SimulatedDesk::BeginRefresh(Program& program, InterfaceLanguage language, const Measured& measured) {
    const RefreshDataThread::Pauses noPauses{std::chrono::milliseconds(0), std::chrono::milliseconds(0)};
    program.refresh = std::make_unique<RefreshDataThread>(RefreshDataThread::Parts{
        program.sender, program.snapshot, language,
        [&measured] { return std::make_unique<MeasuredCounter>(measured); }, noPauses});
    program.sender.Prepare();
}

void SimulatedDesk::Round(Program& program) {
    m_clock.Advance(kRoundPause);
    program.snapshot.SetCpuPowClock(measured.watts, measured.temperature);
    program.refresh->Round();
}

void SimulatedDesk::Rounds(int count) {
    for (int k = 0; k < count; ++k) {
        RunProgram([this] { Round(*m_program); });
    }
}

void SimulatedDesk::SendFrame(Program& program) {
    m_clock.Advance(kUploadPause);
    program.snapshot.SetCpuUsed(WholePercent(measured.cpuLoad));
    program.sender.ComposeWholeFrame();
}

void SimulatedDesk::Apply(const ScreenState& state, const ApplyPlan& plan) {
    const auto killedAfter = [&plan](ApplyPart part) {
        if (plan.killedAfter == part) {
            KillNow();
        }
    };
    RunProgram([&] {
        const QString lateText = plan.lateItem ? m_program->snapshot.GetValueText(*plan.lateItem) : QString();
        m_settings = state;
        killedAfter(ApplyPart::SettingsSaved);
        m_program->sender.SetChosen(state);
        killedAfter(ApplyPart::StateChosen);
        SendFrame(*m_program);
        killedAfter(ApplyPart::FrameSent);
        if (plan.lateItem) {
            m_program->sender.RenderLiveItem(lateText, *plan.lateItem);
        }
        BeginRefresh(*m_program, m_options.language, measured);
        killedAfter(ApplyPart::RefreshStarted);
    });
}

void SimulatedDesk::Restart(ProgramEnd end) {
    if (end == ProgramEnd::Killed) {
        return RunProgram([] { KillNow(); });
    }
    m_program.reset();
    StartProgram();
}

void SimulatedDesk::UseSoftwarePanel(const std::optional<ScreenState>& applied, int rounds) {
    m_program.reset();
    {
        VirtualHidApi blank;
        const std::unique_ptr<Program> program = MakeProgram(blank, PanelKind::Software);
        program->sender.SendTimeSync();
        BeginRefresh(*program, m_options.language, measured);
        if (applied) {
            m_settings = *applied;
            program->sender.SetChosen(*applied);
            SendFrame(*program);
            BeginRefresh(*program, m_options.language, measured);
        }
        for (int k = 0; k < rounds; ++k) {
            Round(*program);
        }
    }
    StartProgram();
}

ItemTexts SimulatedDesk::TextsNow() const {
    ItemTexts texts;
    for (int item = 0; item < kLiveValueCount; ++item) {
        texts[size_t(item)] = m_program->snapshot.GetValueText(item);
    }
    return texts;
}

QByteArray SimulatedDesk::FrameOf(const ScreenState& state, const ItemTexts& texts) {
    const PanelBackground background = ComposeBackground(state, LoadPicture(PicturePath(state)), m_skins);
    const QImage frame = ComposeFrame(state, background, texts);
    return WirePixels(frame, frame.rect(), state.orientation);
}

// A frame is one of the settings' state, for nothing else is ever sent. An area that shows just what stands
// there in the settings' frame, and not what stands there in the panel's, was drawn for the wrong one. A
// first chunk that only seems refused is none the program has to know of.
void SimulatedDesk::NoteTaken(const PanelReport& report, bool isRefused) {
    std::optional<ScreenState>& frameOn = m_frameOn[m_inUse];
    bool& hasParts = m_hasParts[m_inUse];
    if (report.kind == PanelReportKind::Chunk) {
        hasParts = !Panel().HasWholeFrame() && (hasParts || report.chunkNumber > 1 || !isRefused);
        if (Panel().HasWholeFrame()) {
            frameOn = m_settings;
        }
    } else if (report.kind == PanelReportKind::Area) {
        m_isAnythingMisplaced = m_isAnythingMisplaced || hasParts;
        if (frameOn && *frameOn != m_settings) {
            const ItemTexts texts = TextsNow();
            const QByteArray shown = AreaOf(Panel().Pixels(), report.area);
            m_isAnythingMisplaced =
                m_isAnythingMisplaced || (shown == AreaOf(FrameOf(m_settings, texts), report.area) &&
                                          shown != AreaOf(FrameOf(*frameOn, texts), report.area));
        }
    }
}

QByteArray SimulatedDesk::Difference() {
    const QByteArray pixels = FrameOf(m_settings, TextsNow());
    const QByteArray& shown = Panel().Pixels();
    if (shown != pixels) {
        int at = 0;
        while (shown.at(at) == pixels.at(at)) {
            ++at;
        }
        return "pixel " + QByteArray::number(at / 2 % kPanelWidth) + "," +
               QByteArray::number(at / 2 / kPanelWidth) + " differs";
    }
    const int orientation = int(m_settings.orientation) + 1;
    if (Panel().OrientationOnWire() != orientation) {
        return "orientation " + Number(Panel().OrientationOnWire()) + " instead of " + Number(orientation);
    }
    if (Panel().Clock() != m_clock.Local().time) {
        return "clock " + Text(Panel().Clock()) + " instead of " + Text(m_clock.Local().time);
    }
    return Panel().ShownTime() ? TroubleTold() : QByteArray("the time is not shown");
}

// A panel may show the right frame long before: a chunk that it seemed to refuse leaves the program in doubt
// until it takes the frame once more.
QByteArray SimulatedDesk::TroubleTold() const {
    const PanelStatus status = m_program->sender.Status();
    const bool isTold =
        status.condition != PanelCondition::Connected && status.condition != PanelCondition::Sent;
    return status.isFrameOwed || isTold
               ? "the status tells of trouble, " + QByteArray::number(int(status.condition))
               : QByteArray();
}

QByteArray SimulatedDesk::LeftBehind() {
    if (m_isAnythingMisplaced) {
        return "an update was drawn for another frame than the panel had, or over parts of one";
    }
    if (const quint64 errors = m_node.State().counts.errors; errors != 0) {
        return QByteArray::number(errors) + " reports that no panel understands";
    }
    const int own = (m_program->session.controlHandle() ? 1 : 0) + (m_program->session.dataHandle() ? 1 : 0);
    if (m_node.OpenHandles() != own) {
        return QByteArray::number(m_node.OpenHandles()) + " open handles instead of " + Number(own);
    }
    const SharedFrame saved = FrameStore(File("whole.png")).Load(m_settings);
    if (!saved) {
        return "whole.png does not hold the applied frame";
    }
    const std::optional<RememberedPanel> remembered = PanelMemory(File("whole.state")).Read();
    if (remembered && remembered->panelKey == Panel().Key() && remembered->frameId != saved->id) {
        return "whole.state tells of another frame than the panel has";
    }
    return {};
}

bool SimulatedDesk::IsRoutine(const PanelReport& report) const {
    if (report.kind == PanelReportKind::TimeSync) {
        return true;
    }
    if (report.kind != PanelReportKind::Area) {
        return false;
    }
    const QVector<TextRun> runs = LayOutTexts(m_settings, TextsNow());
    for (const int item : {int(Time), int(Date)}) {
        for (const QRect& rect : SendRects(m_settings, runs, item, false)) {
            if (IsUpdateSent(m_settings, item, false) &&
                WireRect(rect, m_settings.orientation) == report.area) {
                return true;
            }
        }
    }
    return false;
}

}  // namespace kivo::test
