#include "host/files/diagnosis.h"
#include "host/proof/pair_fields.h"
#include "host/proof/reading.h"
#include "host/system/open_file.h"
#include "host/text/numbers.h"
#include "native/ostrelix.h"

#include <algorithm>
#include <filesystem>
#include <iomanip>
#include <memory>
#include <span>
#include <sstream>
#include <stdexcept>
#include <vector>

namespace korlit::host {

namespace {

struct Stretch {
    std::int64_t start;
    std::int64_t end;
};

/// A file's bytes as far as they are loaded, and which of them were read. What isn't loaded takes
/// no memory.
struct FileBytes {
    std::string path;
    std::unique_ptr<OpenFile> file;
    std::int64_t size = 0;
    std::unique_ptr<char[]> bytes; // NOLINT(modernize-avoid-c-arrays): nobody sets them beforehand
    std::vector<Stretch> readStretches;
    FloatsInFile samples{};

    explicit FileBytes(const std::string& filePath) : path{filePath} {
        try {
            file = std::make_unique<OpenFile>(filePath, OpenFile::Use::Read);
            size = file->size();
        } catch (const std::filesystem::filesystem_error&) {
            fail();
        }
        bytes.reset(new char[static_cast<std::size_t>(size)]);
    }
    void load(std::int64_t place, std::int64_t length) const {
        const std::span part{bytes.get() + place, static_cast<std::size_t>(length)};
        try {
            if (file->read(place, std::as_writable_bytes(part)) != length) {
                fail();
            }
        } catch (const std::filesystem::filesystem_error&) {
            fail();
        }
    }
    void loadAll() const { load(0, size); }

    [[noreturn]] void fail() const {
        throw std::runtime_error{
            withDiagnosis("Error reading Merivolta file " + path, path, FileKind::Merivolta)};
    }
    /// Fails where the file ends ahead of it.
    const char* at(std::int64_t place, std::int64_t length) const {
        if (place < 0 || length < 0 || place > size - length) {
            fail();
        }
        return bytes.get() + place;
    }
    void markRead(std::int64_t place, std::int64_t length) {
        readStretches.push_back({.start = place, .end = place + length});
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
    file.markRead(0, file.size);
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
        file.markRead(place + static_cast<std::int64_t>(each.offset),
                      static_cast<std::int64_t>(text == nullptr ? each.size : text->size()));
        reading.entries.push_back({.key = {.part = each.part, .name = each.name, .peak = peak},
                                   .value = std::move(value)});
    }
}

void readSlice(Reading& reading, FileBytes& file) {
    // A small file is there with one call.
    constexpr std::int64_t smallSize = 64L * 1024;
    const bool isWhole = file.size <= smallSize;
    file.load(0, isWhole ? file.size : sliceDataOffset);
    const Slice slice = sliceIn(file);
    readFields(reading, file, 0, &slice.header, sliceFields);
    const std::int64_t byteCount = std::int64_t{sizeof(float)} * slice.header.PointCount;
    const char* samples = file.at(slice.dataOffset, byteCount);
    file.samples = {.file = file.file.get(), .place = slice.dataOffset};
    reading.signal = isWhole ? NumberView{AndiType::Float, samples, slice.header.PointCount}
                             : NumberView{file.samples, slice.header.PointCount};
    reading.signalFactor = slice.header.ScaleFactor;
    file.markRead(slice.dataOffset, byteCount);
    if (!isWhole) {
        const std::int64_t end = slice.dataOffset + byteCount;
        file.load(end, file.size - end);
    }
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
class Rest {
  public:
    void add(const char* bytes, std::int64_t place, std::int64_t end) {
        for (; place < end; ++place) {
            const char byte = bytes[place];
            digest = (digest ^ static_cast<std::uint8_t>(byte)) * prime;
            first = byte != '\0' && count == 0 ? place : first;
            count += byte != '\0' ? 1 : 0;
        }
    }
    /// As many zeros.
    void addZeros(std::int64_t length) {
        std::uint64_t power = prime;
        for (; length > 0; length /= 2, power *= power) {
            digest *= length % 2 == 1 ? power : 1;
        }
    }
    std::string words() const {
        std::ostringstream words;
        words << groupedDigits(count) << " bytes of " << std::hex << std::setfill('0')
              << std::setw(16) << digest << std::dec << ", the first at " << groupedDigits(first);
        return count == 0 ? "" : words.str();
    }

  private:
    static constexpr std::uint64_t prime = 0x100000001B3;
    std::uint64_t digest = 0xCBF29CE484222325;
    std::int64_t first = 0;
    std::int64_t count = 0;
};

/// Of what was not read; what was counts as zeros.
std::string wordsOfRest(FileBytes& file) {
    std::ranges::sort(file.readStretches, {}, &Stretch::start);
    Rest rest;
    std::int64_t place = 0;
    for (const auto& [start, end] : file.readStretches) {
        rest.add(file.bytes.get(), place, std::min(start, file.size));
        place = std::max(place, start);
        rest.addZeros(end - place);
        place = std::max(place, end);
    }
    rest.add(file.bytes.get(), place, file.size);
    return rest.words();
}

void addReservedBytes(Reading& reading, FileBytes& slice, FileBytes& report) {
    std::string words = wordsOfRest(slice);
    if (const std::string more = wordsOfRest(report); !more.empty()) {
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
    report.loadAll();
    Reading reading;
    reading.kind = FileKind::Merivolta;
    reading.memory = {slice};
    readSlice(reading, *slice);
    readReport(reading, report);
    addReservedBytes(reading, *slice, report);
    return reading;
}

} // namespace korlit::host
