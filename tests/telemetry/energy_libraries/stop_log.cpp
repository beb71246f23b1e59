#include "energy_library.h"

ENERGY_LIBRARY_CALL bool StopLog() {
    return false;
}
