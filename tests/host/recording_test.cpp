// The record of a batch on a disk that fills up for a while.
#include "host/convert/recording.h"

#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace korlit::host {
namespace {

TEST(RecordingTest, NothingFollowsALineThatWasLost) {
    const test::TempFolder folder;
    const std::string manifest = folder.path("done.jsonl");
    RecordingOptions options;
    options.manifest = manifest;
    Recording recording{options, "batch", 3};
    Outcome outcome;
    outcome.record = std::string(5000, 'x') + "\n";
    recording.add({}, outcome);
    const std::string whole = test::readFile(manifest);
    EXPECT_TRUE(whole.ends_with(outcome.record));
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit limited{.rlim_cur = whole.size() + 100, .rlim_max = before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limited);
    recording.add({}, outcome);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(recording.problem(), "can't write " + manifest + ": File too large");
    // There is room again.
    recording.add({}, outcome);
    EXPECT_EQ(test::readFile(manifest), whole);
}

} // namespace
} // namespace korlit::host
