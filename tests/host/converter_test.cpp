// One conversion after the other, as a worker does them.
#include "host/convert/converter.h"

#include "tests/support/andi_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace korlit::host {
namespace {

using namespace korlit::test;
namespace fs = std::filesystem;

/// The folders for files on their way below a folder, by the folders that they are in.
std::vector<std::string> workFoldersBelow(const fs::path& root) {
    std::vector<std::string> found;
    for (const auto& entry : fs::recursive_directory_iterator{root}) {
        if (entry.path().filename().string().starts_with(".korlit-work-")) {
            found.push_back(entry.path().parent_path().filename());
        }
    }
    return found;
}

TEST(ConverterTest, FilesOnTheirWayAreBesideTheirPlace) {
    const TempFolder folder;
    const fs::path root = folder.path("");
    folder.write("good.cdf", AndiText{}.bytes());
    folder.write("bad.cdf", "CDF");
    Converter converter{{.existing = Existing::Replace}};
    const auto statusOf = [&](const std::string& name, const std::string& target) {
        const Plan plan = planFor(folder.path(name), FileKind::Andi, root / target, "x");
        return converter.perform({.plan = plan, .problem = {}}, 1).status;
    };
    for (const std::string target : {"a", "b", "b", "a"}) {
        EXPECT_EQ(statusOf("good.cdf", target), JobStatus::Converted);
        EXPECT_EQ(workFoldersBelow(root), std::vector{target});
        EXPECT_EQ(readFile(root / target / "x.sli").size(), 2060U);
    }
    const auto noteOf = [&] {
        for (const auto& entry : fs::recursive_directory_iterator{root}) {
            if (entry.path().filename() == "lock") {
                return readFile(entry.path()).substr(0, 24);
            }
        }
        return std::string{};
    };
    // What was noted of a delivery is none of the next.
    const std::string nothing(24, '\0');
    EXPECT_NE(noteOf(), nothing);
    EXPECT_EQ(statusOf("bad.cdf", "a"), JobStatus::Failed);
    EXPECT_EQ(noteOf(), nothing);
    converter.end();
    EXPECT_EQ(workFoldersBelow(root), std::vector<std::string>{});
}

} // namespace
} // namespace korlit::host
