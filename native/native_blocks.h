// The memory of a Merivolta data set on its way.
#pragma once

#include "native/native_records.h"
#include "platform/global_memory.h"

namespace korlit {

/// The blocks of a data set, each with its handle; null where there is none. What they still hold
/// goes with them.
struct NativeBlocks {
    GlobalHandle dataHandle = nullptr;
    float* data = nullptr; ///< PointCount samples
    GlobalHandle peakHandle = nullptr;
    PeakRecord* peaks = nullptr; ///< PeakCount records

    NativeBlocks() = default;
    NativeBlocks(const NativeBlocks&) = delete;
    NativeBlocks& operator=(const NativeBlocks&) = delete;
    ~NativeBlocks() {
        releaseBlock(dataHandle, data);
        releaseBlock(peakHandle, peaks);
    }
};

} // namespace korlit
