#include "host/manifest/file_facts.h"

#include "host/data/facts.h"
#include "host/text/stamps.h"

namespace korlit::host {

namespace {

RecordedChannel channelOf(const DataSet& set, int number) {
    RecordedChannel channel{.number = number,
                            .unit = set.detectorUnit,
                            .points = static_cast<std::int64_t>(set.signal.size()),
                            .times = {},
                            .values = {},
                            .peaks = {},
                            .outline = outlineOf(set.signal)};
    if (hasTimes(set)) {
        channel.times = {set.timeOf(0), set.timeOf(0) + set.runTime()};
    }
    if (const auto extremes = extremesOf(set.signal, isFinite)) {
        channel.values = {set.signal[extremes->minimum], set.signal[extremes->maximum]};
    }
    for (const Peak& peak : set.peaks) {
        channel.peaks.push_back({.name = peak.name, .time = peak.retentionTime});
    }
    return channel;
}

} // namespace

void describe(FileRecord& record, const std::vector<DataSet>& sets) {
    const DataSet& first = sets.front();
    const std::string injected = first.text("injection_date_time_stamp");
    const auto stamp = stampIn(injected);
    record.sample = first.text("sample_name");
    record.operatorName = first.text("operator_name");
    record.date = stamp ? stamp->isoText() : injected;
    for (const DataSet& set : sets) {
        const int number = sets.size() == 1 ? 0 : static_cast<int>(record.channels.size()) + 1;
        record.channels.push_back(channelOf(set, number));
    }
}

} // namespace korlit::host
