#pragma once

// A computer with the program, its panel, a spare panel and a person, on a clock that is turned by hand. All
// of it runs on one thread; what other threads would do in the middle of a report is done there.

#include <QTemporaryDir>
#include <array>
#include <deque>
#include <functional>
#include <memory>
#include <optional>

#include "compose/frame_composer.h"
#include "device/screen_session.h"
#include "device/transfers.h"
#include "faulty_wire.h"
#include "panel/frame_store.h"
#include "panel/panel_memory.h"
#include "panel/panel_sender.h"
#include "panel/refresh_data_thread.h"
#include "simulated_clock.h"
#include "simulated_panel.h"
#include "telemetry/metric_snapshot.h"
#include "virtualscreen/virtual_hid_api.h"

namespace kivo::test {

// Thrown where the process is killed; SimulatedDesk catches it.
struct Killed {};

// What the computer measures.
struct Measured {
    int temperature = 45;
    int watts = 15;
    int memoryLoad = 20;
    double cpuLoad = 65;
};

class SimulatedDesk {
public:
    struct Options {
        InterfaceLanguage language = InterfaceLanguage::Chinese;
        LocalTime start{QDate(2026, 11, 21), QTime(9, 5)};
        bool panelsShowParts = false;
        bool panelsHaveKeys = true;   // without, the spare panel stays in its drawer
        bool nodesHaveStamps = true;  // without, a node's number is never given out again, as on Windows
        ScreenState settings;         // as they are at the first start
    };
    enum class News { AtOnce, Late, Lost };
    enum class Power { Kept, Cut };
    enum class ProgramEnd { Quit, Killed };
    enum class ApplyPart { SettingsSaved, StateChosen, FrameSent, RefreshStarted };
    struct ApplyPlan {
        std::optional<ApplyPart> killedAfter;
        std::optional<int> lateItem;  // the former refresh thread still sends this value after the frame
    };

    // The program runs when it is back.
    explicit SimulatedDesk(const Options& options);
    ~SimulatedDesk();
    SimulatedDesk(const SimulatedDesk&) = delete;
    SimulatedDesk& operator=(const SimulatedDesk&) = delete;

    FaultyWire& Wire() { return m_wire; }
    SimulatedClock& Clock() { return m_clock; }
    QString File(const char* name) const { return m_folder.filePath(QLatin1String(name)); }
    Measured measured;

    // --- The panel. ---
    void Unplug(Power power, News news);
    // Nothing where one is plugged in.
    void Plug(VirtualHidApi::NodeNumbers numbers, News news);
    // Pulls out the panel and puts the other one in its place.
    void SwapPanels(Power power, VirtualHidApi::NodeNumbers numbers, News news);
    // The next plugging-in needs new numbers. Nothing while a panel is plugged in.
    void GiveNodeToKeyboard();
    void FailOpenings() { m_node.FailOpens(); }
    void DenyOpenings() { m_node.DenyOpens(); }
    // The computer sleeps; the node is the same afterwards.
    void SleepAndWake(std::chrono::minutes time, Power power, News news);

    // The panel starts anew by itself: it takes nothing for that many reports, a round's first among them,
    // and has lost what it loses without power. Its node stays, and nobody tells.
    void RestartPanel(int reports);

    // What is late is told now.
    void TellLateNews();
    void ClearFaults();
    // No faults any more, and a panel is there that the program can know of.
    void EndAllTrouble();

    // --- The program. ---
    void Rounds(int count);
    void Apply(const ScreenState& state, const ApplyPlan& plan);
    void Restart(ProgramEnd end);
    // Ends the program and has one with a software panel work in the same folder; then starts it again.
    void UseSoftwarePanel(const std::optional<ScreenState>& applied, int rounds);
    // Kills the program in the middle of what it is at; to be called at a moment of the wire.
    [[noreturn]] static void KillNow() { throw Killed(); }

    // --- The truth. ---
    const ScreenState& Settings() const { return m_settings; }
    // How the panel differs from a fresh composition of the settings, or else what the program says it still
    // lacks; empty for neither. After a round.
    QByteArray Difference();
    // As Difference, for all that has to hold besides: panel errors, handles, files, and that no update was
    // ever written over another picture than it was drawn for, nor over parts of one.
    QByteArray LeftBehind();
    // Whether the program may send this in a round in which nothing has changed.
    bool IsRoutine(const PanelReport& report) const;

private:
    struct Program;
    enum class PanelKind { Real, Software };

    // Runs something of the program's; when it is killed, starts it again.
    template <typename Work>
    void RunProgram(Work work);
    std::unique_ptr<Program> MakeProgram(HidApi& api, PanelKind kind);
    void StartProgram();
    static void BeginRefresh(Program& program, InterfaceLanguage language, const Measured& measured);
    void Round(Program& program);
    void SendFrame(Program& program);  // the upload's work
    void TellOf(bool arrived, News news);
    void Tell(bool arrived);
    void BringNews(News news, std::function<void()> tell);
    SimulatedPanel& Panel() { return m_panels[m_inUse]; }
    void NoteTaken(const PanelReport& report, bool isRefused);
    QByteArray TroubleTold() const;
    ItemTexts TextsNow() const;
    // A whole frame of this state with these texts, in wire order.
    QByteArray FrameOf(const ScreenState& state, const ItemTexts& texts);

    const Options m_options;
    QTemporaryDir m_folder;
    SimulatedClock m_clock;
    VirtualHidApi m_node;
    std::array<SimulatedPanel, 2> m_panels;
    std::array<std::optional<ScreenState>, 2> m_frameOn;  // of each panel's whole frame
    std::array<bool, 2> m_hasParts{};                     // of another one lie over it, as the program knows
    std::size_t m_inUse = 0;
    bool m_isAnythingMisplaced = false;
    FaultyWire m_wire;
    ScreenState m_settings;
    std::deque<std::function<void()>> m_lateNews;
    bool m_isNodeTaken = false;  // by a keyboard
    std::unique_ptr<Program> m_program;
    SkinCache m_skins;
};

}  // namespace kivo::test
