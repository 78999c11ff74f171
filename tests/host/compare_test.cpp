#include "tests/support/andi_text.h"
#include "tests/support/command.h"
#include "tests/support/host_call.h"
#include "tests/support/run_text.h"

#include <nlohmann/json.hpp>

#include <dlfcn.h>

#include <filesystem>

namespace korlit {
namespace {

using namespace test;
namespace fs = std::filesystem;

class CompareTest : public testing::Test {
  protected:
    CommandResult compare(const std::string& arguments) const {
        return runCommand(folder, "compare " + arguments, "TZ=UTC");
    }

    /// Converts a file of the folder by an export of the library.
    void convert(const char* name, const std::string& file) const {
        setenv("TZ", "UTC", 1);
        void* library = dlopen(BUILT_LIBRARY, RTLD_NOW | RTLD_LOCAL);
        const auto function = reinterpret_cast<Export>(dlsym(library, name));
        EXPECT_EQ(callAsHost(function, folder.path(file), "").result, 1) << name << " " << file;
        // The next call lets go of what a success keeps.
        callAsHost(reinterpret_cast<Export>(dlsym(library, "Andi2Merivolta")), "missing");
        dlclose(library);
    }

    void copy(const std::string& from, const std::string& to) const {
        fs::copy_file(from, folder.path(to), fs::copy_options::overwrite_existing);
    }

    /// The differences of two small ANDI files.
    std::string differences(const AndiText& a, const AndiText& b, const std::string& options = "") {
        folder.write("a.cdf", a.bytes());
        folder.write("b.cdf", b.bytes());
        return compare("a.cdf b.cdf " + options).output;
    }

    TempFolder folder;
};

TEST_F(CompareTest, FindsAPairEqualToItsAndiFile) {
    for (const std::string stem : {"hplc_run", "gc_run"}) {
        if (stem == "hplc_run") {
            copy(SAMPLES "hplc_run.cdf", "hplc_run.cdf");
            convert("Andi2Merivolta", "hplc_run.cdf");
        } else {
            copy(SAMPLES "gc_run.sli", "gc_run.sli");
            copy(SAMPLES "gc_run.rpt", "gc_run.rpt");
        }
        convert("Merivolta2Andi", stem + ".sli");
        EXPECT_EQ(compare(stem + ".sli " + stem + ".cdf"), (CommandResult{0, "equal\n", ""}));
    }
    EXPECT_EQ(compare("--only signal hplc_run.sli " SAMPLES "hplc_run.cdf"),
              (CommandResult{0, "equal\n", ""}));
    EXPECT_EQ(compare("-q hplc_run.sli gc_run.sli"), (CommandResult{1, "", ""}));
}

TEST_F(CompareTest, NamesWhatAPairChanges) {
    // The second file is the first one's pair, taken back by hand.
    const std::string peaks = R"(peaks: baseline_start_time: only in B
peaks: baseline_stop_time: only in B
peak 1: peak_area: A 40, B 0.6666667
peak 2: peak_name: A "A name of 18 chars", B "A name of 18 c"
peak 2: peak_area: A 24, B 0.4
)";
    const std::string texts = R"(texts: autosampler_position: A "3.14", B "3-14"
texts: injection_date_time_stamp: A "20051012083437+0200", B "20051012083400+0200"
texts: operator_name: A "abcdefghijklmnopqr", B "abcdefghijklmnopq"
texts: dataset_completeness: only in B: "C1+C2"
texts: aia_template_revision: only in B: "1.0"
texts: netcdf_revision: only in B: "2.3"
texts: languages: only in B: "English only"
texts: HP_injection_time: only in B: "12 Oct 2005  08:34 AM"
texts: experiment_title: only in B: "Sample 1"
texts: separation_experiment_type: only in B: "HPLC"
texts: sample_id: only in B: ""
texts: detection_method_name: only in B: ""
texts: detector_name: only in B: " "
texts: error_log: only in B: "not implemented"
)";
    const std::string files = TEST_DATA "two_peaks.cdf " TEST_DATA "two_peaks_back.cdf ";
    EXPECT_EQ(compare(files), (CommandResult{1, peaks + texts + "19 differences\n", ""}));
    EXPECT_EQ(compare(files + "--only signal").output, "equal\n");
    EXPECT_EQ(compare(files + "--only signal,peaks").output, peaks + "5 differences\n");
}

