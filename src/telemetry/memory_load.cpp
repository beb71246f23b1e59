#include "telemetry/memory_load.h"

#include <algorithm>

#include "telemetry/decimal_reader.h"

namespace kivo {
namespace {

// The number behind "<name>:" at the start of a line, in kB.
std::optional<double> Entry(std::string_view text, std::string_view name) {
    while (!text.empty()) {
        std::string_view line = text.substr(0, text.find('\n'));
        text.remove_prefix(std::min(text.size(), line.size() + 1));
        if (line.substr(0, name.size()) != name || line.substr(name.size(), 1) != ":") {
            continue;
        }
        line.remove_prefix(name.size() + 1);
        if (const auto number = TakeNumber(line)) {
            return static_cast<double>(*number);
        }
        return std::nullopt;
    }
    return std::nullopt;
}

std::optional<double> AvailableMemory(std::string_view text) {
    if (const auto available = Entry(text, "MemAvailable")) {
        return available;
    }
    const auto free = Entry(text, "MemFree");
    if (!free) {
        return std::nullopt;
    }
    return *free + Entry(text, "Buffers").value_or(0.0) + Entry(text, "Cached").value_or(0.0);
}

}  // namespace

std::optional<int> ParseMemoryLoad(std::string_view text) {
    const auto total = Entry(text, "MemTotal");
    const auto available = AvailableMemory(text);
    if (!total || *total <= 0.0 || !available) {
        return std::nullopt;
    }
    // Containers may report more available than they have in total.
    return static_cast<int>(std::clamp(100.0 * (*total - *available) / *total, 0.0, 100.0));
}

}  // namespace kivo
