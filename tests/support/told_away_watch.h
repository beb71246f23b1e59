#pragma once

// A system that tells what the test says.

#include "session/away_watch.h"

namespace kivo::test {

class ToldAwayWatch final : public AwayWatch {
public:
    void HoldSleep(bool hold) override { holdsSleep = hold; }
    void LetSleep() override { ++timesLet; }
    std::chrono::milliseconds LongestInSleeping() const override { return longestInSleeping; }

    bool holdsSleep = false;
    int timesLet = 0;
    std::chrono::milliseconds longestInSleeping{0};
};

}  // namespace kivo::test
