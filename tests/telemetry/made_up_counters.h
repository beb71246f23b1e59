#pragma once

// A system's performance counters, made up.

#include <map>

#include "telemetry/counter_query.h"

namespace kivo::test {

struct MadeUpCounters {
    std::map<QString, std::vector<CounterValue>> values;  // by path; no path: no such counter
    int opened = 0;
    int collected = 0;

    CounterQueryFactory Factory() {
        return [this](const std::vector<QString>& paths) { return Open(paths); };
    }

private:
    class Query final : public CounterQuery {
    public:
        Query(MadeUpCounters& counters, const std::vector<QString>& paths)
            : m_counters(counters), m_paths(paths) {}
        void Collect() override { ++m_counters.collected; }
        std::vector<CounterValue> Values(std::size_t counter) override {
            const auto found = m_counters.values.find(m_paths.at(counter));
            return found == m_counters.values.end() ? std::vector<CounterValue>() : found->second;
        }

    private:
        MadeUpCounters& m_counters;
        const std::vector<QString> m_paths;
    };

    std::unique_ptr<CounterQuery> Open(const std::vector<QString>& paths) {
        for (const QString& path : paths) {
            if (values.count(path) != 0) {
                ++opened;
                return std::make_unique<Query>(*this, paths);
            }
        }
        return nullptr;
    }
};

}  // namespace kivo::test
