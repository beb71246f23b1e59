#include "energy_library.h"

// The one before the pause and the first that is told.
constexpr int kSamplesForOneReading = 2;

const Behaviour kBehaviour{true, kSamplesForOneReading, true, 12.9, 45};
