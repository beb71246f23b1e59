#include "energy_library.h"

const Behaviour kBehaviour{true, kAlways, false, 12.9, 45};
