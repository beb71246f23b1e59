#pragma once

// Settings that gave way to the defaults because the first-run mark was lost, though the person had made
// them: they stay beside Config.ini as "Config.ini.kept" until the person takes them back or does not want
// them. What gave way to an answer is "Config.ini.replaced". Of both there may be more, ".2" to ".9", the
// newest with the highest number; of ten the oldest goes. Main thread.

#include <QString>

namespace kivo {

// To be called before Config.ini is replaced by `defaultFile`. False where it must not be, as what differs
// could not be kept. What equals the default, or lies kept already, is not kept again.
bool KeepSettings(const QString& defaultFile);

// Config.ini could not be replaced after all: what was kept of it goes.
void TakeKeptCopyBack();

// Whether there are any that nobody has answered for yet.
bool HasKeptSettings();

// Puts the ones that were kept last in Config.ini's place. Config.ini gives way, unless it equals
// `defaultFile`, and so do those that were kept before: nobody is asked any more. False, with Config.ini as
// it was, where nothing is kept, or with a log line where it fails.
bool RestoreKeptSettings(const QString& defaultFile);

// The person wants none of them: they give way, and nobody is asked any more.
void DismissKeptSettings();

}  // namespace kivo
