// The memory of a Merivolta data set on its way.
#pragma once

#include "native/native_records.h"
#include "platform/global_memory.h"

namespace korlit {

/// The blocks of a data set, each with its handle; null where there is none.
struct NativeBlocks {
    GlobalHandle dataHandle;
    float* data; ///< PointCount samples
    GlobalHandle peakHandle;
    PeakRecord* peaks; ///< PeakCount records
};

} // namespace korlit
