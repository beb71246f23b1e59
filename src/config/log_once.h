#pragma once

#include <QString>

namespace kivo {

// A warning that is worth saying once a run: settings are opened afresh for every access and would repeat
// it.
void WarnOnce(const QString& line);

}  // namespace kivo
