// What is told of a file, on the headers of the rooms that tell it.
#include "host/info/info_data.h"
#include "host/info/info_page.h"
#include "host/text/json.h"
#include "tests/support/signal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <iostream>
#include <sstream>
#include <tuple>

namespace korlit::host {
namespace {

using test::Signal;

std::string printed(void (*print)(const std::vector<DataSet>&), const std::vector<DataSet>& sets) {
    std::ostringstream text;
    std::streambuf* const usual = std::cout.rdbuf(text.rdbuf());
    print(sets);
    std::cout.rdbuf(usual);
    return text.str();
}

TEST(InfoPeaks, HaveAllTheirNumbersInEveryForm) {
    constexpr double third = 1.0 / 3;
    const Signal signal{{1}};
    DataSet set = signal.set(3);
    set.peaks.resize(2);
    set.peaks[1] = {.name = "b\"\",\n\"c\"",
                    .retentionTime = third,
                    .startTime = 0.25,
                    .endTime = 0.5,
                    .area = third,
                    .areaPercent = -7,
                    .height = INFINITY,
                    .amount = 1e-7,
                    .baselineStartTime = 0.125,
                    .baselineStartValue = 9,
                    .baselineStopTime = 0.625,
                    .baselineStopValue = 11,
                    .startCode = "B",
                    .stopCode = "V,"};
    EXPECT_EQ(printed(printPeaks, {set}),
              "channel,number,name,retention_time_min,amount,start_time_min,end_time_min,area,"
              "area_percent,height,baseline_start_time_min,baseline_start_value,"
              "baseline_stop_time_min,baseline_stop_value,start_code,stop_code\n"
              "3,1,,,,,,,,,,,,,,\n"
              "3,2,\"b\"\"\"\",\xEF\xBF\xBD\"\"c\"\"\",0.33333334,1e-07,0.25,0.5,"
              "0.3333333333333333,-7,inf,0.125,9,0.625,11,B,\"V,\"\n");
    const Json json = Json::parse(printed(printJson, {set}));
    EXPECT_EQ(json["channels"][0]["channel"], 3);
    const Json& peaks = json["channels"][0]["peaks"];
    EXPECT_EQ(peaks[0]["area"], Json());
    EXPECT_EQ(peaks[1], Json::parse(R"({"number": 2, "name": "b\"\",\n\"c\"",
        "retention_time_min": 0.33333334, "amount": 1e-07, "start_time_min": 0.25,
        "end_time_min": 0.5, "area": 0.3333333333333333, "area_percent": -7, "height": null,
        "baseline_start_time_min": 0.125, "baseline_start_value": 9,
        "baseline_stop_time_min": 0.625, "baseline_stop_value": 11,
        "start_code": "B", "stop_code": "V,"})"));
}

TEST(InfoFacts, FollowWhatAFileSaysOfItsSamples) {
    const Signal even{{NAN, 5, -2, 5}};
    const Signal two{{-HUGE_VAL, 3}, {30, 30.5}};
    const Signal none{{}};
    DataSet late = even.set();
    late.delayTime = -1.25;
    DataSet uneven = even.set();
    uneven.isUniform = false;
    uneven.detectorUnit = "m\xB5\x07";
    using Case = std::tuple<DataSet, const char*, std::vector<const char*>>;
    for (const auto& [set, json, lines] : std::initializer_list<Case>{
             {late,
              R"({"points": 4, "total_ion": false, "uniform": true, "sampling_interval_s": 15,
                  "delay_time_min": -1.25, "run_time_min": 1, "minimum": -2,
                  "minimum_time_min": -0.75, "maximum": 5, "maximum_time_min": -1})",
              {"Sampling interval     15 s", "First sample at       -1.25 min",
               "Maximum               5 at -1.000 min"}},
             {uneven,
              R"({"detector_unit": "mµ\u0007", "uniform": false, "sampling_interval_s": null,
                  "run_time_min": null, "minimum_time_min": null})",
              {"Run time              -", "Minimum               -2 mµ\uFFFD at sample 2"}},
             {two.set(),
              R"({"sampling_interval_s": 0.5, "minimum": null, "minimum_time_min": 0.5})",
              {"Sampling interval     not uniform, 500 ms in the middle",
               "Minimum               -inf at 0.500 min"}},
             {none.set(),
              R"({"points": 0, "run_time_min": 0, "minimum": null, "minimum_time_min": null,
                  "maximum": null, "maximum_time_min": null, "peaks": []})",
              {"Minimum               -", "Points                0"}},
         }) {
        Json channel = Json::parse(printed(printJson, {set}))["channels"][0];
        const Json whole = channel;
        channel.update(Json::parse(json));
        EXPECT_EQ(channel, whole);
        const std::string page = printed(printPage, {set});
        for (const std::string line : lines) {
            EXPECT_NE(page.find('\n' + line + '\n'), std::string::npos) << line << " in\n" << page;
        }
    }
}

TEST(InfoFacts, NameTheFileInItsBytes) {
    DataSet set = Signal{}.set();
    set.source = "\xFFx";
    set.texts = {{"sample_name", "\xE9"}, {"injection_date_time_stamp", "\x9Bsoon"}};
    const Json json = Json::parse(printed(printJson, {set}));
    EXPECT_EQ(pathIn(json, "file"), set.source);
    EXPECT_EQ(json["sample"], "\xC3\xA9");
    EXPECT_EQ(json["injection_date"], "\xC2\x9Bsoon");
}

} // namespace
} // namespace korlit::host
