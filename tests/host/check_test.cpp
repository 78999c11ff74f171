// Which rules find something in a file that has all of the template, changed in one place.
#include "host/check/structure_rules.h"
#include "host/check/template_check.h"
#include "tests/support/andi_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <utility>

namespace korlit::host {
namespace {

using namespace korlit::test;

/// A change to full.cdl's file, in the words of andi_text.h, that keeps its length.
using Edit = std::pair<std::string, std::string>;

std::string severityAndRule(const Findings& findings) {
    std::string words;
    for (const auto& [severity, rule, message] : findings) {
        words += (words.empty() ? "" : ", ") + std::string{severityName(severity)} + " " + rule;
    }
    return words;
}

class Rules : public testing::Test {
  protected:
    std::string edited(const std::vector<Edit>& edits) const {
        std::string bytes = whole;
        for (const auto& [from, to] : edits) {
            const std::string old = layOut(from);
            const std::size_t place = bytes.find(old);
            EXPECT_TRUE(place != std::string::npos && bytes.find(old, place + 1) == bytes.npos &&
                        old.size() == layOut(to).size())
                << from;
            bytes.replace(place, old.size(), layOut(to));
        }
        return bytes;
    }

    /// What all rules find in a file, or those of structure alone.
    std::string found(const std::vector<Edit>& edits, bool isOfStructure = false) const {
        AndiImage image;
        EXPECT_EQ(load(image, folder.write("x.cdf", edited(edits))), "");
        const Subject subject = subjectOf(image);
        Findings findings;
        if (isOfStructure) {
            applyRules(structureRules(), subject, findings);
        } else {
            findings = departuresFromTemplate(subject);
        }
        return severityAndRule(findings);
    }
    std::string foundOfStructure(const std::vector<Edit>& edits) const {
        return found(edits, true);
    }

