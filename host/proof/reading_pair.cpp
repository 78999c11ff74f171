#include "host/files/diagnosis.h"
#include "host/proof/pair_fields.h"
#include "host/proof/reading.h"
#include "host/text/numbers.h"
#include "native/ostrelix.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iomanip>
#include <span>
#include <sstream>
#include <stdexcept>

namespace korlit::host {

namespace {

/// A file's bytes, and what is left of them when all that was read is wiped out.
struct FileBytes {
    std::string path;
    std::string bytes;
    std::string rest;

    explicit FileBytes(const std::string& file) : path{file} {
        std::error_code error;
        const auto size = std::filesystem::file_size(file, error);
        bytes.resize(error ? 0 : size);
        std::ifstream in{file, std::ios::binary};
        if (!in.read(bytes.data(), std::ssize(bytes)) || error) {
            fail();
        }
        rest = bytes;
    }

    [[noreturn]] void fail() const {
        throw std::runtime_error{
            withDiagnosis("Error reading Merivolta file " + path, path, FileKind::Merivolta)};
    }
    /// Fails where the file ends ahead of it.
    const char* at(std::int64_t place, std::int64_t size) const {
        if (place < 0 || size < 0 || place > std::ssize(bytes) - size) {
            fail();
        }
        return bytes.data() + place;
    }
    void wipe(std::int64_t place, std::int64_t size) {
        std::fill_n(rest.begin() + place, size, '\0');
    }
    template <typename Record>
    Record recordAt(std::int64_t place) const {
        Record record{};
        std::memcpy(&record, at(place, sizeof record), sizeof record);
        return record;
    }
};

/// The sibling library for as long as it is needed.
struct Sibling {
    LibraryHandle library = LoadLibraryA(ostrelixName);

    Sibling() = default;
    Sibling(const Sibling&) = delete;
    Sibling& operator=(const Sibling&) = delete;
    ~Sibling() { FreeLibrary(library); }

