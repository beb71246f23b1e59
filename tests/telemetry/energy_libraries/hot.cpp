#include "energy_library.h"

const Behaviour kBehaviour{true, true, true, 65.2, 74};
