#include "energy_library.h"

const Behaviour kBehaviour{true, kAlways, true, 65.2, 74};
