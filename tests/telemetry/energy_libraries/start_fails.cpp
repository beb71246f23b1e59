#include "energy_library.h"

const Behaviour kBehaviour{false, true, true, 12.9, 45};
