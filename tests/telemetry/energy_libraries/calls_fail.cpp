#include "energy_library.h"

const Behaviour kBehaviour{true, 0, true, 12.9, 45};
