#include "energy_library.h"

const Behaviour kBehaviour{true, kAlways, true, 12.9, 45};
