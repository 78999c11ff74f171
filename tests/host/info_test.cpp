#include "host/data/facts.h"
#include "host/text/json.h"
#include "tests/support/andi_text.h"
#include "tests/support/command.h"
#include "tests/support/run_text.h"

#include <nlohmann/json.hpp>

#include <cmath>
#include <filesystem>
#include <limits>
#include <sstream>

namespace korlit {
namespace {

using namespace test;
using nlohmann::json;

TEST(Json, IsUtf8ThatSteersNoTerminal) {
    for (const auto& [text, line] : std::initializer_list<std::pair<const char*, const char*>>{
             {"\xC2\xA0\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80", nullptr},
             {"\xE2\x80\xA7\xE2\x80\xAF\xE2\x81\xA5\xE2\x81\xAA", nullptr},
             {"\x1B\x7F\xC2\x80\xC2\x9F", R"(\u001b\u007f\u0080\u009f)"},
             {"\xE2\x80\xA8\xE2\x80\xAE\xE2\x81\xA6\xE2\x81\xA9", R"(\u2028\u202e\u2066\u2069)"}}) {
        EXPECT_EQ(host::jsonLine(text), '"' + std::string{line == nullptr ? text : line} + "\"\n");
        EXPECT_EQ(host::Json::parse(host::jsonLine(text)), text);
    }
}

TEST(Extremes, AreTheFirstOfTheirValueAmongWhatCounts) {
    constexpr double infinity = std::numeric_limits<double>::infinity();
    const std::vector<double> samples{NAN, 2, 1, 9, 1, 9, -infinity, NAN};
    const host::NumberView signal{AndiType::Double, samples.data(), samples.size()};
    const auto isFinite = [](double sample) { return std::isfinite(sample); };
    EXPECT_EQ(host::extremesOf(signal), (host::Extremes{.minimum = 6, .maximum = 3}));
    EXPECT_EQ(host::extremesOf(signal, isFinite), (host::Extremes{.minimum = 2, .maximum = 3}));
    EXPECT_EQ(host::extremesOf(signal.part(4, 3), isFinite),
              (host::Extremes{.minimum = 0, .maximum = 1}));
    EXPECT_EQ(host::extremesOf(signal.part(7, 1)), std::nullopt);
}

class InfoTest : public testing::Test {
  protected:
    InfoTest() { // two channels of one peak, with texts and a sample that don't go through as is
        RunText run{.info = "r104 'J\xF6rg\x1B[2J':64 38637.5d r20 3s 14s r4 'a,\"b\"':30 r2",
                    .count = "2s",
                    .signal = "r52 3 30000s 2d 'mAU':20 r16 1f 6f 0.1f -5f nanf",
                    .results = "0s 1s 0s 0.5f 0f 1f 120f 6f 1.5f",
                    .events = "",
                    .windows = "'Caf,\"\xE9\"\x07':50 0.5f 1f r620 'Second':50 0f 9f r620",
                    .channels = 2};
        folder.write("run.dat", run.bytes());
        run.version = "0f"; // by which it isn't recognised
        folder.write("old.dat", run.bytes());
        folder.write("bad.cdf", "CD");
        std::filesystem::copy_file(TEST_DATA "two_peaks.cdf", folder.path("two_peaks.cdf"));
    }

    CommandResult info(const std::string& arguments) const {
        return runCommand(folder, "info " + arguments, "TZ=UTC");
    }

    /// The value of a fact in the table about a small ANDI file with one attribute.
    std::string fact(const std::string& label, const AndiText& text) const {
        folder.write("small.cdf", text.bytes());
        const std::string table = "\n" + info("small.cdf").output;
        const std::size_t line = table.find("\n" + label + " ");
        return line == std::string::npos
                   ? "no " + label
                   : table.substr(line + 23, table.find('\n', line + 1) - line - 23);
    }

