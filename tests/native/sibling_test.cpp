// Sibling libraries of every kind, put in front of the real one by the loader's own search path.
#include "tests/support/image.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace korlit {
namespace {

using namespace test;

class SiblingTest : public testing::Test {
  protected:
    /// Calls Merivolta2Andi of a library in a process of its own that looks for siblings in `path`
    /// first; answers what call_export prints, with what the process wrote to standard error ahead.
    std::string call(const std::string& library, const std::string& path) {
        const std::string command = "LD_LIBRARY_PATH=" + path + " " CALL_EXPORT " " + library +
                                    " Merivolta2Andi " + slice + " >" + folder.path("out") +
                                    " 2>&1";
        EXPECT_EQ(std::system(command.c_str()), 0);
        return readFile(folder.path("out"));
    }

    std::string outcome(int result, const std::string& extension,
                        const std::string& message) const {
        return std::to_string(result) + " path '" + folder.path("run." + extension) +
               "' message '" + message + "'";
    }

    TempFolder folder;
    std::string slice = folder.write("run.sli", readImage(LISTINGS "two_peaks.sli.txt"));
    std::string report = folder.write("run.rpt", readImage(LISTINGS "two_peaks.rpt.txt"));
};

TEST_F(SiblingTest, EachWayToFailIsTold) {
    const std::string noLoad = outcome(0, "sli", "Fatal Error\n\n: Cannot load \"Ostrelix.dll\"");
    const auto noEntry = [&](const std::string& name, const std::string& extension) {
        return outcome(0, extension,
                       "Fatal Error:\n--------------\n\nCannot locate \"" + name +
                           "\" Function in Ostrelix.dll !!!");
    };
    const std::string asBefore = "as the host left it";
    const std::string written = "Merivolta File converted to " + folder.path("run.cdf") + ".";
    const std::pair<std::string, std::string> cases[]{
        {"whole", outcome(1, "cdf", written)},
        {"no_update_rep_header", outcome(1, "cdf", written)}, // which a current report doesn't need
        {"no_read_chrom_header", noEntry("ReadChromHeader", "sli")},
        {"no_get_sli_data_offset", noEntry("GetSliDataOffSet", "rpt")},
        {"refuses", outcome(0, "sli", "Fatal Error:\n\nCannot Get SliDataOffSet from Version !!!")},
        {"refuses_and_tells", "refused " + slice + "\n" + outcome(0, "sli", asBefore)},
        {"throws_at_once", outcome(0, "sli", asBefore)}};
    for (const auto& [stub, expected] : cases) {
        EXPECT_EQ(call(BUILT_LIBRARY, STUBS + stub), expected) << stub;
    }
    // An older report needs its update.
    std::string older = readFile(report);
    older[0] = '\x11';
    folder.write("run.rpt", older);
    const std::string notUpdated =
        outcome(0, "rpt", "Unable to update Report Header in File " + report);
    EXPECT_EQ(call(BUILT_LIBRARY, STUBS "no_update_rep_header"), notUpdated);
    EXPECT_EQ(call(BUILT_LIBRARY, STUBS "throws_on_update"), notUpdated);
    EXPECT_EQ(call(BUILT_LIBRARY, STUBS "whole"), outcome(1, "cdf", written));

    folder.write("libostrelix.so", "no library at all");
    EXPECT_EQ(call(BUILT_LIBRARY, folder.path("")), noLoad);
    std::filesystem::remove(folder.path("libostrelix.so"));
    const std::string alone = folder.write("libkorlit.so", readFile(BUILT_LIBRARY));
    EXPECT_EQ(call(alone, ""), noLoad);
}

TEST_F(SiblingTest, AFileThatGoesOrShrinksMeanwhileIsTold) {
    const std::string cut = "Error reading Merivolta file " + report;
    const std::pair<std::string, std::string> cases[]{
        {"slice_vanishes", outcome(0, "sli", "Error opening Merivolta Raw Data file " + slice)},
        {"report_vanishes", outcome(0, "rpt", "Error opening Merivolta Report file " + report)},
        {"slice_shrinks", outcome(0, "rpt", cut)},
        {"report_shrinks", outcome(0, "rpt", cut)}};
    for (const auto& [stub, expected] : cases) {
        folder.write("run.sli", readImage(LISTINGS "two_peaks.sli.txt"));
        folder.write("run.rpt", readImage(LISTINGS "two_peaks.rpt.txt"));
        EXPECT_EQ(call(BUILT_LIBRARY, STUBS + stub), expected) << stub;
        EXPECT_FALSE(std::filesystem::exists(folder.path("run.cdf"))) << stub;
    }
}

} // namespace
} // namespace korlit
