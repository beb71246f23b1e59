#pragma once

// The time between two samples of a source that measures over it.

#include <chrono>
#include <optional>
#include <utility>

#include "telemetry/sensor_source.h"

namespace kivo {

// A source that nobody has asked for that long would tell an average that is no value of now.
inline constexpr std::chrono::seconds kLongestInterval{20};

class SampleInterval {
public:
    // The time since the sample before. Nothing where it cannot be measured over: this is the first one, the
    // machine has slept, or it was none or too long.
    std::optional<std::chrono::nanoseconds> Note(const SampleMoment& moment) {
        const std::optional<std::chrono::nanoseconds> before = std::exchange(m_before, moment.now);
        if (!before || moment.hasSlept || moment.now <= *before || moment.now - *before > kLongestInterval) {
            return std::nullopt;
        }
        return moment.now - *before;
    }
    // The next sample is a first one.
    void Begin() { m_before.reset(); }

private:
    std::optional<std::chrono::nanoseconds> m_before;
};

// Searches that cost something are made once a minute.
class SeldomSearch {
public:
    // Whether it is time to search; the next time is a minute later.
    bool IsDue(const SampleMoment& moment) {
        if (m_last && moment.now - *m_last < std::chrono::minutes(1)) {
            return false;
        }
        m_last = moment.now;
        return true;
    }

private:
    std::optional<std::chrono::nanoseconds> m_last;
};

}  // namespace kivo
