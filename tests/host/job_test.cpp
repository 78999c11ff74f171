// What is decided of one file, and its outcome on the way between processes.
#include "host/convert/job.h"

#include "tests/support/andi_text.h"
#include "tests/support/image.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <chrono>
#include <stdexcept>

namespace korlit::host {
namespace {

using namespace korlit::test;
namespace fs = std::filesystem;

TEST(Decisions, FollowTheAgesOfBothFilesOfASource) {
    const TempFolder folder;
    const std::string source = folder.path("run.sli");
    const std::string target = folder.path("run.cdf");
    const Job job{.plan = planFor(source, FileKind::Merivolta, folder.path(""), "run"),
                  .problem = {}};
    constexpr int missing = -1;
    struct Case {
        int slice, report, andi; ///< how many hours old
        Existing existing;
        bool begins, replaces;
        const char* message; ///< holds this
    };
    for (const auto& each : std::initializer_list<Case>{
             {2, 2, missing, Existing::Refuse, true, false, ""},
             {2, 2, missing, Existing::Skip, true, false, ""},
             {2, 2, missing, Existing::Update, true, true, ""},
             {2, 2, missing, Existing::Replace, true, true, ""},
             {1, 1, 2, Existing::Refuse, false, false, "is there already (--force"},
             {1, 1, 2, Existing::Skip, false, false, "is there already"},
             {1, 1, 2, Existing::Update, true, true, ""},
             {1, 2, 2, Existing::Update, true, true, ""},
             {2, 1, 2, Existing::Update, true, true, ""},
             {2, 2, 2, Existing::Update, false, false, "is no older than its source"},
             {2, 3, 1, Existing::Update, false, false, "is no older than its source"},
             {3, 3, 1, Existing::Replace, true, true, ""},
         }) {
        AndiText andi;
        andi.globals = oneText("source_file_reference", "run.sli");
        folder.write("run.sli", readImage(LISTINGS "two_peaks.sli.txt"));
        folder.write("run.rpt", readImage(LISTINGS "two_peaks.rpt.txt"));
        folder.write("run.cdf", andi.bytes());
        const auto now = fs::file_time_type::clock::now();
        const std::pair<const char*, int> ages[]{
            {"run.sli", each.slice}, {"run.rpt", each.report}, {"run.cdf", each.andi}};
        for (const auto& [name, hours] : ages) {
            hours == missing
                ? void(fs::remove(folder.path(name)))
                : fs::last_write_time(folder.path(name), now - std::chrono::hours{hours});
        }
        SCOPED_TRACE(std::to_string(each.slice) + std::to_string(each.report) +
                     std::to_string(each.andi) + each.message);
        const Decision decision = decide(job, each.existing);
        EXPECT_EQ(decision.isToBegin, each.begins);
        EXPECT_EQ(decision.isReplacing, each.replaces);
        EXPECT_EQ(decision.targets.size(), each.begins ? 1U : 0U);
        EXPECT_NE(decision.outcome.message.find(each.message), std::string::npos)
            << decision.outcome.message;
    }
}

TEST(Outcomes, ComeWholeOrNotAtAll) {
    Outcome outcome{.status = JobStatus::Planned, .message = "done"};
    outcome.warnings = {"", "cut"};
    outcome.losses = {{.rule = "a", .words = "b"}};
    outcome.resampling = ResampledFile{.intervalMs = -2, .oldCount = 7, .newCount = 6, .unit = "V"};
    outcome.seconds = 0.5;
    outcome.points = 1L << 40;
    outcome.peaks = 3;
    outcome.verdict = RecordedVerdict{
        .words = "w", .isSame = true, .expected = {{"r", "s", 9}}, .unexpected = {}};
    outcome.kept = {"x.sli", std::string{"\0y", 2}};
    outcome.record = std::string(300, 'z');
    const std::string whole = packOutcome(42, outcome);
    EXPECT_EQ(packedJob(whole), 42U);
    const Outcome back = unpackOutcome(whole);
    EXPECT_EQ(packOutcome(42, back), whole);
    EXPECT_EQ(back.status, JobStatus::Planned);
    EXPECT_EQ(back.warnings, outcome.warnings);
    EXPECT_EQ(back.losses, outcome.losses);
    EXPECT_EQ(back.resampling->newCount, 6U);
    EXPECT_EQ(back.points, outcome.points);
    EXPECT_EQ(back.verdict->expected.front().count, 9);
    EXPECT_EQ(back.kept, outcome.kept);
    for (std::size_t length = 0; length < whole.size(); ++length) {
        EXPECT_THROW(unpackOutcome(whole.substr(0, length)), std::out_of_range) << length;
    }
}

} // namespace
} // namespace korlit::host