    TempFolder folder;
};

TEST_F(InfoTest, ShowsFactsAndPeaksOfEachFile) {
    const std::string twoPeaks = R"(File                  two_peaks.cdf
Kind                  ANDI
Sample                Sample 1
Operator              abcdefghijklmnopqr
Injected              2005-10-12 08:34:37 +02:00
Separation            -
Autosampler position  3.14
Detector unit         mAU
Points                3
Sampling interval     200 ms
Run time              0.01 min
Minimum               5 mAU at 0.000 min
Maximum               7 mAU at 0.003 min
Peaks                 2

No.  Name                Time/min  Start/min  End/min  Area  Height  Area %
  1  Caffeine               1.500      1.000    1.750    40       7  62.500
  2  A name of 18 chars     2.000      1.750    2.500    24       6  37.500
)";
    const std::string channel = R"(Detector unit         mAU
Points                3
Sampling interval     30 s
Run time              1.5 min
Minimum               -10 mAU at 0.500 min
Maximum               0.2 mAU at 0.000 min
Peaks                 1

No.  Name      Time/min  Start/min  End/min  Area  Height  Area %
  1  Caf,"é"�     0.500      0.000    1.000     2       6   2.000
)";
    const std::string run = R"(File                  run.dat
Kind                  Dunvale run, 2 channels
Sample                a,"b"
Operator              Jörg�[2J
Injected              2005-10-12 12:00:00 +00:00
Separation            HPLC
Autosampler position  3-14

Channel 1
)" + channel + "\nChannel 2\n" +
                            channel;
    const CommandResult result = info("two_peaks.cdf bad.cdf run.dat");
    EXPECT_EQ(result,
              (CommandResult{1, twoPeaks + "\n" + run,
                             "korlit: bad.cdf: File bad.cdf is not a supported Andi file\n"}));
}

TEST_F(InfoTest, ShowsIntervalsAndStampsForPeople) {
    const std::pair<const char*, const char*> intervals[]{
        {"0.0005", "0.5 ms"}, {"0.9999999", "1 s"}, {"59.5", "59.5 s"}, {"60", "1 min"},
        {"90", "1.5 min"},    {"-1", "-"},          {"x", "-"}};
    for (const auto& [seconds, shown] : intervals) {
        EXPECT_EQ(
            fact("Sampling interval", {.globals = oneText("actual_sampling_interval", seconds)}),
            shown);
    }
    const std::pair<const char*, const char*> stamps[]{
        {"20040229235960-0330", "2004-02-29 23:59:60 -03:30"},
        {"20050229120000+0000", "20050229120000+0000"},
        {"20051312120000+0000", "20051312120000+0000"},
        {"20051012240000+0000", "20051012240000+0000"},
        {"20051012083437+02000", "20051012083437+02000"},
        {"20051012083437", "20051012083437"},
        {"yesterday\x9B", "yesterday\uFFFD"}};
    for (const auto& [stamp, shown] : stamps) {
        EXPECT_EQ(fact("Injected", {.globals = oneText("injection_date_time_stamp", stamp)}),
                  shown);
    }
}

TEST_F(InfoTest, SaysNothingOfTimesThatAFileDoesNotHave) {
    const AndiText uneven{
        .globals = oneText("actual_sampling_interval", "60"),
        .variables = "11 1 'ordinate_values' 1 0 12 1 'uniform_sampling_flag' 2 1 \"N\" 5 12 1024"};
    EXPECT_EQ(fact("Sampling interval", uneven), "not uniform");
    EXPECT_EQ(fact("Maximum", uneven), "7 at sample 1");
    EXPECT_EQ(info("--signal small.cdf").output, "time_min,value\n,5\n,7\n,6\n");
    EXPECT_TRUE(
        json::parse(info("--json small.cdf").output)["channels"][0]["run_time_min"].is_null());
    EXPECT_EQ(fact("Maximum", {.data = "nanf nanf nanf"}), "-");
}

TEST_F(InfoTest, PrintsAnObjectForEachFile) {
    json channel = json::parse(R"({"channel": 1, "detector_unit": "mAU", "points": 3,
        "uniform": true, "sampling_interval_s": 30, "delay_time_min": 0, "run_time_min": 1.5,
        "minimum": -10, "minimum_time_min": 0.5, "maximum": 0.2, "maximum_time_min": 0,
        "peaks": [{"number": 1, "name": "Caf,\"é\"\u0007", "retention_time_min": 0.5,
            "start_time_min": 0, "end_time_min": 1, "area": 2, "area_percent": 2, "height": 6,
            "amount": 1.5, "baseline_start_time_min": 0, "baseline_start_value": 0.2,
            "baseline_stop_time_min": 1, "baseline_stop_value": null, "start_code": "",
            "stop_code": ""}]})");
    json run = json::parse(R"({"file": "run.dat", "kind": "dunvale", "sample": "a,\"b\"",
        "operator": "Jörg\u001b[2J", "injection_date": "2005-10-12T12:00:00+00:00",
        "separation_type": "HPLC", "autosampler_position": "3-14", "channels": []})");
    run["channels"].push_back(channel);
    channel["channel"] = 2;
    run["channels"].push_back(channel);
    const CommandResult result = info("--json run.dat bad.cdf two_peaks.cdf");
    EXPECT_EQ(result.status, 1);
    std::istringstream lines{result.output};
    std::string line;
    std::getline(lines, line);
    EXPECT_EQ(json::parse(line), run);
    EXPECT_NE(line.find(R"("Caf,\"é\"\u0007")"), std::string::npos);
    std::getline(lines, line);
    EXPECT_EQ(json::parse(line)["channels"][0]["peaks"][1]["end_time_min"], 2.5);
}

