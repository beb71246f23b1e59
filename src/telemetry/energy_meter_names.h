#pragma once

// The meters of the processor package among those that Windows names, the same in its performance counters
// and in its devices of energy meters. Any thread.

#include <QString>

#include <optional>

namespace kivo {

// The lower the better: the first package ("RAPL_Package0_PKG"), a further one, then AMD's socket ("Current
// Socket Power", also spelt "... Energy"). Nothing for any other meter: cores and memory are parts, and the
// total of the counters has the package twice.
std::optional<int> PackageMeterRank(const QString& name);

}  // namespace kivo
