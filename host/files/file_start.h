// The start of a file, by which its format is recognised.
#pragma once

#include "dunvale/run_records.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

namespace korlit::host {

struct FileStart {
    /// As far as any format's test looks; zero behind the end of the file.
    std::array<char, sizeof(RunFileHead) + sizeof(RunInfo) + 2 + sizeof(SliHeadP)> bytes{};
    std::int64_t length = 0;   ///< of what is in `bytes`
    std::int64_t fileSize = 0; ///< of the whole file

    std::string_view text() const { return {bytes.data(), static_cast<std::size_t>(length)}; }

    template <typename Record>
    Record recordAt(std::size_t place) const {
        Record record{};
        std::memcpy(&record, bytes.data() + place, sizeof record);
        return record;
    }
};

/// Whether a file begins with the version of a Dunvale run, which runs have for a signature.
bool hasRunVersion(const FileStart& start);

/// An empty one of what is no regular file or can't be read.
FileStart startOf(const std::string& file);

} // namespace korlit::host
