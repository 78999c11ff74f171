// Makes the inputs that a fuzzer starts from: the files of the tests' cases and the samples, in a
// folder for each target that takes files.
#include "fuzz/input.h"
#include "tests/support/cases.h"

using namespace korlit::test;

namespace {

template <typename FileOf>
void makeSeeds(const std::filesystem::path& folder, const char* table, FileOf fileOf,
               const char* sample = nullptr) {
    std::filesystem::create_directories(folder);
    int count = 0;
    const auto add = [&](const std::string& seed) {
        std::ofstream{folder / std::to_string(++count), std::ios::binary} << seed;
    };
    std::ranges::for_each(readCases(table), [&](const Case& each) { add(fileOf(each)); });
    if (sample != nullptr) {
        add(korlit::fuzz::readAll(sample));
    }
}

/// A pair as the target takes it.
std::string pairOf(const Case& each) {
    static const std::string slice = readImage(LISTINGS "two_peaks.sli.txt");
    static const std::string report = readImage(LISTINGS "two_peaks.rpt.txt");
    const std::string changed = pairFileOf(each, "rpt", report);
    return little(static_cast<std::uint16_t>(changed.size())) + changed +
           pairFileOf(each, "sli", slice);
}

} // namespace

// NOLINTNEXTLINE(bugprone-exception-escape): what can't be read or written ends the program
int main(int argumentCount, char** arguments) {
    const std::filesystem::path root = arguments[argumentCount - 1];
    makeSeeds(root / "andi_file", LISTINGS "conversions.txt", andiFileOf, SAMPLES "hplc_run.cdf");
    makeSeeds(root / "dunvale_run", LISTINGS "runs.txt", runFileOf, SAMPLES "dad_run.run");
    makeSeeds(root / "native_pair", LISTINGS "pairs.txt", pairOf);
    return 0;
}