    template <typename Entry>
    Entry entry(const EntryPointNames& names, const FileBytes& file) const {
        const auto found = library == nullptr ? nullptr : entryPoint<Entry>(library, names);
        return found == nullptr ? (file.fail(), nullptr) : found;
    }
};

struct Slice {
    SliHeader header;
    std::int64_t dataOffset;
};

/// Another version may have its header and its samples elsewhere.
Slice foreignSlice(FileBytes& file) {
    const Sibling sibling;
    Slice slice{};
    std::uint32_t offset = 0;
    sibling.entry<ReadChromHeaderEntry>(readChromHeaderNames, file)(file.path.c_str(),
                                                                    &slice.header, 0);
    const auto dataOffset = sibling.entry<GetSliDataOffSetEntry>(getSliDataOffSetNames, file);
    if (dataOffset(slice.header.FormatVersion, &offset) == 0) {
        throw std::runtime_error{"The version of the file " + file.path + " is not known"};
    }
    slice.dataOffset = offset;
    file.rest.assign(file.rest.size(), '\0');
    return slice;
}

Slice sliceIn(FileBytes& file) {
    const Slice slice{.header = file.recordAt<SliHeader>(0), .dataOffset = sliceDataOffset};
    return slice.header.FormatVersion == sliceFormatVersion ? slice : foreignSlice(file);
}

RepHeader reportHeaderIn(const FileBytes& file) {
    auto header = file.recordAt<RepHeader>(0);
    if ((header.ReportFlags & headerRevisionMask) >> headerRevisionShift < currentHeaderRevision) {
        const Sibling sibling;
        CFile report;
        const auto update = sibling.entry<UpdateRepHeaderEntry>(updateRepHeaderNames, file);
        if (!report.Open(file.path.c_str())) {
            file.fail();
        }
        update(&report, &header, 0);
    }
    return header;
}

/// Reads the fields of a record that stands at a place in the file.
void readFields(Reading& reading, FileBytes& file, std::int64_t place, const void* record,
                std::span<const RecordField> fields, std::size_t peak = 0) {
    for (const RecordField& each : fields) {
        const char* field = static_cast<const char*>(record) + each.offset;
        Value value = each.valueAt(field, each.size);
        const auto* text = std::get_if<std::string>(&value);
        file.wipe(place + static_cast<std::int64_t>(each.offset),
                  std::ssize(text == nullptr ? std::string(each.size, ' ') : *text));
        reading.entries.push_back({.key = {.part = each.part, .name = each.name, .peak = peak},
                                   .value = std::move(value)});
    }
}

void readSlice(Reading& reading, FileBytes& file) {
    const Slice slice = sliceIn(file);
    readFields(reading, file, 0, &slice.header, sliceFields);
    const std::int64_t byteCount = std::int64_t{sizeof(float)} * slice.header.PointCount;
    reading.signal =
        NumberView{AndiType::Float, file.at(slice.dataOffset, byteCount), slice.header.PointCount};
    reading.signalFactor = slice.header.ScaleFactor;
    file.wipe(slice.dataOffset, byteCount);
}

void readPeaks(Reading& reading, FileBytes& file, std::int64_t place, int count, bool isLong) {
    const std::int64_t size = isLong ? std::int64_t{sizeof(PeakRecord)} : shortPeakRecordSize;
    const auto fieldCount = std::ranges::count_if(peakFields, [&](const RecordField& field) {
        return static_cast<std::int64_t>(field.offset) < size;
    });
    const auto fields = std::span{peakFields}.first(static_cast<std::size_t>(fieldCount));
    for (std::size_t peak = 1; count > 0; --count, ++peak, place += size) {
        readFields(reading, file, place, file.at(place, size), fields, peak);
    }
}

void readReport(Reading& reading, FileBytes& file) {
    const RepHeader header = reportHeaderIn(file);
    readFields(reading, file, 0, file.at(0, sizeof header), reportFields);
    const std::int64_t place = header.ResultsOffset;
    const auto results = file.recordAt<ResHeader>(place);
    readFields(reading, file, place, &results, resultFields);
    readPeaks(reading, file,
              place + std::int64_t{sizeof results} + peakTableEntrySize * results.PeakTableCount,
              results.PeakCount, (header.ReportFlags & longPeakRecords) != 0);
}

/// "12 bytes of 1a2b3c4d5e6f7081, the first at 114": their count and a digest (FNV-1a) of them and
/// of their places.
std::string wordsOfRest(const std::string& rest) {
    constexpr std::uint64_t start = 0xCBF29CE484222325;
    constexpr std::uint64_t prime = 0x100000001B3;
    const auto isUsed = [](char byte) { return byte != '\0'; };
    const auto first = std::ranges::find_if(rest, isUsed);
    if (first == rest.end()) {
        return "";
    }
    std::uint64_t digest = start;
    for (const char byte : rest) {
        digest = (digest ^ static_cast<std::uint8_t>(byte)) * prime;
    }
    std::ostringstream words;
    words << groupedDigits(std::ranges::count_if(rest, isUsed)) << " bytes of " << std::hex
          << std::setfill('0') << std::setw(16) << digest << std::dec << ", the first at "
          << groupedDigits(first - rest.begin());
    return words.str();
}

void addReservedBytes(Reading& reading, const FileBytes& slice, const FileBytes& report) {
    std::string words = wordsOfRest(slice.rest);
    if (const std::string more = wordsOfRest(report.rest); !more.empty()) {
        words += (words.empty() ? "" : "; ") + ("in the report " + more);
    }
    if (!words.empty()) {
        reading.entries.push_back(
            {.key = {.part = parts::texts, .name = reservedBytes}, .value = words});
    }
}

} // namespace

Reading readPair(const std::string& sliceFile) {
    const auto files = formatOf(FileKind::Merivolta).sourceFiles(sliceFile);
    const auto slice = std::make_shared<FileBytes>(sliceFile);
    FileBytes report{files.back().path.string()};
    Reading reading;
    reading.kind = FileKind::Merivolta;
    reading.memory = slice;
    readSlice(reading, *slice);
    readReport(reading, report);
    addReservedBytes(reading, *slice, report);
    slice->rest.clear();
    slice->rest.shrink_to_fit();
    return reading;
}

} // namespace korlit::host
