#include "tests/support/andi_text.h"
#include "tests/support/command.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <iterator>
#include <set>
#include <utility>
#include <vector>

namespace korlit {
namespace {

using namespace test;

constexpr const char* goodText = R"(netcdf good {
dimensions:
  point_number = 5 ;
  peak_number = 2 ;
  name_length = 16 ;
  one = 1 ;
variables:
  float detector_maximum_value ;
  float detector_minimum_value ;
  float actual_run_time_length ;
  float actual_delay_time ;
  float actual_sampling_interval ;
  float ordinate_values(point_number) ;
    ordinate_values:uniform_sampling_flag = "Y" ;
  float peak_retention_time(peak_number) ;
  float peak_start_time(peak_number) ;
  float peak_end_time(peak_number) ;
  float peak_area(peak_number) ;
  char peak_name(peak_number, name_length) ;
  :dataset_completeness = "C1+C2" ;
  :aia_template_revision = "1.0" ;
  :netcdf_revision = "2.3" ;
  :languages = "English" ;
  :injection_date_time_stamp = "20240229120000+0100" ;
  :operator_name = "17 characters ..." ;
  :sample_name = "20 characters ......" ;
  :sample_id = "" ;
  :detector_unit = "9 charac." ;
  :retention_unit = "seconds" ;
data:
  detector_maximum_value = 8 ;
  detector_minimum_value = -1 ;
  actual_run_time_length = 2.5 ;
  actual_delay_time = 0 ;
  actual_sampling_interval = 0.5 ;
  ordinate_values = 1, 2, 8, 3, -1 ;
  peak_retention_time = 1, 1.75 ;
  peak_start_time = 0.5, 1.5 ;
  peak_end_time = 1.5, 2 ;
  peak_area = 10, 20 ;
  peak_name = "Fourteen chars", "B" ;
})";

using Changes = std::vector<std::pair<std::string, std::string>>;
using Lines = std::multiset<std::string>;

struct Plant {
    Changes changes; ///< each text is replaced wherever it stands
    Lines found;     ///< as "severity rule: message", beyond what the good file has
};

std::string changed(std::string text, const Changes& changes) {
    for (const auto& [from, to] : changes) {
        EXPECT_NE(text.find(from), std::string::npos) << from;
        for (std::size_t i = 0; (i = text.find(from, i)) != std::string::npos; i += to.size()) {
            text.replace(i, from.size(), to);
        }
    }
    return text;
}

void generate(const TempFolder& folder, const std::string& name, const std::string& text) {
    const std::string command =
        "ncgen -k classic -o " + folder.path(name) + " " + folder.write("text.cdl", text);
    EXPECT_EQ(std::system(command.c_str()), 0) << text;
}

Lines findingsOf(const TempFolder& folder, const std::string& name) {
    const CommandResult result = runCommand(folder, "check --json " + name);
    const auto object = nlohmann::json::parse(result.output);
    EXPECT_EQ(result.status, object["conforms"] ? 0 : 1);
    Lines lines;
    for (const auto& each : object["findings"]) {
        const auto text = [&](const char* key) { return each[key].get<std::string>(); };
        lines.insert(text("severity") + " " + text("rule") + ": " + text("message"));
    }
    return lines;
}

/// Without the list of what has no place in a pair: it has a test of its own, and whatever is
/// renamed is in it.
Lines beyond(const Lines& lines, const Lines& known) {
    Lines rest;
    std::ranges::set_difference(lines, known, std::inserter(rest, rest.end()));
    std::erase_if(rest, [](const auto& line) { return line.starts_with("loss no-place"); });
    return rest;
}

void expectFindings(const std::vector<Plant>& plants) {
    const TempFolder folder;
    generate(folder, "good.cdf", goodText);
    const Lines known = findingsOf(folder, "good.cdf");
    for (const auto& [changes, found] : plants) {
        generate(folder, "planted.cdf", changed(goodText, changes));
        EXPECT_EQ(beyond(findingsOf(folder, "planted.cdf"), known), found)
            << changes.front().second;
    }
}

