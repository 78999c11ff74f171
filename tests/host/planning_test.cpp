// The paths of a batch, and what would go wrong between its jobs.
#include "host/convert/planning.h"
#include "host/files/path_list.h"
#include "host/text/wrong_use.h"
#include "tests/support/andi_text.h"
#include "tests/support/image.h"
#include "tests/support/run_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace korlit::host {
namespace {

using namespace korlit::test;

TEST(PathList, EndsPathsWhereItsKindDoes) {
    const TempFolder folder;
    using Paths = std::vector<std::string>;
    struct Case {
        std::string bytes;
        bool isZeroSeparated;
        Paths paths;
    };
    for (const auto& [bytes, isZeroSeparated, paths] : std::initializer_list<Case>{
             {"", false, {}},
             {"a\nb", false, {"a", "b"}},
             {"a\r\nb\r\n", false, {"a", "b"}},
             {"\n\r\n\na\n", false, {"a"}},
             {"a\rb\n a \n", false, {"a\rb", " a "}},
             {"a\nb\r", true, {"a\nb\r"}},
             {std::string{"a\n\0\0b", 5}, true, {"a\n", "b"}},
         }) {
        Inputs inputs;
        inputs.paths = {"first"};
        inputs.filesFrom = folder.write("list", bytes);
        inputs.isZeroSeparated = isZeroSeparated;
        Paths expected{"first"};
        expected.insert(expected.end(), paths.begin(), paths.end());
        EXPECT_EQ(pathsOf(inputs), expected) << bytes;
    }
    for (const std::string& list : {folder.path("none"), folder.path("")}) {
        Inputs inputs;
        inputs.filesFrom = list;
        EXPECT_THROW(pathsOf(inputs), WrongUse) << list;
    }
}

class Planning : public testing::Test {
  protected:
    /// Makes the files of words such as "a/x.cdf": ANDI files, pairs and runs by their names. A
    /// name behind = is a link to it.
    void make(const std::string& words) const {
        std::istringstream in{words};
        for (std::string word; in >> word;) {
            const std::string name = word.substr(0, word.find('='));
            std::filesystem::create_directories(
                std::filesystem::path{folder.path(name)}.parent_path());
            if (name != word) {
                std::filesystem::create_symlink(folder.path(word.substr(name.size() + 1)),
                                                folder.path(name));
            } else {
                folder.write(name, bytesOf(name));
            }
        }
    }

    static std::string bytesOf(const std::string& name) {
        if (name.ends_with(".cdf")) {
            return AndiText{}.bytes();
        }
        if (name.ends_with(".run")) {
            RunText run;
            run.count = "2s";
            run.channels = 2;
            return run.bytes();
        }
        return name.ends_with(".sli") || name.ends_with(".rpt")
                   ? readImage(LISTINGS "two_peaks." + name.substr(name.size() - 3) + ".txt")
                   : "nothing known\n";
    }

    /// The problems of all jobs, each as "name: words; ", without the folder's path.
    std::string problemsOf(WorkOptions options, const std::string& paths) const {
        std::istringstream in{paths};
        for (std::string path; in >> path;) {
            options.inputs.paths.push_back(folder.path(path));
        }
        const WorkList work = listWork(options, {});
        std::string problems;
        for (std::size_t i = 0; i < work.size(); ++i) {
            const Job job = work.job(i);
            problems += job.problem.empty() ? "" : job.plan.source + ": " + job.problem + "; ";
        }
        const std::string root = folder.path("");
        for (std::size_t at = 0; (at = problems.find(root)) != std::string::npos;) {
            problems.erase(at, root.size());
        }
        return problems;
    }

