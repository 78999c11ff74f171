// What is read of a pair, byte by byte, of images made by hand.
#include "host/proof/pair_fields.h"
#include "host/proof/reading.h"
#include "host/text/numbers.h"
#include "tests/support/cases.h"
#include "tests/support/temp_folder.h"

#include <map>
#include <sstream>

namespace korlit::host {
namespace {

using namespace test;

std::string wordsOf(const Value& value) {
    const auto* number = std::get_if<double>(&value);
    return number != nullptr ? numberText(*number) : std::get<std::string>(value);
}

std::map<ValueKey, Value> valuesOf(const Reading& reading) {
    std::map<ValueKey, Value> values;
    for (const auto& [key, value] : reading.entries) {
        EXPECT_TRUE(values.emplace(key, value).second) << key.name;
    }
    for (std::size_t i = 0; i < reading.signal.size(); ++i) {
        values[{.part = "sample", .name = "", .peak = i}] = reading.signal[i];
    }
    return values;
}

class PairReading : public testing::Test {
  protected:
    std::map<ValueKey, Value> read(const std::string& sliceBytes,
                                   const std::string& reportBytes) const {
        folder.write("x.rpt", reportBytes);
        return valuesOf(readPair(folder.write("x.sli", sliceBytes)));
    }

    /// What `changes` (as in pairs.txt) make of the reading, a name with its peak each, or the
    /// failure.
    std::string changed(const std::vector<std::string>& changes) const {
        const Case pair{{}, changes, {}, {}};
        std::ostringstream found;
        try {
            const auto other =
                read(pairFileOf(pair, "sli", slice), pairFileOf(pair, "rpt", report));
            for (const auto& [key, value] : other) {
                const auto old = whole.find(key);
                if (old == whole.end() || !areSame(old->second, value)) {
                    found << key.name << key.peak << ": " << wordsOf(value) << "; ";
                }
            }
            for (const auto& [key, value] : whole) {
                if (!other.contains(key)) {
                    found << "no " << key.name << key.peak << "; ";
                }
            }
        } catch (const std::runtime_error& error) {
            found << error.what();
        }
        std::string text = found.str();
        for (std::size_t at = 0; (at = text.find(folder.path(""))) != std::string::npos;) {
            text.erase(at, folder.path("").size());
        }
        return text;
    }

    TempFolder folder;
    std::string slice = readImage(LISTINGS "two_peaks.sli.txt");
    std::string report = readImage(LISTINGS "two_peaks.rpt.txt");
    std::map<ValueKey, Value> whole = read(slice, report);
};

TEST_F(PairReading, FindsValuesWhereTheRecordsHaveThem) {
    const std::vector<std::pair<std::vector<std::string>, std::string>> cases{
        {{}, ""},
        {{"sli 12 18 FC", "sli 14 'ABCDEFGHIJKLMNOPQRSTU'"},
         "SampleIntervalMs0: -1000; SampleName0: ABCDEFGHIJKLMNOPQRSTU; "},
        {{"sli 1822 E0 3F", "sli 2056 00 00 80 BF"}, "2: -1; ScaleFactor0: 0.5; "},
        // A record of the first 50 bytes.
        {{"rpt 0 15 00", "rpt 350 01 00", "rpt size 406"},
         "PeakCount0: 1; ReportFlags0: 21; no BaselineStartTime1; no BaselineStartTime2; "
         "no BaselineStopTime1; no BaselineStopTime2; no ExtAreaPercent1; no ExtAreaPercent2; "
         "no PeakAmount1; no PeakAmount2; no PeakArea2; no PeakAreaPercent2; no PeakEndTime2; "
         "no PeakHeight2; no PeakName2; no PeakNumber2; no PeakStartTime2; no RetentionTime2; "},
        {{"rpt 0 11 20"}, "ReportFlags0: 8209; "},
        {{"sli 57 01"}, "reserved bytes0: 1 bytes of c0bc9e0088919e2a, the first at 57; "},
        {{"sli size 2061", "sli 2060 01"},
         "reserved bytes0: 1 bytes of 212806bb21f8c77c, the first at 2,060; "},
        // In the table of peaks, and behind the end of a name.
        {{"rpt 353 02", "rpt 397 'x'"},
         "reserved bytes0: in the report 2 bytes of 881175ebf2917d07, the first at 353; "},
        {{"sli 113 05"}, "The version of the file x.sli is not known"},
        {{"sli size 2059"}, "Error reading Merivolta file x.sli (cut: 2 of 3 samples are there)"},
        {{"rpt size 583"}, "Error reading Merivolta file x.rpt (cut: 583 of 584 bytes are there)"},
        {{"rpt size 287"},
         "Error reading Merivolta file x.rpt (cut within its head: 287 bytes are there)"},
        {{"rpt 135 FF FF FF FF"},
         "Error reading Merivolta file x.rpt (it doesn't begin as reports do)"},
    };
    for (const auto& [changes, expected] : cases) {
        EXPECT_EQ(changed(changes), expected);
    }
}

TEST_F(PairReading, SeesEachByteOfBothFiles) {
    std::size_t unseen = 0;
    const auto look = [&](std::string& file) {
        for (char& byte : file) {
            byte = static_cast<char>(byte ^ 1);
            try {
                unseen += read(slice, report) == whole ? 1 : 0;
            } catch (const std::runtime_error&) {
                // A place or a count beyond the file.
            }
            byte = static_cast<char>(byte ^ 1);
        }
    };
    look(slice);
    look(report);
    EXPECT_EQ(unseen, 0);
}

} // namespace
} // namespace korlit::host
