// A signal that outlives the data set which looks at it.
#pragma once

#include "host/data/data_set.h"

#include <vector>

namespace korlit::test {

struct Signal {
    std::vector<double> values;
    std::vector<double> times{}; ///< seconds; empty where samples have none of their own

    /// The data set of a file, or of the channel of a run.
    host::DataSet set(int channel = 0) const {
        host::DataSet set;
        set.source = channel == 0 ? "a.cdf" : "a.run";
        set.kind = channel == 0 ? host::FileKind::Andi : host::FileKind::Dunvale;
        set.channel = channel;
        set.signal = {AndiType::Double, values.data(), values.size()};
        set.times = {AndiType::Double, times.data(), times.size()};
        set.minutesPerTime = 1.0 / 60;
        set.isUniform = times.empty();
        set.samplingInterval = times.empty() ? 0.25 : 0;
        return set;
    }
};

} // namespace korlit::test
