// What a data set holds, value by value, read from the bytes of its own files and not by the code
// that writes them.
#pragma once

#include "host/files/andi_image.h"
#include "host/files/formats.h"
#include "host/files/number_view.h"

#include <compare>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace korlit::host {

/// Nothing, a number (of whatever width the file gives it: each is a double without loss) or a
/// text. Several numbers under one name are a text of all of them, each with all of its digits.
using Value = std::variant<std::monostate, double, std::string>;

/// Whether two values are the same to the last bit, a zero's sign and a NaN's bits included.
bool areSame(const Value& a, const Value& b);

/// The parts of a data set.
namespace parts {
constexpr const char* signal = "signal"; ///< numbers that go with the samples
constexpr const char* peaks = "peaks";
constexpr const char* texts = "texts";           ///< of an ANDI file its attributes
constexpr const char* dimensions = "dimensions"; ///< of an ANDI file: their lengths
constexpr const char* records = "records";       ///< of an ANDI file: what no conversion finds
constexpr const char* layout = "layout";         ///< of an ANDI file: its bytes around the values
constexpr const char* windows = "windows";       ///< of a run: its first table of peak windows
constexpr const char* windows2 = "windows2";     ///< the second
} // namespace parts

/// The name of what stands in a pair where nothing has a meaning.
constexpr const char* reservedBytes = "reserved bytes";

/// Names one value of a data set. What isn't in a table of names lies in the memory of its reading.
struct ValueKey {
    std::string_view part; ///< one of `parts`
    std::string_view name; ///< as its format names it, with a NUL behind it
    std::size_t peak = 0;  ///< or window, from 1; 0 for what there is one of

    auto operator<=>(const ValueKey&) const = default;
};

/// What views of it lie in, for as long as any of these is there.
using Memory = std::vector<std::shared_ptr<const void>>;

struct Entry {
    ValueKey key;
    Value value;
};

/// All of one data set: of a run, one channel.
struct Reading {
    FileKind kind = FileKind::Unknown;
    int channel = 0;                  ///< of a run, from 1; 0 where a file holds one signal
    std::vector<Entry> entries;       ///< in the order of the file, each key once
    NumberView signal;                ///< the samples as they are stored
    double signalFactor = 1;          ///< a stored sample times this is one in the detector's unit
    Memory memory;                    ///< what names and samples lie in
    const AndiImage* image = nullptr; ///< of an ANDI file: as it was loaded
    /// Of an ANDI file: what a reader of netCDF may stumble over, though conversions read it.
    std::string layoutProblem{};
};

/// Whether the layout of an ANDI file is looked at: that of an output must be held to it.
enum class Layout : std::uint8_t { LookedAt, Ignored };

/// Reads an ANDI file: each global attribute; each variable, a column of the peak table as a value
/// a peak, with its attributes as "variable:attribute" behind it; each dimension's length. That is
/// the order in which a conversion looks for a name. Throws a runtime_error with the words for the
/// user where it can't be read; so do the other two.
Reading readAndi(const std::string& file, Layout layout = Layout::LookedAt);
/// The same of a file in memory, which must outlive the reading.
Reading readingOf(const AndiImage& image);

/// Reads a Merivolta pair by the records of its two files, each field that is in them: a short
/// record of a peak has no baseline, no second area percent and no amount. Bytes to which nothing
/// gives a meaning are one text, "reserved bytes", where any isn't zero. The sibling library is
/// asked only about versions that this one doesn't write. The samples of a long one stay in its
/// file, which is read when they are looked at.
Reading readPair(const std::string& sliceFile);

/// Reads a Dunvale run, a data set for each channel, by the fields of its records: each has what is
/// said of the run, too. What the file ends ahead of is zero, as it is for a conversion. The points
/// and types of the events are a text each. Of the tables that have no meaning there is the count
/// of records, where it isn't 0; and each text of the time table that isn't empty.
std::vector<Reading> readRun(const std::string& file);

/// Reads a file of any kind: one data set, of a run one for each channel. What isn't recognised is
/// taken for ANDI, which has words for it.
std::vector<Reading> readingsOf(const std::string& file, FileKind kind,
                                Layout layout = Layout::LookedAt);

} // namespace korlit::host
