#pragma once

// One place where sensors can be read. Made, used and destroyed on one thread: the poller's, or the main
// thread where the sensors are only listed.

#include <chrono>
#include <memory>
#include <vector>

#include "telemetry/reading.h"

namespace kivo {

// A moment by one clock that never runs backwards and stands still, or not, for every source alike while the
// machine sleeps.
struct SampleMoment {
    std::chrono::nanoseconds now{0};
    // The machine has slept since the sample before: what was used meanwhile is no second's.
    bool hasSlept = false;
};

class SensorSource {
public:
    SensorSource() = default;
    SensorSource(const SensorSource&) = delete;
    SensorSource& operator=(const SensorSource&) = delete;
    virtual ~SensorSource() = default;

    virtual SourceId Id() const = 0;

    // Takes a sample. Finds by itself what it reads, also when that comes, goes and comes back later, and
    // searches seldom enough to be cheap. Never waits for another program: who has to ask one does so on a
    // thread of its own and gives the answer that came last. A quantity that it does not measure is
    // NoSource; one that it measures between two samples is NotRead after the first. Where the source can
    // tell that nothing newer has come since it was read last, its value isStanding, for as long as that
    // lasts: how long such a value counts is not the source's to say.
    virtual SensorReadings Read(const SampleMoment& moment) = 0;
};

using SensorSources = std::vector<std::unique_ptr<SensorSource>>;

}  // namespace kivo