TEST(Check, FindsWhatIsMissing) {
    const auto without = [](const std::string& name) { return Changes{{name, "x_" + name}}; };
    const auto attribute = [&](const std::string& name) {
        return Plant{without(name), {"warning missing-attribute: there is no attribute " + name}};
    };
    const auto variable = [&](const std::string& severity, const std::string& name) {
        return Plant{without(name), {severity + " missing-variable: there is no variable " + name}};
    };
    expectFindings({
        attribute("dataset_completeness"),
        attribute("aia_template_revision"),
        attribute("netcdf_revision"),
        attribute("languages"),
        attribute("injection_date_time_stamp"),
        attribute("detector_unit"),
        attribute("uniform_sampling_flag"),
        {without("retention_unit"),
         {"warning missing-attribute: there is no attribute retention_unit",
          "loss interval-cut: the sampling interval of 500 ms becomes 1 ms"}},
        variable("error", "ordinate_values"),
        variable("error", "actual_sampling_interval"),
        variable("warning", "actual_run_time_length"),
        variable("warning", "actual_delay_time"),
        variable("warning", "detector_maximum_value"),
        variable("warning", "detector_minimum_value"),
        variable("warning", "peak_retention_time"),
        variable("warning", "peak_area"),
        {without("peak_number"),
         {"warning missing-dimension: dataset_completeness names C2, but there is no dimension "
          "peak_number"}},
        {without("point_number"),
         {"error missing-dimension: there is no dimension point_number",
          "loss samples-cut: 5 samples are cut to point_number 0"}},
        {{{"C1+C2", "C1"}},
         {"warning completeness: dataset_completeness \"C1\" doesn't name C2, but there is a peak "
          "table"}},
        {{{"C1+C2", "C2"}}, {"warning completeness: dataset_completeness \"C2\" doesn't name C1"}},
    });
}

TEST(Check, FindsWrongTypesAndDimensions) {
    expectFindings({
        {{{"float ordinate_values", "double ordinate_values"}},
         {"error wrong-type: ordinate_values is double instead of float"}},
        {{{"float peak_area", "short peak_area"}},
         {"error wrong-type: peak_area is short instead of float"}},
        {{{"float actual_delay_time", "double actual_delay_time"}},
         {"warning wrong-type: actual_delay_time is double instead of float"}},
        {{{"char peak_name(peak_number, name_length)", "int peak_name(peak_number)"},
          {R"("Fourteen chars", "B")", "1, 2"}},
         {"error wrong-type: peak_name is integer instead of char",
          "error wrong-dimension: peak_name isn't over peak_number and the length of its texts"}},
        {{{"languages = \"English\"", "languages = 1s"}},
         {"warning wrong-text-type: languages is short instead of char"}},
        {{{"uniform_sampling_flag = \"Y\" ;",
           "uniform_sampling_flag = \"Y\"; ordinate_values:autosampler_position = 3 ;"}},
         {"warning wrong-text-type: autosampler_position is integer instead of char"}},
        {{{"ordinate_values(point_number)", "ordinate_values(points)"}, {"one = 1", "points = 5"}},
         {"error wrong-dimension: ordinate_values isn't over point_number alone"}},
        {{{"ordinate_values(point_number)", "ordinate_values(points)"},
          {"one = 1", "points = 6"},
          {"3, -1 ;", "3, -1, 0 ;"}},
         {"error wrong-dimension: ordinate_values isn't over point_number alone",
          "loss samples-cut: 6 samples are cut to point_number 5"}},
        {{{"ordinate_values(point_number)", "ordinate_values(points)"},
          {"one = 1", "points = 4"},
          {"8, 3, -1 ;", "8, -1 ;"}},
         {"error wrong-dimension: ordinate_values isn't over point_number alone",
          "error sample-count: point_number is 5, but ordinate_values has 4 samples"}},
        {{{"peak_area(peak_number)", "peak_area(one)"}, {"10, 20", "10"}},
         {"error wrong-dimension: peak_area isn't over peak_number alone"}},
        {{{"char peak_name(peak_number, name_length)", "char peak_name(peak_number)"},
          {R"("Fourteen chars", "B")", R"("AB")"}},
         {"error wrong-dimension: peak_name isn't over peak_number and the length of its texts"}},
        {{{"actual_delay_time ;", "actual_delay_time(one) ;"}},
         {"warning wrong-dimension: actual_delay_time is one number, but has a dimension"}},
        {{{"point_number = 5", "point_number = UNLIMITED"}},
         {"error record-dimension: point_number is 0 or the record dimension, along which no data "
          "are found: ordinate_values"}},
        {{{"one = 1", "runs = UNLIMITED"},
          {"  :languages", "  int x(runs) ; short y(runs) ;\n  :languages"}},
         {"warning record-dimension: runs is 0 or the record dimension, along which no data are "
          "found: x, y"}},
        {{{"one = 1", "runs = UNLIMITED"}}, {}},
    });
}

