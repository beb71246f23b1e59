#include "energy_library.h"

const Behaviour kBehaviour{true, true, false, 12.9, 45};
