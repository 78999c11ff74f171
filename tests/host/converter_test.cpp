// One conversion after the other, as a worker does them.
#include "host/convert/converter.h"

#include "tests/support/andi_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace korlit::host {
namespace {

using namespace korlit::test;
namespace fs = std::filesystem;

/// What lies in the folders for files on their way, by the folders that they are in: the starts of
/// their notes, and of all else that was left there.
using FoundFolders = std::vector<std::pair<std::string, std::string>>;
FoundFolders workFoldersBelow(const fs::path& root) {
    FoundFolders found;
    for (const auto& entry : fs::recursive_directory_iterator{root}) {
        const fs::path work = entry.path().parent_path();
        if (work.filename().string().starts_with(".korlit-work-")) {
            found.emplace_back(work.parent_path().filename(), readFile(entry.path()).substr(0, 24));
        }
    }
    return found;
}

TEST(ConverterTest, FilesOnTheirWayAreBesideTheirPlace) {
    const TempFolder folder;
    const fs::path root = folder.path("");
    const std::string nothing(24, '\0');
    folder.write("good.cdf", AndiText{}.bytes());
    folder.write("bad.cdf", "CDF");
    folder.write("doubles.cdf", AndiText{.variables = "11 1 'ordinate_values' 1 0 0 0 6 24 1024",
                                         .data = "5 7 6 7 5 6"}
                                    .bytes());
    Converter converter{{.existing = Existing::Replace}};
    const auto statusOf = [&](const std::string& name, const std::string& target) {
        const Plan plan = planFor(folder.path(name), FileKind::Andi, root / target, "x");
        return converter.perform({.plan = plan, .problem = {}}, 1).status;
    };
    for (const std::string target : {"a", "b", "b", "a"}) {
        EXPECT_EQ(statusOf("good.cdf", target), JobStatus::Converted);
        ASSERT_EQ(workFoldersBelow(root).size(), 1U);
        EXPECT_EQ(workFoldersBelow(root).front().first, target);
        EXPECT_NE(workFoldersBelow(root).front().second, nothing);
        EXPECT_EQ(readFile(root / target / "x.sli").size(), 2060U);
    }
    // What was noted of a delivery is none of the next, nor is what one that failed has staged.
    EXPECT_EQ(statusOf("doubles.cdf", "a"), JobStatus::Failed);
    EXPECT_EQ(workFoldersBelow(root).size(), 3U);
    EXPECT_EQ(statusOf("bad.cdf", "a"), JobStatus::Failed);
    EXPECT_EQ(workFoldersBelow(root), (FoundFolders{{"a", nothing}}));
    converter.end();
    EXPECT_EQ(workFoldersBelow(root), FoundFolders{});
}

} // namespace
} // namespace korlit::host