    TempFolder folder;
};

TEST_F(Planning, NotesWhatJobsWouldDoToEachOther) {
    std::filesystem::create_directory(folder.path("out"));
    make("a/x.cdf b/x.cdf c/x.sli c/x.rpt d/y.run d/y2.cdf e/z.cdf e/z.sli e/z.rpt"
         " f/z.run g/link.cdf=a/x.cdf x1.run x.run h=a");
    WorkOptions beside;
    WorkOptions out;
    out.outputFolder = folder.path("out");
    struct Case {
        const WorkOptions& options;
        const char* paths;
        const char* problems;
    };
    for (const auto& [options, paths, problems] : std::initializer_list<Case>{
             {beside, "a/x.cdf b/x.cdf c/x.sli d/y.run", ""},
             {out, "a/x.cdf c/x.sli d/y.run", ""},
             {out, "a/x.cdf b/x.cdf", "b/x.cdf: Its file out/x.rpt is that of a/x.cdf; "},
             {out, "b/x.cdf a/x.cdf", "a/x.cdf: Its file out/x.rpt is that of b/x.cdf; "},
             // The second channel of a run.
             {beside, "d/y.run d/y2.cdf",
              "d/y.run: Its file d/y2.cdf is a source of this batch, d/y2.cdf; "
              "d/y2.cdf: It would be replaced by what is made of d/y.run; "},
             // Both directions at once.
             {beside, "e/z.cdf e/z.sli",
              "e/z.cdf: Its file e/z.sli is a source of this batch, e/z.sli; "
              "e/z.sli: It would be replaced by what is made of e/z.cdf; "},
             // By another way to the same folder.
             {beside, "a/x.cdf h/x.cdf", ""},
             {beside, "g/link.cdf a/x.cdf", ""},
         }) {
        EXPECT_EQ(problemsOf(options, paths), problems) << paths;
    }
}

TEST_F(Planning, FoldersThatAreStillMissingAreToldApart) {
    make("in/a/x.cdf in/b/x.cdf in/b/y.sli in/b/y.rpt y.cdf");
    WorkOptions options;
    options.outputFolder = folder.path("new/out");
    options.inputs.isRecursive = true;
    options.to = Goal::Pair;
    EXPECT_EQ(problemsOf(options, "in"), "");
    options.inputs.isRecursive = false;
    EXPECT_EQ(problemsOf(options, "in/a/x.cdf in/b/x.cdf"),
              "in/b/x.cdf: Its file new/out/x.rpt is that of in/a/x.cdf; ");
    options.outputFolder.clear();
    options.inputs.paths = {folder.path("in/a/x.cdf"), folder.path("y.cdf")};
    EXPECT_EQ(
        listWork(options, {}).targetFolders(),
        (std::set<std::filesystem::path>{
            folder.path("in/a"), folder.path("y.cdf").substr(0, folder.path("").size() - 1)}));
}

TEST_F(Planning, AnOutputIsANameWithOrWithoutAnEnding) {
    make("x.cdf y.sli y.rpt");
    struct Case {
        const char* source;
        const char* output;
        const char* targets; ///< empty for wrong use
    };
    for (const auto& [source, output, targets] : std::initializer_list<Case>{
             {"x.cdf", "plain", "plain.sli plain.rpt "},
             {"x.cdf", ".hidden", ".hidden.sli .hidden.rpt "},
             {"x.cdf", "new/z.RPT", "new/z.sli new/z.rpt "},
             {"x.cdf", "z.cdf", ""},
             {"x.cdf", ".sli", ""},
             {"y.sli", "plain", "plain.cdf "},
             {"y.sli", "z.CDF", "z.CDF "},
             {"y.sli", "z.sli", ""},
             {"y.sli", ".cdf", ""},
             {"y.sli", "new/", ""},
         }) {
        WorkOptions options;
        options.inputs.paths = {folder.path(source)};
        options.output = folder.path(output);
        std::string paths;
        try {
            for (const StagedFile& target : listWork(options, {}).job(0).plan.targets) {
                paths += target.path.string().substr(folder.path("").size()) + ' ';
            }
        } catch (const WrongUse&) {
        }
        EXPECT_EQ(paths, targets) << output;
    }
}

} // namespace
} // namespace korlit::host
