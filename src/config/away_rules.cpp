#include "config/away_rules.h"

#include "config/settings_file.h"

namespace kivo {

bool operator==(const AwayRules& a, const AwayRules& b) {
    return a.darkAtLock == b.darkAtLock && a.darkAtSleep == b.darkAtSleep &&
           a.darkAtScreenSaver == b.darkAtScreenSaver && a.darkAtExit == b.darkAtExit && a.night == b.night &&
           a.nightFrom == b.nightFrom && a.nightTo == b.nightTo;
}

bool IsNight(const AwayRules& rules, const QTime& localTime) {
    const int now = localTime.hour() * 60 + localTime.minute();
    if (rules.nightFrom <= rules.nightTo) {
        return now >= rules.nightFrom && now < rules.nightTo;
    }
    return now >= rules.nightFrom || now < rules.nightTo;
}

AwayRules LoadAwayRules() {
    const SettingsReader settings;
    AwayRules rules;
    rules.darkAtLock = settings.Int(keys::kDarkAtLock) != 0;
    rules.darkAtSleep = settings.Int(keys::kLitAtSleep) == 0;
    rules.darkAtScreenSaver = settings.Int(keys::kDarkAtScreenSaver) != 0;
    rules.darkAtExit = settings.Int(keys::kDarkAtExit) != 0;
    rules.night = static_cast<NightLight>(settings.Int(keys::kNightLight));
    rules.nightFrom = settings.Int(keys::kNightFrom);
    rules.nightTo = settings.Int(keys::kNightTo);
    return rules;
}

bool SaveAwayRules(const AwayRules& rules) {
    SettingsWriter settings;
    const auto set = [&settings](const SettingKey& key, int value) {
        settings.SetOptionalInt(QString(key.name), key, value);
    };
    set(keys::kDarkAtLock, rules.darkAtLock ? 1 : 0);
    set(keys::kLitAtSleep, rules.darkAtSleep ? 0 : 1);
    set(keys::kDarkAtScreenSaver, rules.darkAtScreenSaver ? 1 : 0);
    set(keys::kDarkAtExit, rules.darkAtExit ? 1 : 0);
    set(keys::kNightLight, static_cast<int>(rules.night));
    settings.SetInt(QString(keys::kNightFrom.name), rules.nightFrom);
    settings.SetInt(QString(keys::kNightTo.name), rules.nightTo);
    return settings.Commit();
}

}  // namespace kivo
