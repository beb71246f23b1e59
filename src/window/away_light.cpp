#include "window/away_light.h"

#include <QCoreApplication>
#include <QPointer>
#include <utility>

#include "window/night_dialog.h"
#include "window/state_line.h"

namespace kivo {

AwayLight::AwayLight(Parts parts) : m_parts(std::move(parts)) {
    connect(&m_menu, &AwayMenu::chosen, this, &AwayLight::TakeRules);
    connect(&m_menu, &AwayMenu::nightTimesRequested, this, &AwayLight::AskNightTimes);
    // A system that ends its session may end the process as soon as this has been told.
    connect(QCoreApplication::instance(), &QCoreApplication::aboutToQuit, this, &AwayLight::End);
    if (const AwayWatch* const watch = m_parts.watch.get()) {
        connect(watch, &AwayWatch::lockedChanged, this,
                [this](bool isLocked) { SetFact(&AwayFacts::isLocked, isLocked); });
        connect(watch, &AwayWatch::saverChanged, this,
                [this](bool isOn) { SetFact(&AwayFacts::isSaverOn, isOn); });
        connect(watch, &AwayWatch::sleeping, this, &AwayLight::NoteSleeping);
        connect(watch, &AwayWatch::awake, this, [this] { ++m_turn; });
        connect(watch, &AwayWatch::awake, this, &AwayLight::awake);
        connect(watch, &AwayWatch::awake, this, &AwayLight::NoteAwake);
    }
    LoadRules();
}

AwayLight::~AwayLight() = default;

void AwayLight::LoadRules() {
    FollowRules(LoadAwayRules());
}

void AwayLight::TakeRules(const AwayRules& rules) {
    m_parts.stateLine.NoteSaved(SettingsPart::Away, SaveAwayRules(rules));
    FollowRules(rules);
}

void AwayLight::FollowRules(const AwayRules& rules) {
    m_rules = rules;
    m_menu.ShowRules(m_rules);
    if (m_parts.watch) {
        m_parts.watch->HoldSleep(m_rules.darkAtSleep);
    }
    Follow();
}

void AwayLight::SetAsked(bool isAsked) {
    SetFact(&AwayFacts::isAsked, isAsked);
}

void AwayLight::NoteSleeping() {
    m_facts.isAsleep = true;
    // A write that hung may end after the wake-up: what is held by then is held for the next sleep.
    const QPointer<AwayLight> self = this;
    Follow([self, turn = ++m_turn] {
        if (self && self->m_turn == turn) {
            self->m_parts.watch->LetSleep();
        }
    });
    if (m_reasons.testFlag(DarkReason::Asleep)) {
        m_parts.session.AwaitLight(m_parts.watch->LongestInSleeping());
    }
}

void AwayLight::NoteAwake() {
    SetFact(&AwayFacts::isAsleep, false);
}

void AwayLight::NotePerson() {
    m_facts.isLocked = m_facts.isAsleep = m_facts.isSaverOn = false;
    Follow();
}

void AwayLight::End() {
    if (m_facts.isEnding) {
        return;
    }
    m_facts.isEnding = true;
    if (Follow() || m_reasons.testFlag(DarkReason::Ending)) {
        m_parts.session.AwaitLight(kLongestLastFrame);
    }
}

void AwayLight::SetFact(bool AwayFacts::*fact, bool isSo) {
    m_facts.*fact = isSo;
    Follow();
}

bool AwayLight::Follow(const std::function<void()>& tried) {
    m_facts.localTime = m_parts.localTime();
    const DarkReasons reasons = DarkReasonsFor(m_rules, m_facts);
    const DarkReasons former = std::exchange(m_reasons, reasons);
    m_parts.stateLine.ShowDark(reasons);
    const bool isAnother = LightFor(reasons) != LightFor(former);
    if (isAnother || tried) {
        m_parts.session.SetLight(LightFor(reasons), tried);
    }
    return isAnother;
}

void AwayLight::AskNightTimes() {
    if (!m_nightDialog) {
        m_nightDialog = std::make_unique<NightDialog>();
        connect(m_nightDialog.get(), &NightDialog::chosen, this, [this](int from, int to) {
            AwayRules rules = m_rules;
            rules.nightFrom = from;
            rules.nightTo = to;
            TakeRules(rules);
        });
    }
    m_nightDialog->Ask(m_rules.nightFrom, m_rules.nightTo);
}

}  // namespace kivo
