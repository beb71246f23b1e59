#pragma once

// Settings that gave way to the defaults because the first-run mark was lost, though the person had made
// them: they stay beside Config.ini as "Config.ini.kept" until the person takes them back or does not want
// them. What gave way to an answer is "Config.ini.replaced". Of both there may be more, ".2" to ".9", of
// which the last is reused. Main thread.

#include <QString>

namespace kivo {

// To be called before Config.ini is replaced by `defaultFile`. False where it must not be, as what differs
// could not be kept. What equals the default, or lies kept already, is not kept again.
bool KeepSettings(const QString& defaultFile);

// Config.ini could not be replaced after all: what was kept of it goes.
void TakeKeptCopyBack();

// Whether there are any that nobody has answered for yet.
bool HasKeptSettings();

// Puts the ones that were kept last in Config.ini's place, which gives way. False, with one log line and
// Config.ini as it was, where that fails.
bool RestoreKeptSettings();

// The person wants none of them: they give way, and nobody is asked any more.
void DismissKeptSettings();

}  // namespace kivo
