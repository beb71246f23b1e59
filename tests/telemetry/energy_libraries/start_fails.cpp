#include "energy_library.h"

const Behaviour kBehaviour{false, kAlways, true, 12.9, 45};