TEST_F(InfoTest, PrintsTablesForPrograms) {
    const std::string peak = R"(,1,"Caf,""é""�",0.5,1.5,0,1,2,2,6,0,0.2,1,nan,,)";
    EXPECT_EQ(info("--peaks run.dat"),
              (CommandResult{0,
                             "channel,number,name,retention_time_min,amount,start_time_min,"
                             "end_time_min,area,area_percent,height,baseline_start_time_min,"
                             "baseline_start_value,baseline_stop_time_min,baseline_stop_value,"
                             "start_code,stop_code\n1" +
                                 peak + "\n2" + peak + "\n",
                             ""}));
    EXPECT_EQ(info("--signal run.dat").output,
              "channel,time_min,value\n1,0,0.2\n1,0.5,-10\n1,1,nan\n2,0,0.2\n2,0.5,-10\n2,1,nan\n");
    const std::string rows = info("--peaks two_peaks.cdf").output;
    EXPECT_EQ(rows.substr(rows.find('\n')), "\n1,Caffeine,1.5,0.5,1,1.75,40,62.5,7,,,,,,\n"
                                            "2,A name of 18 chars,2,1,1.75,2.5,24,37.5,6,,,,,,\n");
}

TEST_F(InfoTest, PrintsTheSignalToTheBit) {
    std::istringstream lines{info("--signal " SAMPLES "hplc_run.cdf").output};
    std::string line;
    std::string samples;
    std::getline(lines, line);
    while (std::getline(lines, line)) {
        samples += big(std::stof(line.substr(line.find(',') + 1)));
    }
    EXPECT_EQ(samples.size(), 4U * 6000);
    EXPECT_NE(readFile(SAMPLES "hplc_run.cdf").find(samples), std::string::npos);
    // Numbers of both ends of the float's range, and one that six digits don't hold.
    folder.write("small.cdf", AndiText{.data = "3.4028235e38f 1.1754944e-38f 16777215f"}.bytes());
    EXPECT_EQ(info("--signal small.cdf").output,
              "time_min,value\n,3.4028235e+38\n,1.1754944e-38\n,16777215\n");
}

TEST_F(InfoTest, AnswersByItsStatus) {
    const std::pair<const char*, int> uses[]{{"run.dat", 0},
                                             {"old.dat", 1},
                                             {"--from dunvale old.dat", 0},
                                             {"--from andi run.dat", 1},
                                             {"missing.sli", 1},
                                             {"--from netcdf run.dat", 2},
                                             {"--json --peaks run.dat", 2},
                                             {"--signal --peaks run.dat", 2},
                                             {"--signal --json run.dat", 2},
                                             {"--signal run.dat two_peaks.cdf", 2},
                                             {"", 2}};
    for (const auto& [arguments, status] : uses) {
        const CommandResult result = info(arguments);
        EXPECT_EQ(result.status, status) << arguments;
        EXPECT_EQ(result.errors.empty(), status == 0) << arguments;
        EXPECT_EQ(result.output.empty(), status != 0) << arguments;
    }
    const std::string full = BUILT_COMMAND " info " TEST_DATA "two_peaks.cdf >/dev/full 2>";
    const int status = std::system((full + folder.path("errors")).c_str());
    EXPECT_EQ(WEXITSTATUS(status), 1);
    EXPECT_EQ(readFile(folder.path("errors")), "korlit: standard output could not be written\n");
}

TEST_F(InfoTest, ReadsAFileOfAnotherMaker) {
    if (!std::filesystem::exists(FOREIGN_ANDI_FILE)) {
        GTEST_SKIP() << "no " FOREIGN_ANDI_FILE;
    }
    // As ncdump has them, with the times divided by 60.
    const json channel = json::parse(info("--json " FOREIGN_ANDI_FILE).output)["channels"][0];
    EXPECT_EQ(channel["points"], 4651);
    EXPECT_EQ(channel["sampling_interval_s"], 0.4);
    EXPECT_EQ(channel["delay_time_min"], 0.0002);
    EXPECT_NEAR(channel["minimum"], -0.07588416, 1e-7);
    EXPECT_NEAR(channel["maximum"], 119.024, 1e-4);
    EXPECT_NEAR(channel["peaks"][7]["retention_time_min"], 1177.76 / 60, 1e-5);
    EXPECT_NEAR(channel["peaks"][7]["area"], 3948.423, 1e-3);
    EXPECT_TRUE(channel["peaks"][7]["amount"].is_null());
}

} // namespace
} // namespace korlit
