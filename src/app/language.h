#pragma once

#include <QString>

#include "telemetry/interface_language.h"

class QTranslator;

namespace kivo {

// Loads "lang/sc.qm", "lang/en.qm" or "lang/rus.qm" beside the program into translator and installs it. False
// where the file is missing; the program then shows its source texts (Chinese). GUI thread.
bool InstallTranslation(QTranslator& translator, InterfaceLanguage language, const QString& applicationDir);

}  // namespace kivo