TEST(Check, FindsValuesThatAreWrong) {
    const auto stamp = [](const std::string& text) {
        return Plant{{{"20240229120000+0100", text}},
                     {"error time-stamp: injection_date_time_stamp \"" + text +
                      "\" is no date and time as YYYYMMDDhhmmss+hhmm"}};
    };
    const auto interval = [](const std::string& value, const std::string& shown) {
        return Plant{{{"interval = 0.5", "interval = " + value}},
                     {"error sampling-interval: actual_sampling_interval is " + shown}};
    };
    expectFindings({
        stamp("20230229120000+0100"),
        stamp("20241329120000+0100"),
        stamp("20240229240000+0100"),
        stamp("20240229126000+0100"),
        stamp("20240229120061+0100"),
        stamp("20240229120000+1500"),
        stamp("20240229120000+0160"),
        stamp("20240229120000"),
        stamp("20240229120000+01000"),
        stamp("20240229120000 0100"),
        stamp("2024-02-29 12:00:00"),
        stamp("year0229120000+0100"),
        {{{"20240229120000+0100", ""}}, {"warning time-stamp: injection_date_time_stamp is empty"}},
        {{{"\"seconds\"", "\"furlongs\""}},
         {"warning retention-unit: retention_unit \"furlongs\" is neither minutes nor seconds; it "
          "counts as seconds"}},
        {{{"\"seconds\"", "\"Minutes\""}}, {}},
        interval("0", "0"),
        interval("-0.5", "-0.5"),
        interval("NaNf", "no number"),
        interval("Infinityf", "inf"),
        {{{"= \"Y\"", "= \"N\""}},
         {"error not-uniform: uniform_sampling_flag isn't Y: the file can't be converted to a pair",
          "warning not-uniform: uniform_sampling_flag isn't Y, but there is no "
          "raw_data_retention"}},
        {{{"= \"Y\"", "= \"N\""},
          {"float peak_area(", "float raw_data_retention(point_number) ; float peak_area("}},
         {"error not-uniform: uniform_sampling_flag isn't Y: the file can't be converted to a "
          "pair"}},
        {{{"1, 2, 8, 3, -1", "1, NaNf, 9, -Infinityf, -1"}},
         {"warning detector-limit: detector_maximum_value is 8, but the signal goes to 9",
          "error bad-sample: 2 samples of 5 infinite or no number, the first at point 2"}},
        // The tolerance is a millionth of the span of 9.
        {{{"value = 8", "value = 7.9999"}},
         {"warning detector-limit: detector_maximum_value is 7.9999, but the signal goes to 8"}},
        {{{"value = 8", "value = 7.999995"}}, {}},
        {{{"value = -1", "value = 0"}},
         {"warning detector-limit: detector_minimum_value is 0, but the signal goes to -1"}},
        {{{"0.5, 1.5 ;", "0.5, 2.5 ;"}},
         {"warning peak-times: 1 peak with a start behind the end, the first is peak 2"}},
        {{{"1, 1.75", "1.6, 1.4"}},
         {"warning peak-times: 2 peaks with a retention time outside start and end, the first is "
          "peak 1"}},
        {{{"1, 1.75", "1, 3.1"}, {"1.5, 2 ;", "1.5, 4 ;"}},
         {"warning outside-run: 1 peak with a retention time outside the run, the first is peak "
          "2"}},
        {{{"1, 1.75", "-1, 1.75"}, {"0.5, 1.5 ;", "-2, 1.5 ;"}},
         {"warning outside-run: 1 peak with a retention time outside the run, the first is peak "
          "1"}},
        {{{"1, 1.75", "1, 3.1"}, {"1.5, 2 ;", "1.5, 4 ;"}, {"delay_time = 0", "delay_time = 1"}},
         {}},
    });
}

std::string repeated(int count) {
    std::string list = "1";
    for (int i = 1; i < count; ++i) {
        list += ", 1";
    }
    return list;
}

Changes withPeaks(int count) {
    const std::string list = repeated(count);
    return {{"peak_number = 2", "peak_number = " + std::to_string(count)},
            {"= 1, 1.75", "= " + list},
            {"= 0.5, 1.5", "= " + list},
            {"= 1.5, 2", "= " + list}};
}

