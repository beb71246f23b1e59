#include "panel/panel_light.h"

namespace kivo {

DarkReasons DarkReasonsFor(const AwayRules& rules, const AwayFacts& facts) {
    DarkReasons reasons;
    if (facts.isEnding) {
        // Nobody is left to brighten the panel.
        reasons.setFlag(DarkReason::Ending, rules.darkAtExit);
        return reasons;
    }
    const bool isNight = IsNight(rules, facts.localTime);
    reasons.setFlag(DarkReason::Asked, facts.isAsked);
    reasons.setFlag(DarkReason::Locked, facts.isLocked && rules.darkAtLock);
    reasons.setFlag(DarkReason::Asleep, facts.isAsleep && rules.darkAtSleep);
    reasons.setFlag(DarkReason::ScreenSaver, facts.isSaverOn && rules.darkAtScreenSaver);
    reasons.setFlag(DarkReason::NightBlack, isNight && rules.night == NightLight::Black);
    reasons.setFlag(DarkReason::NightDimmed, isNight && rules.night == NightLight::Dimmed);
    return reasons;
}

PanelLight LightFor(DarkReasons reasons) {
    if (!reasons) {
        return PanelLight::Full;
    }
    return reasons == DarkReasons(DarkReason::NightDimmed) ? PanelLight::Dimmed : PanelLight::Black;
}

}  // namespace kivo
