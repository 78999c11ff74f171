// Finds the values of an ANDI file that was read as conversions to a pair find them.
#pragma once

#include "host/proof/reading.h"
#include "native/native_state.h"

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace korlit::host {

class AndiLookup {
  public:
    explicit AndiLookup(const Reading& andi);

    /// The first value of that name, apart from separators; null if there is none.
    const Entry* find(std::string_view name) const;
    /// The text that a conversion makes of it where it has room for that many bytes; nothing if
    /// there is none.
    std::optional<std::string> text(std::string_view name, std::int32_t room = maxValueText) const;
    /// The values of a column of the peak table; none if there is no such column.
    std::span<const Entry> column(std::string_view name) const;

  private:
    /// The first value of each name, and that name: an attribute of a variable is found by its own.
    struct Head {
        const Entry* entry;
        const char* name;

        bool isOf(const std::string& key) const;
    };

    const AndiImage* image; ///< null for a file that isn't there, but is expected
    std::span<const Entry> entries;
    std::vector<Head> heads;
    std::vector<Head> columns; ///< those of the peak table
};

} // namespace korlit::host
