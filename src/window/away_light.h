#pragma once

// Darkens the screen while the person is away or it is night, and brings it back: owns the reasons, and hands
// the light that follows from them to the session. GUI thread.

#include <QObject>
#include <QTime>
#include <functional>
#include <memory>

#include "panel/live_session.h"
#include "panel/panel_light.h"
#include "session/away_watch.h"
#include "session/quit_signals.h"
#include "window/away_menu.h"

namespace kivo {

class NightDialog;
class StateLine;

class AwayLight : public QObject {
    Q_OBJECT

public:
    // How long the program's end waits for the panel's last frame: what is left beside the wait for the
    // workers and half a second for everything else that ends.
    static constexpr std::chrono::milliseconds kLongestLastFrame =
        kTimeToEnd - LiveSession::kLongestStop - std::chrono::milliseconds(500);
    static_assert(kLongestLastFrame >= std::chrono::seconds(3), "a slow bus takes so long for a frame");

    // Session and state line outlive it.
    struct Parts {
        LiveSession& session;
        StateLine& stateLine;
        std::unique_ptr<AwayWatch> watch;  // null: nobody tells
        std::function<QTime()> localTime;
    };
    // Loads the rules and follows them from now on.
    explicit AwayLight(Parts parts);
    ~AwayLight() override;

    // For the tray.
    QMenu& Menu() { return m_menu; }

    // Takes the rules from the settings once more.
    void LoadRules();
    const AwayRules& Rules() const { return m_rules; }

    // A second start wants the panel dark, or not any more.
    void SetAsked(bool isAsked);
    // Every second or so: whether it is night.
    void LookAtClock() { Follow(); }
    // The system has slept, whoever found out.
    void NoteAwake();
    // The person is at the desk, whatever the system told before: not each screen lock tells of its end.
    void NotePerson();
    // The program ends: waits until the panel is black where that is ticked, else until it has the picture
    // again that a lock or the night took from it; for kLongestLastFrame at most. The first call counts.
    void End();

Q_SIGNALS:
    // The system says that it woke up; the panel is brightened afterwards.
    void awake();

private:
    void TakeRules(const AwayRules& rules);
    void FollowRules(const AwayRules& rules);
    void NoteSleeping();
    void SetFact(bool AwayFacts::*fact, bool isSo);
    // tried: see LiveSession::SetLight; given, it is called also where no other light follows. Returns
    // whether another one does.
    bool Follow(const std::function<void()>& tried = {});
    void AskNightTimes();

    Parts m_parts;
    AwayMenu m_menu;
    std::unique_ptr<NightDialog> m_nightDialog;  // null until it is asked for
    AwayRules m_rules;
    AwayFacts m_facts;
    DarkReasons m_reasons;
    quint64 m_turn = 0;  // counts sleeps and wake-ups
};

}  // namespace kivo
