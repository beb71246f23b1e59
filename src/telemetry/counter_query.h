#pragma once

// The seam to Windows' performance counters: a query that is kept open. Used on one thread.

#include <QString>

#include <cstddef>
#include <functional>
#include <memory>
#include <vector>

namespace kivo {

// What a counter says of one instance ("\_TZ.TZ00").
struct CounterValue {
    QString instance;
    double value = 0;
};

class CounterQuery {
public:
    CounterQuery() = default;
    CounterQuery(const CounterQuery&) = delete;
    CounterQuery& operator=(const CounterQuery&) = delete;
    virtual ~CounterQuery() = default;

    // Takes a sample of all counters. Rates are those between the last two.
    virtual void Collect() = 0;
    // Of the counter with that place in the list of paths, every instance that has a value; none for a
    // counter that this system does not have.
    virtual std::vector<CounterValue> Values(std::size_t counter) = 0;
};

// Opens one for counters by their English paths, with "*" for every instance. Null where the system has none
// of them.
using CounterQueryFactory = std::function<std::unique_ptr<CounterQuery>(const std::vector<QString>& paths)>;

// The system's; there is one on Windows only.
std::unique_ptr<CounterQuery> OpenCounterQuery(const std::vector<QString>& paths);

}  // namespace kivo
