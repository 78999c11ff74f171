// Finds the values of an ANDI file that was read as conversions to a pair find them.
#pragma once

#include "host/proof/reading.h"

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
    /// The values of a column of the peak table; none if there is no such column.
    std::span<const Entry> column(std::string_view name) const;

  private:
    /// The first value of each name, and that name: an attribute of a variable is found by its own.
    struct Head {
        const Entry* entry;
        const char* name;

        bool isOf(const std::string& key) const;
    };

    std::span<const Entry> entries;
    std::vector<Head> heads;
};

/// A value as the text that a conversion makes of it, numbers with six digits; nothing of null.
std::optional<std::string> textOf(const Entry* entry);

} // namespace korlit::host
