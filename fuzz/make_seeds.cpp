// Makes the inputs that a fuzzer starts from: the files of the tests' cases and the samples, in a
// folder for each target.
#include "tests/support/cases.h"

#include <cstdio>
#include <exception>
#include <filesystem>
#include <iterator>

using namespace korlit::test;

namespace {

std::string readAll(const std::filesystem::path& path) {
    std::ifstream in{path, std::ios::binary};
    return {std::istreambuf_iterator<char>{in}, {}};
}

class SeedFolder {
  public:
    explicit SeedFolder(std::filesystem::path folder) : path{std::move(folder)} {
        std::filesystem::create_directories(path);
    }
    void add(const std::string& seed) {
        std::ofstream{path / std::to_string(++count), std::ios::binary} << seed;
    }

  private:
    std::filesystem::path path;
    int count = 0;
};

/// A pair as the target takes it.
std::string joined(const std::string& slice, const std::string& report) {
    return little(static_cast<std::uint16_t>(report.size())) + report + slice;
}

std::string shortText(const std::string& text) {
    return static_cast<char>(text.size()) + text;
}

void addPairs(SeedFolder folder) {
    const std::string slice = readImage(LISTINGS "two_peaks.sli.txt");
    const std::string report = readImage(LISTINGS "two_peaks.rpt.txt");
    for (const Case& each : readCases(LISTINGS "pairs.txt")) {
        folder.add(joined(pairFileOf(each, "sli", slice), pairFileOf(each, "rpt", report)));
    }
}

/// Each entry of a file for the lookup: its place, name, type from 0 for bytes, and elements.
void addLookups(SeedFolder folder) {
    const std::string entries[]{
        layOutRun("'\\0':1") + shortText("detector_unit") + '\1' + shortText("mV"),
        '\1' + shortText("ordinate-values") + '\4' + shortText(layOutRun("1.5f -2e30f")),
        '\3' + shortText("autosampler_position") + '\1' + shortText("1-2"),
        '\2' + shortText("of_records") + '\5' + shortText(layOutRun("1e300d")),
        '\4' + shortText("point_number") + '\2' + shortText("12345678")};
    for (const std::string key :
         {"detectorunit", "ordinatevalues", "autosamplerposition", "ofrecords", "PointNumber"}) {
        for (const std::string length : {"0s", "1s", "9s", "300s"}) {
            std::string seed = layOutRun(length) + shortText(key);
            for (const std::string& entry : entries) {
                folder.add(seed += entry);
            }
        }
    }
}

void addDates(SeedFolder folder) {
    const std::string fields = layOutRun("2005s 10s 3s 12s 8s 34s 37s 0s");
    for (const std::string serial : {"38637.357375d", "0d", "1d", "2d", "0.99999d", "23936167d"}) {
        for (char zone = 0; zone < 8; ++zone) {
            folder.add(zone + layOutRun(serial) + fields + fields +
                       layOutRun("'12.10.2005':11 '08:34':6") + shortText("20051012083437+0200") +
                       "[intl]\nsShortDate=" + (zone % 2 == 0 ? "dd.MM.yyyy\n" : "yy/M/d\n"));
        }
    }
}

void makeSeeds(const std::filesystem::path& root) {
    SeedFolder andiFiles{root / "andi_file"};
    for (const Case& each : readCases(LISTINGS "conversions.txt")) {
        andiFiles.add(andiFileOf(each));
    }
    andiFiles.add(readAll(SAMPLES "hplc_run.cdf"));
    SeedFolder runs{root / "dunvale_run"};
    for (const Case& each : readCases(LISTINGS "runs.txt")) {
        runs.add(runFileOf(each));
    }
    runs.add(readAll(SAMPLES "dad_run.run"));
    addPairs(SeedFolder{root / "native_pair"});
    addLookups(SeedFolder{root / "value_lookup"});
    addDates(SeedFolder{root / "dates"});
}

} // namespace

int main(int argumentCount, char** arguments) {
    try {
        makeSeeds(argumentCount == 2 ? arguments[1] : ".");
        return 0;
    } catch (const std::exception& fault) {
        std::fprintf(stderr, "%s\n", fault.what());
        return 1;
    }
}
