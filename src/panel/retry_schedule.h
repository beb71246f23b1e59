#pragma once

// When something that a panel refused is sent again: after 1 s, 2, 5, 15, then every 60. A plain value.

#include <algorithm>
#include <array>
#include <chrono>

namespace kivo {

class RetrySchedule {
public:
    // now: any clock that never runs backwards, the same in all calls.
    bool IsDue(std::chrono::milliseconds now) const { return m_failures == 0 || now >= m_next; }
    void NoteFailure(std::chrono::milliseconds now) {
        m_next = now + kDelays.at(std::min(m_failures, kDelays.size() - 1));
        ++m_failures;
    }
    bool HasFailed() const { return m_failures != 0; }

private:
    static constexpr std::array<std::chrono::seconds, 5> kDelays{
        std::chrono::seconds(1), std::chrono::seconds(2), std::chrono::seconds(5), std::chrono::seconds(15),
        std::chrono::seconds(60)};

    std::size_t m_failures = 0;
    std::chrono::milliseconds m_next{0};
};

}  // namespace kivo
