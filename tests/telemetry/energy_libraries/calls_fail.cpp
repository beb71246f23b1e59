#include "energy_library.h"

const Behaviour kBehaviour{true, false, true, 12.9, 45};