TEST(Check, FindsWhatAPairHasNoRoomFor) {
    const auto interval = [](const std::string& seconds, const std::string& words) {
        return Plant{{{"interval = 0.5", "interval = " + seconds}},
                     {"loss interval-cut: the sampling interval of " + words}};
    };
    const std::string longName = "loss peak-name-cut: 1 peak name cut to 14 characters, the first "
                                 "is \"Fifteen letters\"";
    expectFindings({
        {{{"20 characters ......", "Twenty-one characters"}},
         {"loss text-cut: sample_name is cut to 20 characters: \"Twenty-one character\""}},
        {{{"17 characters ...", "18 characters ...."}},
         {"loss text-cut: operator_name is cut to 17 characters: \"18 characters ...\""}},
        {{{"9 charac.", "10 charac."}},
         {"loss text-cut: detector_unit is cut to 9 characters: \"10 charac\""}},
        {{{"Fourteen chars", "Fifteen letters"}}, {longName}},
        {{{"Fourteen chars", "A"}, {R"("B")", R"("Fifteen letters")"}}, {longName}},
        {withPeaks(570), {}},
        {withPeaks(571),
         {"loss peak-table-left-out: the table of 571 peaks is left out: a pair holds at most "
          "570"}},
        interval("0.5004", "500.4 ms becomes 500 ms"),
        interval("0.7", "700 ms becomes 699 ms"),
        interval("32.768", "32768 ms becomes -32768 ms"),
        {{{"interval = 0.5", "interval = 32.75"}}, {}},
        {{{"  :languages", "  :actual_sampling_interval = \"fast\" ;\n  :languages"}},
         {"loss interval-cut: the sampling interval of 500 ms becomes 0 ms"}},
        {{{"0229120000", "0229120030"}},
         {"loss zone-left-out: the zone offset of injection_date_time_stamp 20240229120030+0100 is "
          "left out",
          "loss seconds-left-out: the seconds of injection_date_time_stamp 20240229120030+0100 are "
          "left out"}},
        {{{"  :languages", "  :dataset_date_time_stamp = \"20240301120001-0500\" ;\n  :languages"}},
         {"loss zone-left-out: the zone offset of dataset_date_time_stamp 20240301120001-0500 is "
          "left out",
          "loss seconds-left-out: the seconds of dataset_date_time_stamp 20240301120001-0500 are "
          "left out"}},
        {{{"value = 8", "value = 9.5"}},
         {"loss limit-left-out: detector_maximum_value of 9.5 becomes 8, as far as the signal "
          "goes"}},
        {{{"value = -1", "value = -2"}},
         {"loss limit-left-out: detector_minimum_value of -2 becomes -1, as far as the signal "
          "goes"}},
    });
}

TEST(Check, ListsWhatHasNoPlaceInThePair) {
    const TempFolder folder;
    generate(folder, "run.cdf",
             changed(goodText, {{R"(sample_id = "")", R"(sample_id = "7")"},
                                {R"("Y" ;)", R"("Y" ; ordinate_values:color = "red" ;)"}}));
    const std::string zone = "run.cdf: loss: the zone offset of injection_date_time_stamp "
                             "20240229120000+0100 is left out\n";
    const std::string rest =
        "run.cdf: loss: a pair has no place for dataset_completeness, aia_template_revision, "
        "netcdf_revision, languages, sample_id, actual_run_time_length, actual_delay_time, "
        "ordinate_values:color\n";
    EXPECT_EQ(
        runCommand(folder, "check run.cdf"),
        (CommandResult{.output = zone + rest + "run.cdf: conforms, 2 losses\n", .errors = ""}));
    EXPECT_EQ(runCommand(folder, "check -q run.cdf"), CommandResult{});
    EXPECT_EQ(runCommand(folder, "check -q --json run.cdf"), CommandResult{});
}

