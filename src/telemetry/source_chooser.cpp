#include "telemetry/source_chooser.h"

#include <algorithm>
#include <array>

namespace kivo {
namespace {

constexpr std::chrono::minutes kUnchangedWhenStuck{10};
// A processor that idles does not warm up; a load that moved by so many points does something to it.
constexpr int kLoadChange = 30;
constexpr int kMostLoad = 100;

// Nearest to a value first.
constexpr std::array<ReadingGap, 7> kNearestGaps{
    ReadingGap::Unbelievable, ReadingGap::Silent,  ReadingGap::NoRight,  ReadingGap::NotHandedOn,
    ReadingGap::NotRunning,   ReadingGap::NotRead, ReadingGap::NoSource,
};

}  // namespace

void StuckWatch::Note(double value, std::optional<int> load, std::chrono::nanoseconds now) {
    if (m_value != value) {
        m_value = value;
        m_since = now;
        m_leastLoad = kMostLoad;
        m_mostLoad = 0;
    }
    if (load) {
        m_leastLoad = std::min(m_leastLoad, *load);
        m_mostLoad = std::max(m_mostLoad, *load);
    }
    m_isStuck = now - m_since >= kUnchangedWhenStuck && m_mostLoad - m_leastLoad >= kLoadChange;
}

SourceChooser::SourceChooser(const std::vector<SourceId>& order) {
    for (const SourceId id : order) {
        m_sources.emplace_back().id = id;
    }
}

std::optional<std::size_t> SourceChooser::Find(SourceId id) const {
    const auto found = std::find_if(m_sources.begin(), m_sources.end(),
                                    [id](const Source& source) { return source.id == id; });
    return found == m_sources.end() ? std::nullopt
                                    : std::make_optional(std::size_t(found - m_sources.begin()));
}

bool SourceChooser::IsDue(SourceId source, std::chrono::nanoseconds now) const {
    const auto place = Find(source);
    if (!place) {
        return false;
    }
    const Source& asked = m_sources[*place];
    const bool isProbeDue = !asked.readAt || now - *asked.readAt >= kBetweenProbes;
    if (!m_speaker) {
        const bool isSearchNew = !m_searchesSince || now - *m_searchesSince < kLongestSilence;
        return asked.IsAwake() || isSearchNew || isProbeDue;
    }
    if (*place < *m_speaker) {
        return asked.IsAwake() || isProbeDue;
    }
    const Source& speaker = m_sources[*m_speaker];
    return *place == *m_speaker || !speaker.IsAnswering() ||
           speaker.IsNewsOlderThan(kBeforeOthersAreAsked, now);
}

void SourceChooser::Note(SourceId source, const Reading& said, std::optional<int> load,
                         std::chrono::nanoseconds now) {
    const auto place = Find(source);
    if (!place) {
        return;
    }
    Source& noted = m_sources[*place];
    const bool wasSilent = noted.IsSilent(now);
    noted.said = said.isStanding && wasSilent ? Reading::Without(ReadingGap::Silent, source) : said;
    noted.readAt = now;
    if (!noted.said.value) {
        noted.answersSince.reset();
        return;
    }
    // A source that was not asked for long begins anew.
    if (!noted.answersSince || wasSilent) {
        noted.answersSince = now;
    }
    if (said.isStanding) {
        return;
    }
    noted.answeredAt = now;
    noted.value = *said.value;
    noted.stuck.Note(*said.value, load, now);
}

Reading SourceChooser::Choose(std::chrono::nanoseconds now) {
    LetTheSilentGo(now);
    LetTheBestSpeak(now);
    if (!m_speaker) {
        return Gap();
    }
    const Source& speaker = m_sources[*m_speaker];
    Reading reading = Reading::Of(speaker.value, speaker.id);
    reading.isStuck = speaker.stuck.IsStuck();
    return reading;
}

void SourceChooser::LetTheSilentGo(std::chrono::nanoseconds now) {
    if (m_speaker && m_sources[*m_speaker].IsSilent(now)) {
        m_speaker.reset();
    }
}

void SourceChooser::LetTheBestSpeak(std::chrono::nanoseconds now) {
    const std::size_t places = m_speaker.value_or(m_sources.size());
    for (std::size_t place = 0; place < places; ++place) {
        const Source& source = m_sources[place];
        // An answer from long ago is none: the source was not asked since.
        const bool isAnswering = source.IsAnswering() && !source.IsSilent(now);
        const bool isTrusted = !m_speaker || now - *source.answersSince >= kAnswersBeforeItSpeaks;
        if (isAnswering && isTrusted) {
            m_speaker = place;
            m_lastSpeaker = source.id;
            break;
        }
    }
    if (m_speaker) {
        m_searchesSince.reset();
    } else if (!m_searchesSince) {
        m_searchesSince = now;
    }
}

// A source that spoke and is gone without a word has fallen silent.
Reading SourceChooser::Gap() const {
    Reading nearest = Reading::Without(m_sources.empty() ? ReadingGap::NoSource : ReadingGap::NotRead);
    bool isFound = false;
    const auto rank = [](ReadingGap gap) {
        return std::find(kNearestGaps.begin(), kNearestGaps.end(), gap) - kNearestGaps.begin();
    };
    for (const Source& source : m_sources) {
        if (!source.readAt) {
            continue;
        }
        const bool hasGone = source.id == m_lastSpeaker && source.said.gap == ReadingGap::NoSource;
        const ReadingGap gap = hasGone ? ReadingGap::Silent : source.said.gap;
        if (!isFound || rank(gap) < rank(nearest.gap)) {
            isFound = true;
            nearest = Reading::Without(gap, gap == ReadingGap::NoSource ? SourceId::None : source.id);
        }
    }
    return nearest;
}

SourceId SourceChooser::Speaker() const {
    return m_speaker ? m_sources[*m_speaker].id : SourceId::None;
}

}  // namespace kivo