TEST_F(CompareTest, TellsSignalsApart) {
    const AndiText small{.globals = oneText("actual_sampling_interval", "30")};
    const auto with = [&](const std::string& data) {
        return AndiText{.globals = small.globals, .data = data};
    };
    struct Case {
        AndiText a;
        AndiText b;
        std::string options;
        std::string words;
    };
    const std::string samples = "signal: samples that differ: ";
    const Case cases[]{
        {small, with("5f 7.000001f 6f"), "",
         samples + "1 of 3, the most at sample 1 (0.5 min) by 9.53674e-07: A 7, B 7.000001\n"
                   "1 difference\n"},
        {small, with("5.25f 7f 4f"), "",
         samples + "2 of 3, the most at sample 2 (1 min) by 2: A 6, B 4\n1 difference\n"},
        {with("0f nanf 1f"), with("-0f nanf 1f"), "", "equal\n"},
        {with("5f nanf 7f"), with("5f 7f 9f"), "--tolerance 9",
         samples + "1 of 3, the most at sample 1 (0.5 min) by inf: A nan, B 7\n1 difference\n"},
        {with("8f 8f 8f"), with("10f 8f 8f"), "--tolerance 0.2", "equal\n"},
        {with("10f -8f 8f"), with("8f -10f 8f"), "--tolerance 0.2", "equal\n"},
        {with("8f 8f 8f"), with("10f 8f 8f"), "--tolerance 0.19",
         samples + "1 of 3, the most at sample 0 (0 min) by 2: A 8, B 10\n1 difference\n"},
        {small,
         {.dimensions = "10 1 'point_number' 2",
          .globals = small.globals,
          .variables = "11 1 'ordinate_values' 1 0 0 0 5 8 1024"},
         "",
         "signal: points: A 3, B 2\n1 difference\n"},
        {small, {.globals = oneText("actual_sampling_interval", "30.0000298")}, "", "equal\n"},
        {small,
         {.globals = oneText("actual_sampling_interval", "30.00031")},
         "",
         "signal: actual_sampling_interval: A 0.5 min, B 0.5000052 min\n1 difference\n"}};
    for (const auto& [a, b, options, words] : cases) {
        EXPECT_EQ(differences(a, b, options + " --only signal"), words)
            << a.data << " | " << b.data;
    }
}

TEST_F(CompareTest, ComparesTextsByName) {
    const auto unit = [](const char* text) {
        return AndiText{.globals = oneText("retention_unit", text)};
    };
    EXPECT_EQ(differences(unit("seconds"), unit("min")), "equal\n");
    EXPECT_EQ(differences({.globals = oneText("x\x1B", "\xE9")}, {.globals = oneText("y", "\x07")}),
              "texts: x\uFFFD: only in A: \"é\"\ntexts: y: only in B: \"\uFFFD\"\n2 differences\n");
    // Wherever a file has it.
    const AndiText mv{.globals = oneText("detector_unit", "mV")};
    EXPECT_EQ(differences(mv, {.variables = "11 1 'ordinate_values' 1 0 12 1 'detector_unit' 2 2 "
                                            "\"mV\" 5 12 1024"}),
              "equal\n");
    EXPECT_EQ(differences(mv, {}), "texts: detector_unit: A \"mV\", B \"\"\n1 difference\n");
}

