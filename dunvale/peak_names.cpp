#include "dunvale/peak_names.h"

#include "platform/text.h"

#include <algorithm>

namespace korlit {

void FillPeakNames(char* names, std::span<const Results> results,
                   std::span<const PeakWin> windows) {
    // Names are cut ahead of the field's last byte, so that none needs a terminator of its own.
    static_assert(peakNameSize < sizeof(PeakWin::WindowName));
    for (const Results& peak : results) {
        const float time = peak.RetentionTime;
        const auto window = std::ranges::find_if(windows, [time](const PeakWin& each) {
            return time >= each.WindowStart && time <= each.WindowEnd;
        });
        if (window != windows.end()) {
            lstrcpynA(names, window->WindowName, peakNameSize);
        }
        names += peakNameSize;
    }
}

} // namespace korlit
