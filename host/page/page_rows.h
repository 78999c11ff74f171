// A file's row of a page.
#pragma once

#include "host/manifest/record.h"

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace korlit::host {

/// What a page says of a file in a word.
struct PageVerdict {
    const char* id; ///< its class, by which the style gives it a sign
    const char* words;
};

/// All of them, those first that a reader should see first.
const std::array<PageVerdict, 5>& pageVerdicts();
const PageVerdict& pageVerdictOf(const FileRecord& record);

/// What the rows of a page have in common.
struct RowSetting {
    std::size_t stretches = 0;  ///< of each chart
    bool areAllDrawn = true;    ///< else the first channel of a file alone
    std::size_t chartCount = 0; ///< drawn so far: the number of the next
};

/// `folder` is that of the batch: what lies below it is named from there.
std::string rowOf(const FileRecord& record, const std::string& folder, RowSetting& setting);

} // namespace korlit::host