TEST_F(CompareTest, ComparesRunsChannelByChannel) {
    const RunText three{.count = "3s", .channels = 3};
    RunText other{.count = "2s", .channels = 2};
    folder.write("three.dat", three.bytes());
    folder.write("two.dat", other.bytes());
    other.signal = "r52 6 30000s 2d 'mAU':20 r16 1f 6f 1f 2f 6f 4f 5f 3.5f";
    other.results = "0s 2s 5s 0.5f 0f 1f 180f 6f 1.5f 1.5f 1f 2.5f 60f 5f 2.5f";
    folder.write("other.dat", other.bytes());
    copy(folder.path("three.dat"), "run.dat");
    convert("Dunvale2Andi", "run.dat");
    EXPECT_EQ(compare("three.dat three.dat").output, "equal\n");
    EXPECT_EQ(compare("three.dat two.dat").output, "run: channels: A 3, B 2\n1 difference\n");
    EXPECT_EQ(compare("--channel 2 three.dat run2.cdf").output, "equal\n");
    const std::string pick = " has 3 channels: pick one with --channel N\n";
    for (const std::string files : {"three.dat run1.cdf", "run1.cdf three.dat"}) {
        const CommandResult refused = compare(files);
        EXPECT_EQ(refused.status, 2);
        EXPECT_TRUE(refused.errors.starts_with("korlit compare: three.dat" + pick)) << refused;
    }
    EXPECT_EQ(compare("--channel 4 three.dat run1.cdf").status, 2);
    EXPECT_EQ(compare("--only peaks --tolerance 0.2 two.dat other.dat").output,
              "channel 1: peak 1: peak_area: A 2, B 3\n"
              "channel 1: peak 1: peak_area_percent: A 2, B 3\n"
              "channel 2: peak 1: peak_area: A 2, B 3\n"
              "channel 2: peak 1: peak_area_percent: A 2, B 3\n"
              "4 differences\n");
    const auto object = nlohmann::json::parse(
        compare("--json --channel 2 --only signal run3.cdf other.dat").output);
    EXPECT_EQ(object, nlohmann::json::parse(R"({"a": "run3.cdf", "b": "other.dat", "equal": false,
        "differences": [{"part": "signal", "subject": "samples", "count": 1, "sample": 5,
            "time_min": 2.5, "distance": 1, "a": 6, "b": 7}]})"));
}

TEST_F(CompareTest, TellsPeakTablesApart) {
    RunText run;
    folder.write("two.dat", run.bytes());
    run.results = "0s 1s 0s 0.5f 0f 1f 120f 6f 1.5f";
    run.events = "";
    folder.write("one.dat", run.bytes());
    folder.write("no.cdf", AndiText{}.bytes());
    EXPECT_EQ(compare("two.dat one.dat").output,
              "peaks: count: A 2, B 1\npeaks: peak_start_detection_code: only in A\n"
              "peaks: peak_stop_detection_code: only in A\n3 differences\n");
    EXPECT_EQ(compare("--only peaks no.cdf two.dat").output,
              "peaks: count: A 0, B 2\n1 difference\n");
}

TEST_F(CompareTest, AnswersWrongUseWithTwo) {
    folder.write("a.cdf", AndiText{}.bytes());
    folder.write("bad.cdf", "CD");
    EXPECT_EQ(compare("-q bad.cdf missing.cdf"),
              (CommandResult{2, "",
                             "korlit: bad.cdf: File bad.cdf is not a supported Andi file\n"
                             "korlit: missing.cdf: Error opening Andi file missing.cdf\n"}));
    for (const std::string wrong :
         {"", "a.cdf", "--only noise", "--only ''", "--tolerance -1", "--tolerance nan",
          "--tolerance 1x", "--channel 0", "-q --json"}) {
        const CommandResult result =
            compare(wrong + (wrong.ends_with("cdf") ? "" : " a.cdf a.cdf"));
        const bool isWrong = !wrong.empty();
        EXPECT_EQ(result.status, isWrong ? 2 : 0) << wrong;
        EXPECT_EQ(result.output.empty(), isWrong) << wrong;
    }
}

} // namespace
} // namespace korlit
