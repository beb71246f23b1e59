#pragma once

// Gathers what log and report tell of program and system. GUI thread, with a QGuiApplication.

#include <QString>
#include <QStringList>

#include "panel/panel_report.h"
#include "session/support_report.h"

namespace kivo {

// Qt, platform, session, displays with their scale, fonts, folders.
SupportFactList SystemFacts();

// Lines for the log of a start: version and system, displays, fonts.
QStringList StartLines();

SupportFactList ToSupportFacts(const PanelFacts& facts);

struct GatheredFacts {
    SupportFacts facts;
    PersonalNames names;
};

// All but who tells it, the panel and the sensors. Changes nothing on disk. applicationDir: where the
// factory's settings lie.
GatheredFacts GatherSupportFacts(const QString& applicationDir);

}  // namespace kivo