    TempFolder folder;
    std::string whole = readFile(TEST_DATA "full.cdf");
};

std::string nameWord(const std::string& name) {
    return '\'' + name + '\'';
}

std::vector<std::string> wordsIn(const char* text) {
    std::istringstream in{text};
    return {std::istream_iterator<std::string>{in}, {}};
}

TEST_F(Rules, WantOfEachVariableItsNameTypeAndDimension) {
    struct Variables {
        const char* names;
        std::string layout;      ///< dimensions, no attributes, type
        std::string otherLayout; ///< over another dimension of the same length, where one is
        std::string missing;
        std::string wrong;
    };
    const std::string number = " 0 0 0 5";
    const std::string column = " 1 1 0 0 5";
    const std::string otherColumn = " 1 4 0 0 5";
    const std::string texts = " 2 1 2 0 0 2";
    const std::string otherTexts = " 2 4 2 0 0 2";
    EXPECT_EQ(found({}), "");
    for (const auto& [names, layout, otherLayout, missing, wrong] :
         std::initializer_list<Variables>{
             {"raw_data_retention", " 1 0 0 0 5", " 1 3 0 0 5", "", "warning"},
             {"actual_sampling_interval", number, number, "error", "warning"},
             {"actual_run_time_length actual_delay_time detector_maximum_value "
              "detector_minimum_value",
              number, number, "warning", "warning"},
             {"peak_retention_time peak_area", column, otherColumn, "warning", "error"},
             {"peak_amount peak_start_time peak_end_time peak_area_percent peak_height", column,
              otherColumn, "", "error"},
             {"peak_width peak_area_square_root peak_height_percent peak_asymmetry "
              "peak_efficiency baseline_start_time baseline_start_value baseline_stop_time "
              "baseline_stop_value migration_time retention_index",
              column, otherColumn, "", "warning"},
             {"peak_name", texts, otherTexts, "", "error"},
             {"peak_start_detection_code peak_stop_detection_code", texts, otherTexts, "",
              "warning"},
         }) {
        for (const std::string& name : wordsIn(names)) {
            SCOPED_TRACE(name);
            const std::string old = nameWord(name) + layout;
            const auto foundWith = [&](const std::string& other) {
                return foundOfStructure({{old, other}});
            };
            EXPECT_EQ(foundWith(nameWord("x" + name.substr(1)) + layout),
                      missing.empty() ? "" : missing + " missing-variable");
            const std::string otherType = layout.ends_with('2') ? "1" : "4";
            EXPECT_EQ(foundWith(old.substr(0, old.size() - 1) + otherType), wrong + " wrong-type");
            EXPECT_EQ(foundWith(nameWord(name) + otherLayout),
                      otherLayout == layout ? "" : wrong + " wrong-dimension");
        }
    }
    // An attribute does for a number, but for no column.
    EXPECT_EQ(foundOfStructure({{"'actual_delay_time' 0", "'xctual_delay_time' 0"},
                                {"'autosampler_position' 2", "'actual_delay_time' 2"}}),
              "");
    EXPECT_EQ(
        foundOfStructure({{"'peak_area' 1", "'xeak_area' 1"}, {"'error_log' 2", "'peak_area' 2"}}),
        "warning missing-variable");
    // Of any type, but over the peaks.
    const std::string marks = "'manually_reintegrated_peaks' 1 ";
    EXPECT_EQ(foundOfStructure({{marks + "1 0 0 3", marks + "4 0 0 3"}}),
              "warning wrong-dimension");
}

TEST_F(Rules, WantTextsOfTheTemplateToBeTexts) {
    for (const auto& [names, isRequired] :
         {std::pair{"dataset_completeness aia_template_revision netcdf_revision languages "
                    "injection_date_time_stamp detector_unit retention_unit uniform_sampling_flag",
                    true},
          std::pair{"dataset_date_time_stamp autosampler_position experiment_title operator_name "
                    "separation_experiment_type source_file_reference sample_name sample_id "
                    "detection_method_name detector_name peak_amount_unit error_log",
                    false}}) {
        for (const std::string& name : wordsIn(names)) {
            const std::string old = nameWord(name) + " 2";
            EXPECT_EQ(foundOfStructure({{old, nameWord("x" + name.substr(1)) + " 2"}}),
                      isRequired ? "warning missing-attribute" : "")
                << name;
            const std::string found = foundOfStructure({{old, nameWord(name) + " 1"}});
            EXPECT_TRUE(found.ends_with("warning wrong-text-type")) << name << ": " << found;
        }
    }
}

TEST_F(Rules, LookAtValuesUpToTheirLimits) {
    // The interval, length, delay, limits and peaks.
    const auto run = [](const std::string& numbers) {
        return Edit{"2f 8f 3f 80f 10f 5f 8f", numbers};
    };
    const Edit uneven{"'uniform_sampling_flag' 2 1 \"Y\"", "'uniform_sampling_flag' 2 1 \"N\""};
    const auto unit = [](const std::string& text) {
        return Edit{"'retention_unit' 2 7 \"seconds\"", "'retention_unit' 2 7 \"" + text + '"'};
    };
    const Edit large{"10f 20f 80f 11f", "1000000f 1000001f 1000001f 1000000f"};
    struct Case {
        std::vector<Edit> edits;
        const char* found;
    };
    for (const auto& [edits, expected] : std::initializer_list<Case>{
             // The run is from 3 to 11; an interval on either side belongs to it.
             {{run("2f 8f 3f 80f 10f 1f 8f"), {"4f 6f", "1f 6f"}}, ""},
             {{run("2f 8f 3f 80f 10f 0.999f 8f"), {"4f 6f", "0f 6f"}}, "warning outside-run"},
             {{run("2f 8f 3f 80f 10f 5f 13f"), {"6f 9f", "6f 14f"}}, ""},
             {{run("2f 8f 3f 80f 10f 5f 13.001f"), {"6f 9f", "6f 14f"}}, "warning outside-run"},
             {{run("2f 8f 3f 80f 10f 5f 14f"), {"6f 9f", "6f 14f"}, uneven}, "error not-uniform"},
             {{run("2f 8f nanf 80f 10f 5f 8f")}, ""},
             // A peak may begin and end where it is highest, but for the rounding of floats.
             {{run("2f 8f 3f 80f 10f 4f 9f")}, ""},
             {{run("2f 8f 3f 80f 10f 3.999998f 9.000005f")}, ""},
             {{run("2f 8f 3f 80f 10f 3.9999f 8f")}, "warning peak-times"},
             {{run("2f 8f 3f 80f 10f 5f 9.0001f")}, "warning peak-times"},
             {{{"4f 6f", "6.000005f 6f"}, run("2f 8f 3f 80f 10f 6f 8f")}, ""},
             {{{"4f 6f", "6.0001f 6f"}, run("2f 8f 3f 80f 10f 6f 8f")}, "warning peak-times"},
             {{{"4f 6f", "nanf 6f"}}, ""},
             // A limit within a millionth of the span of 70, or half a bit of what is large.
             {{run("2f 8f 3f 79.99994f 10.00006f 5f 8f")}, ""},
             {{run("2f 8f 3f 79.9999f 10f 5f 8f")}, "warning detector-limit"},
             {{run("2f 8f 3f 80f 10.0001f 5f 8f")}, "warning detector-limit"},
             {{run("2f 8f 3f 79f 11f 5f 8f")}, "warning detector-limit, warning detector-limit"},
             {{run("2f 8f 3f 81f -inff 5f 8f")}, ""},
             {{run("2f 8f 3f nanf nanf 5f 8f")}, ""},
             {{large, run("2f 8f 3f 1000000.9375f 0f 5f 8f")}, ""},
             {{large, run("2f 8f 3f 1000000.875f 0f 5f 8f")}, "warning detector-limit"},
             {{{"10f 20f 80f 11f", "nanf nanf nanf nanf"}}, "error bad-sample"},
             // An interval is no matter where each sample has its time.
             {{run("0f 8f 3f 80f 10f 5f 8f"), uneven}, "error not-uniform"},
             {{uneven, {"'raw_data_retention' 1", "'xaw_data_retention' 1"}},
              "error not-uniform, warning not-uniform"},
             // Units and stamps.
             {{unit("sec.___")}, ""},
             {{unit("SECONDS")}, ""},
             {{unit("_second")}, "warning retention-unit"},
             {{{"\"20240229130000-0230\"", "\"20001231235960+1400\""}}, ""},
             {{{"\"20240229130000-0230\"", "\"20240229130000-023x\""},
               {"\"20240229120000+0100\"", "\"20230229120000+0100\""}},
              "error time-stamp, error time-stamp"},
         }) {
        EXPECT_EQ(found(edits), expected) << edits.back().second;
    }
}

} // namespace
} // namespace korlit::host
