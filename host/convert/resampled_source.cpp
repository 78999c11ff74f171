#include "host/convert/resampled_source.h"

#include <system_error>

namespace korlit::host {

ResampledSource::ResampledSource(const Plan& sourcePlan,
                                 const std::optional<std::int16_t>& intervalMs,
                                 const std::filesystem::path& stage)
    : source{sourcePlan.source}, taken{sourcePlan} {
    if (!intervalMs || !formatOf(taken.kind).isAndi) {
        return;
    }
    const std::filesystem::path file = stage / "resampled";
    resampled = writeResampled(source, *intervalMs, file.string());
    if (resampled) {
        taken.source = file.string();
        taken.sources.front().path = file;
    }
}

ResampledSource::~ResampledSource() {
    if (resampled) {
        std::error_code ignored;
        std::filesystem::remove(taken.source, ignored);
    }
}

std::string ResampledSource::withTruePath(std::string words) const {
    const std::size_t place = resampled ? words.find(taken.source) : std::string::npos;
    return place == std::string::npos ? words : words.replace(place, taken.source.size(), source);
}

Prospect ResampledSource::prospect(Wanted wanted) const {
    return resampled ? prospectOfResampled(taken.source, *resampled, wanted)
                     : prospectOf(source, taken.kind, wanted);
}

} // namespace korlit::host
