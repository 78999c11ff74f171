#include "dunvale/detection_codes.h"

#include "dunvale/point_index.h"
#include "platform/text.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <optional>

namespace korlit {

namespace {

enum class Code : std::uint8_t { None, Start, Stop };

/// What an event does by its type and the type of the event before: it may move the walk on to the
/// next peak, and writes a letter to that peak's code if it lies at the point of one of its times.
struct Transition {
    std::int32_t type;
    std::optional<std::int32_t> previousType; ///< nothing stands for any
    std::size_t step;
    Code code = Code::None;
    float Results::*time = nullptr;
    const char* letter = nullptr;
};

/// The first that fits an event holds; an event that none fits does nothing.
constexpr std::array<Transition, 8> transitions{{
    {1, 0, 0, Code::Start, &Results::StartTime, "B"},
    {1, {}, 1, Code::Start, &Results::StartTime, "B"},
    {2, 1, 0},
    {2, 5, 1, Code::Start, &Results::RetentionTime, "V"},
    {2, {}, 1, Code::Start, &Results::RetentionTime, "B"},
    {3, 2, 0, Code::Stop, &Results::EndTime, "B"},
    {5, 2, 0, Code::Stop, &Results::EndTime, "V"},
    {6, 2, 0, Code::Stop, &Results::EndTime, "B"},
}};

const Transition* transitionOf(std::int32_t type, std::int32_t previousType) {
    const auto* fitting = std::ranges::find_if(transitions, [&](const Transition& each) {
        return each.type == type && each.previousType.value_or(previousType) == previousType;
    });
    return fitting == transitions.end() ? nullptr : fitting;
}

} // namespace

void WalkPeakEvents(std::span<const Peaks> events, std::span<const Results> results,
                    std::int16_t sampleIntervalMs, char* startCodes, char* stopCodes) {
    std::size_t iPeak = 0;
    std::int32_t iPrevType = 0;
    for (const Peaks& event : events) {
        if (iPeak >= results.size()) {
            return;
        }
        const Transition* transition = transitionOf(event.EventType, iPrevType);
        iPrevType = event.EventType;
        if (transition == nullptr) {
            continue;
        }
        iPeak += transition->step;
        if (transition->code == Code::None || iPeak >= results.size()) {
            continue;
        }
        const float time = results[iPeak].*transition->time;
        if (pointIndex(timeInSamples(time, sampleIntervalMs)) == event.EventPoint) {
            char* codes = transition->code == Code::Start ? startCodes : stopCodes;
            lstrcpynA(codes + iPeak * detectionCodeSize, transition->letter, detectionCodeSize);
        }
    }
}

} // namespace korlit
