#include "platform/faults.h"

#ifdef KORLIT_FAULTS

namespace korlit {

namespace {

struct ArmedFault {
    FaultPoint point = FaultPoint::Allocate;
    FaultKind kind = FaultKind::None;
    std::int64_t arrivalsLeft = 0;
    bool hasStruck = false;
};

ArmedFault armed;
std::int64_t heldBlocks = 0;
std::int64_t heldFiles = 0;
std::int64_t heldLibraries = 0;

} // namespace

void armFault(FaultPoint point, std::int64_t nth, FaultKind kind) {
    armed = {.point = point, .kind = kind, .arrivalsLeft = nth};
}

bool disarmFault() {
    const bool hasStruck = armed.hasStruck;
    armed = {};
    return hasStruck;
}

FaultKind faultAt(FaultPoint point) {
    if (armed.kind == FaultKind::None || armed.point != point) {
        return FaultKind::None;
    }
    --armed.arrivalsLeft;
    armed.hasStruck = armed.hasStruck || armed.arrivalsLeft == 0;
    return armed.arrivalsLeft == 0 ? armed.kind : FaultKind::None;
}

std::int64_t heldBlockCount() {
    return heldBlocks;
}
std::int64_t heldFileCount() {
    return heldFiles;
}
std::int64_t heldLibraryCount() {
    return heldLibraries;
}
void countHeldBlocks(std::int64_t change) {
    heldBlocks += change;
}
void countHeldFiles(std::int64_t change) {
    heldFiles += change;
}
void countHeldLibraries(std::int64_t change) {
    heldLibraries += change;
}

} // namespace korlit

#endif
