#include <ctime>

#include "telemetry/local_time.h"

namespace kivo {

LocalTime ReadLocalTime() {
    const std::time_t now = std::time(nullptr);
    std::tm local{};
    ::tzset();  // localtime_r alone would keep the zone of the program's start
    if (::localtime_r(&now, &local) == nullptr) {
        return {};
    }
    // A leap second is shown as the second before it.
    return {QDate(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday),
            QTime(local.tm_hour, local.tm_min, qMin(local.tm_sec, 59))};
}

}  // namespace kivo
