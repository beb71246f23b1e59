#include <windows.h>

#include "telemetry/local_time.h"

namespace kivo {

LocalTime ReadLocalTime() {
    SYSTEMTIME local{};
    GetLocalTime(&local);
    return {QDate(local.wYear, local.wMonth, local.wDay), QTime(local.wHour, local.wMinute, local.wSecond)};
}

}  // namespace kivo
