// An ANDI file in the making, as it is expected of a pair or of a channel of a run. The names of
// their fields are alike.
#pragma once

#include "datetime/stamp.h"
#include "host/proof/change_rules.h"
#include "host/proof/expected_values.h"

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

namespace korlit::host {

/// The source, what is said of its values, and how they are found.
class AndiMaking {
  public:
    AndiMaking(const Reading& source, Wanted wanted);

    const Reading& source;
    ExpectedValues values;

    /// The first of that name, in any part or in one; null where the source has none.
    const Entry* find(std::string_view name, std::size_t peak = 0,
                      std::string_view part = {}) const;
    double number(std::string_view name, std::size_t peak = 0) const; ///< 0 for none
    std::string text(std::string_view name, std::size_t peak = 0) const;

    /// Says of a value that it goes nowhere, if the source has it.
    void leave(std::string_view name, std::size_t peak, const ChangeRule& rule,
               const std::string& words);
    /// Each value that nothing was said of has no place.
    void leaveRest();

  private:
    std::vector<const Entry*> byPeak;
    std::vector<std::size_t> starts; ///< in it, by the number of the peak
};

/// What comes from which field of the source, and why it isn't the same there.
struct Origin {
    const char* name;
    const char* field;
    const ChangeRule* rule;
};

/// What pairs and runs say in ways of their own.
struct OwnTexts {
    StampFields date;
    std::string sampleName;
    std::string operatorName;
    std::string detectorUnit;
    std::string separationType;
    std::string sourceFile;
    std::vector<Origin> origins; ///< of what else there is
    std::vector<const char*> dateFields;
    const char* peakCountField;
};

/// Has said of all but the peaks what becomes of it: attributes, scalars, dimensions and signal.
void expectTemplate(AndiMaking& making, const OwnTexts& texts);

} // namespace korlit::host
