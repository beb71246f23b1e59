#include "energy_library.h"

const Behaviour kBehaviour{true, true, true, 12.9, 45};
