#include "telemetry/reading.h"

#include <cmath>

namespace kivo {

bool IsBelievable(Quantity quantity, double value) {
    if (!std::isfinite(value)) {
        return false;
    }
    switch (quantity) {
        case Quantity::Power:
            return value >= 0.0 && value <= kMostWatts;
        case Quantity::Temperature:
            return value > 0.0 && value < 130.0;
        case Quantity::FanSpeed:
            return value >= 0.0 && value <= 20000.0;
    }
    return false;
}

Reading Checked(Quantity quantity, double value, SourceId source) {
    return IsBelievable(quantity, value) ? Reading::Of(value, source)
                                         : Reading::Without(ReadingGap::Unbelievable, source);
}

}  // namespace kivo
