// What a manifest keeps: a line for each batch and one for each of its files, in JSON.
#pragma once

#include "host/manifest/digest.h"
#include "host/manifest/outline.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace korlit::host {

struct BatchRecord {
    std::string batch;                  ///< tells it from any other
    std::string time;                   ///< when it began, in ISO 8601 with the zone
    std::string version;                ///< of the command
    std::string machine;                ///< the name of the one that it ran on
    std::string folder;                 ///< in which it was started, from the root
    std::vector<std::string> arguments; ///< as they were given
    std::size_t fileCount = 0;          ///< that it set out to convert
};

struct RecordedFile {
    std::string path; ///< from the root
    std::optional<FileDigest> digest{};
};

/// All that one rule changed.
struct RecordedChange {
    std::string rule;
    std::string words;
    std::int64_t count = 0;
};

/// What came of the comparison of a source with its outputs.
struct RecordedVerdict {
    std::string words;
    bool isSame = false;
    std::vector<RecordedChange> expected;
    std::vector<std::string> unexpected; ///< the words of each
};

struct RecordedPeak {
    std::string name;
    std::optional<double> time; ///< minutes
};

struct RecordedChannel {
    int number = 0; ///< of a run, from 1; 0 where a file holds one signal
    std::string unit;
    std::int64_t points = 0;
    std::optional<std::pair<double, double>> times;  ///< minutes, of the first sample and the end
    std::optional<std::pair<double, double>> values; ///< the least and the greatest, in the unit
    std::vector<RecordedPeak> peaks;
    Outline outline;
};

struct FileRecord {
    std::string batch;
    std::string time;   ///< when the result was there
    std::string kind;   ///< of the source
    std::string result; ///< converted, skipped, failed
    std::string message;
    std::vector<RecordedFile> sources; ///< one at least
    std::vector<RecordedFile> outputs;
    std::optional<RecordedVerdict> verdict{};
    std::vector<std::string> losses;
    std::vector<std::string> warnings;
    std::string sample;
    std::string operatorName;
    std::string date; ///< of the injection, in ISO 8601 where the file has a stamp
    std::vector<RecordedChannel> channels;

    bool isConverted() const { return result == "converted"; }
};

std::string lineOf(const BatchRecord& batch);
std::string lineOf(const FileRecord& file);

using ManifestRecord = std::variant<BatchRecord, FileRecord>;

/// The record of a line; nothing where it holds none, as when it was cut.
std::optional<ManifestRecord> recordIn(const std::string& line);

} // namespace korlit::host
