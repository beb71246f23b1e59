#pragma once

// Whose word counts for a quantity, of several sources that may measure it. Values only: the caller hands in
// what the sources say, and when. One thread.

#include <chrono>
#include <cstddef>
#include <optional>
#include <vector>

#include "telemetry/reading.h"

namespace kivo {

// A source that says the same for ten minutes while the processor's load has changed is stuck.
class StuckWatch {
public:
    // The newest value, and the load of all processors in percent where it is known.
    void Note(double value, std::optional<int> load, std::chrono::nanoseconds now);
    bool IsStuck() const { return m_isStuck; }

private:
    std::optional<double> m_value;
    std::chrono::nanoseconds m_since{0};
    int m_leastLoad = 100;  // above the other one: none was known
    int m_mostLoad = 0;
    bool m_isStuck = false;
};

class SourceChooser {
public:
    // After so long a source that is better than the speaker takes over.
    static constexpr std::chrono::seconds kAnswersBeforeItSpeaks{3};
    // After so long without anything new from the speaker the worse ones are asked too.
    static constexpr std::chrono::seconds kBeforeOthersAreAsked{3};
    static constexpr std::chrono::seconds kBetweenProbes{10};

    // The sources that may speak, the best first.
    explicit SourceChooser(const std::vector<SourceId>& order);

    // Whether a source is to be read at this moment: the speaker always; a better one every ten seconds, and
    // always once it answers; a worse one while the speaker does not answer, or has told nothing new for
    // three seconds. While nobody speaks, all are read for ten seconds and every ten seconds then.
    bool IsDue(SourceId source, std::chrono::nanoseconds now) const;

    // What a source said when it was read; one that is not in the order says nothing.
    void Note(SourceId source, const Reading& said, std::optional<int> load, std::chrono::nanoseconds now);

    // Decides who speaks, after all that were due have been noted. The reading of the speaker, who is
    // believed for kLongestSilence after the last new value; else the reason why there is none, of the source
    // that came nearest to one.
    Reading Choose(std::chrono::nanoseconds now);

    // None: nobody does.
    SourceId Speaker() const;

private:
    struct Source {
        SourceId id = SourceId::None;
        Reading said = {};
        std::optional<std::chrono::nanoseconds> readAt = {};
        std::optional<std::chrono::nanoseconds> answersSince = {};  // without a break
        std::optional<std::chrono::nanoseconds> answeredAt = {};    // with a new value
        double value = 0.0;                                         // the last there was
        StuckWatch stuck = {};

        bool IsAnswering() const { return answersSince.has_value(); }
        bool IsNewsOlderThan(std::chrono::nanoseconds age, std::chrono::nanoseconds now) const {
            return !answeredAt || now - *answeredAt >= age;
        }
        bool IsSilent(std::chrono::nanoseconds now) const { return IsNewsOlderThan(kLongestSilence, now); }
        // It answers, or measures between two samples and has taken the first.
        bool IsAwake() const { return IsAnswering() || (readAt && said.gap == ReadingGap::NotRead); }
    };

    std::optional<std::size_t> Find(SourceId id) const;
    void LetTheSilentGo(std::chrono::nanoseconds now);
    void LetTheBestSpeak(std::chrono::nanoseconds now);
    Reading Gap() const;

    std::vector<Source> m_sources;
    std::optional<std::size_t> m_speaker;
    SourceId m_lastSpeaker = SourceId::None;
    std::optional<std::chrono::nanoseconds> m_searchesSince;  // without a speaker
};

}  // namespace kivo
