#include "host/files/origin.h"

#include "host/files/andi_image.h"
#include "host/files/extensions.h"
#include "host/files/recognise.h"
#include "host/system/file_identity.h"
#include "native/native_records.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <fstream>
#include <string>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

/// What the start of a file of a pair can be compared as.
template <std::size_t size>
using Bytes = std::array<char, size>;

template <typename Record, std::size_t size>
Record recordAt(const Bytes<size>& bytes, std::size_t place) {
    Record record{};
    std::memcpy(&record, bytes.data() + place, sizeof record);
    return record;
}

template <std::size_t size, typename Record>
void put(Bytes<size>& bytes, std::size_t place, const Record& record) {
    std::memcpy(bytes.data() + place, &record, sizeof record);
}

/// The start of a file, with zeros behind its end.
template <std::size_t size>
Bytes<size> startOfPairFile(const fs::path& file) {
    Bytes<size> bytes{};
    std::ifstream{file, std::ios::binary}.read(bytes.data(), size);
    return bytes;
}

/// A conversion fills these fields of a slice file and leaves all others as they are here.
bool isSliceAsConverted(const fs::path& file) {
    const auto there = startOfPairFile<sliceDataOffset>(file);
    SliHeader made = recordAt<SliHeader>(there, 0);
    std::ranges::fill(made.reserved52, std::uint8_t{0});
    std::ranges::fill(made.reserved57, std::uint8_t{0});
    std::ranges::fill(made.reserved87, std::uint8_t{0});
    std::ranges::fill(made.reserved114, std::uint8_t{0});
    std::ranges::fill(made.reserved1826, std::uint8_t{0});
    made.FormatVersion = sliceFormatVersion;
    made.ScaleFactor = 1;
    made.SeparationType = 0;
    Bytes<sliceDataOffset> due{};
    put(due, 0, made);
    return there == due;
}

bool isReportAsConverted(const fs::path& file) {
    const auto there = startOfPairFile<sizeof(RepHeader) + sizeof(ResHeader)>(file);
    RepHeader head{};
    head.ReportFlags = writtenReportFlags;
    head.ResultsOffset = sizeof head;
    head.ResultsSize = recordAt<RepHeader>(there, 0).ResultsSize;
    ResHeader results = recordAt<ResHeader>(there, sizeof head);
    std::ranges::fill(results.reserved17, std::uint8_t{0});
    auto due = there;
    put(due, 0, head);
    put(due, sizeof head, results);
    return there == due;
}

bool isAsConverted(const fs::path& pairFile) {
    return hasExtension(pairFile, reportExtension) ? isReportAsConverted(pairFile)
                                                   : isSliceAsConverted(pairFile);
}

/// The source_file_reference; empty if there is none or the file can't be read.
std::string referenceOf(const fs::path& andiFile) {
    AndiImage image;
    return loadHeader(image, andiFile.string()).empty()
               ? textOf(image, "source_file_reference").value_or("")
               : "";
}

/// Of a path as any system writes them.
fs::path lastPart(const std::string& reference) {
    return reference.substr(reference.find_last_of("/\\") + 1);
}

bool isSameFile(const fs::path& file, const fs::path& other) {
    const auto identity = identityOf(file);
    return identity && identity == identityOf(other);
}

/// A reference is as the user wrote the path in some folder, and the files may have moved since,
/// most likely together.
bool isNamedBy(const Plan& andiPlan, const fs::path& pairFile) {
    const std::string reference = referenceOf(andiPlan.source);
    if (reference.empty()) {
        return false;
    }
    const fs::path name = lastPart(reference);
    const bool isPair = hasExtension(name, sliceExtension);
    return isSameFile(reference, pairFile) ||
           isSameFile(fs::path{andiPlan.source}.replace_filename(name), pairFile) ||
           (isPair && name.stem() == pairFile.stem() && !isAsConverted(pairFile));
}

} // namespace

bool canBeMadeFrom(const Plan& plan, const fs::path& target) {
    return formatOf(plan.kind).isAndi
               ? isAsConverted(target)
               : lastPart(referenceOf(target)) == fs::path{plan.source}.filename();
}

bool isOfInstrument(const Plan& plan, const fs::path& target) {
    if (!formatOf(plan.kind).isAndi) {
        return false;
    }
    const fs::path slice = besideWith(target, sliceExtension);
    return recognise(slice.string()) == FileKind::Merivolta && !isSliceAsConverted(slice);
}

bool isOrigin(const Plan& plan, const fs::path& target) {
    if (formatOf(plan.kind).isAndi) {
        return isNamedBy(plan, target);
    }
    // Its report may have been worked on since.
    if (!formatOf(plan.kind).isFromAndi || !isAsConverted(plan.source)) {
        return false;
    }
    AndiImage image;
    return loadHeader(image, target.string()).empty() && !canBeMadeFrom(plan, target);
}

} // namespace korlit::host