TEST(Check, FindsLayoutsThatNoToolMakes) {
    const TempFolder folder;
    folder.write("good.cdf", AndiText{}.bytes());
    const Lines known = findingsOf(folder, "good.cdf");
    const std::string variable = "11 1 'ordinate_values' 1 0 0 0 ";
    const std::vector<std::pair<AndiText, Lines>> files{
        {{.start = "1128547842"},
         {"warning version: the version of the file's layout is 2 instead of 1"}},
        {{.variables = variable + "5 8 1024"},
         {"error wrong-size: ordinate_values has 8 bytes, but its dimensions make 12"}},
        {{.dimensions = "10 2 'point_number' 3 'peak_number' 0"},
         {"error record-dimension: peak_number is 0 or the record dimension",
          "warning missing-variable: there is no variable peak_retention_time",
          "warning missing-variable: there is no variable peak_area"}},
        {{.variables = variable + "5 16 1024", .data = "5f 7f 6f 8f"},
         {"error wrong-size: ordinate_values has 16 bytes, but its dimensions make 12"}},
        // The size of three bytes may count the fourth, but then no more.
        {{.variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 'x' 1 0 0 0 2 4 1024"}, {}},
        {{.variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 'x' 1 0 0 0 2 3 1024"}, {}},
        {{.variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 'x' 1 0 0 0 2 8 1024"},
         {"error wrong-size: x has 8 bytes, but its dimensions make 3"}},
    };
    for (const auto& [text, found] : files) {
        folder.write("planted.cdf", text.bytes());
        EXPECT_EQ(beyond(findingsOf(folder, "planted.cdf"), known), found) << text.variables;
    }
}

TEST(Check, PassesGoodFiles) {
    const TempFolder folder;
    for (const std::string file :
         {SAMPLES "hplc_run.cdf", FOREIGN_ANDI_FILE, TEST_DATA "expected/dad_run1.cdf",
          TEST_DATA "expected/dad_run2.cdf", TEST_DATA "expected/dad_run3.cdf"}) {
        if (file != FOREIGN_ANDI_FILE || std::filesystem::exists(file)) {
            EXPECT_EQ(runCommand(folder, "check -q " + file), CommandResult{});
        }
    }
}

TEST(Check, AnswersWithItsExitStatus) {
    const TempFolder folder;
    generate(folder, "good.cdf", goodText);
    generate(folder, "bad.cdf",
             changed(goodText, {{"languages", "tongues"}, {"interval = 0.5", "interval = 0"}}));
    folder.write("pair.sli", std::string(2048, '\0'));
    const std::string interval = "bad.cdf: error: actual_sampling_interval is 0\n";
    const std::string languages = "bad.cdf: warning: there is no attribute languages\n";
    EXPECT_EQ(runCommand(folder, "check -q good.cdf bad.cdf"),
              (CommandResult{.status = 1, .output = languages + interval, .errors = ""}));
    EXPECT_TRUE(runCommand(folder, "check bad.cdf")
                    .output.ends_with("\nbad.cdf: 1 error, 1 warning, 2 losses\n"));
    EXPECT_EQ(runCommand(folder, "check -q none.cdf pair.sli"),
              (CommandResult{.status = 1,
                             .output = "none.cdf: error: Error opening Andi file none.cdf\n"
                                       "pair.sli: error: only ANDI files are checked, and this one "
                                       "is of the kind merivolta\n",
                             .errors = ""}));
    EXPECT_EQ(runCommand(folder, "check --json none.cdf").output,
              R"({"file":"none.cdf","findings":[{"severity":"error","rule":"unreadable",)"
              R"("message":"Error opening Andi file none.cdf"}],"conforms":false})"
              "\n");
    EXPECT_EQ(runCommand(folder, "check").status, 2);
    EXPECT_EQ(runCommand(folder, "check --frobnicate good.cdf").status, 2);
    EXPECT_EQ(runCommand(folder, "check --help").status, 0);
    EXPECT_EQ(runCommand(folder, "check good.cdf >/dev/full 2>/dev/null; echo $?").output, "1\n");
}

TEST(Check, ShowsTextsOfUnknownBytes) {
    const TempFolder folder;
    generate(folder, "run.cdf", changed(goodText, {{"\"seconds\"", R"("\033[31m\344")"}}));
    const CommandResult text = runCommand(folder, "check -q run.cdf");
    EXPECT_EQ(text.output.find('\x1b'), std::string::npos);
    EXPECT_NE(text.output.find("[31m\xc3\xa4\""), std::string::npos) << text;
    EXPECT_TRUE(findingsOf(folder, "run.cdf")
                    .contains("warning retention-unit: retention_unit \"\x1b[31m\xc3\xa4\" is "
                              "neither minutes nor seconds; it counts as seconds"));
}

} // namespace
} // namespace korlit
