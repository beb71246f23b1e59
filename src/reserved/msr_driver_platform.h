#pragma once

// What msr_driver.cpp asks of the system.

#include "reserved/msr_driver.h"

namespace kivo {

// The running program's own path; empty where it cannot be told.
QString OwnProgramPath();

// Sends a request to the open driver. False where it refuses; the answer is worth nothing then.
bool AskDriver(void* driver, const MsrRequest& request, MsrAnswer* answer);

}  // namespace kivo
