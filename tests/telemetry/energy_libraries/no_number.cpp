#include "energy_library.h"

const Behaviour kBehaviour{true, true, true, 1e300, -40};
