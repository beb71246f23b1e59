#include "energy_library.h"

const Behaviour kBehaviour{true, kAlways, true, 1e300, -40};
