#include "dunvale/peak_names.h"

#include "platform/text.h"

#include <algorithm>

namespace korlit {

const PeakWin* windowOf(float retentionTime, std::span<const PeakWin> windows) {
    const auto window = std::ranges::find_if(windows, [&](const PeakWin& each) {
        return retentionTime >= each.WindowStart && retentionTime <= each.WindowEnd;
    });
    return window == windows.end() ? nullptr : &*window;
}

void FillPeakNames(char* names, std::span<const Results> results,
                   std::span<const PeakWin> windows) {
    // Names are cut ahead of the field's last byte, so that none needs a terminator of its own.
    static_assert(peakNameSize < sizeof(PeakWin::WindowName));
    for (const Results& peak : results) {
        const PeakWin* window = windowOf(peak.RetentionTime, windows);
        if (window != nullptr) {
            lstrcpynA(names, window->WindowName, peakNameSize);
        }
        names += peakNameSize;
    }
}

} // namespace korlit
