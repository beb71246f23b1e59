#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string_view>

namespace kivo {

// Takes the next decimal number, and the blanks before it, off the front of `text`. Nothing where no digit
// follows or the number does not fit; `text` then stands where it stood, without the blanks. Line ends are
// not blanks.
inline std::optional<std::uint64_t> TakeNumber(std::string_view& text) {
    while (!text.empty() && (text.front() == ' ' || text.front() == '\t')) {
        text.remove_prefix(1);
    }
    std::uint64_t number = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
    if (error != std::errc()) {
        return std::nullopt;
    }
    text.remove_prefix(static_cast<std::size_t>(end - text.data()));
    return number;
}

}  // namespace kivo
