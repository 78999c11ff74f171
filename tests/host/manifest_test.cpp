// The lines of a manifest, and which of them still count.
#include "host/manifest/manifest.h"
#include "host/manifest/newest.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <sstream>

namespace korlit::host {
namespace {

using namespace korlit::test;

FileRecord fullRecord() {
    return {.batch = "b1",
            .time = "2026-11-23T10:00:00+01:00",
            .kind = "dunvale",
            .result = "converted",
            .message = "a \"quoted\" line\nand \x01",
            .sources = {{.path = "/in/\xE9.run", .digest = FileDigest{.size = 1, .sha256 = "ab"}},
                        {.path = "/in/gone", .digest = {}}},
            .outputs = {{.path = "/out/1.cdf",
                         .digest = FileDigest{.size = 1LL << 40, .sha256 = "cd"}}},
            .verdict = RecordedVerdict{.words = "same data",
                                       .isSame = true,
                                       .expected = {{.rule = "no-place", .words = "w", .count = 3}},
                                       .unexpected = {"u"}},
            .losses = {"a loss"},
            .warnings = {"a warning"},
            .sample = "Probe \xC3\xBC",
            .operatorName = "<b>",
            .date = "2005-10-12",
            .channels = {
                {.number = 9,
                 .unit = "mAU",
                 .points = 5'000'000'000,
                 .times = std::pair{0.0, 12.5},
                 .values = std::pair{-1e-9, 3.25},
                 .peaks = {{.name = "one", .time = 1.5}, {.name = "", .time = {}}},
                 .outline = {0, 250, -1, -1}},
                {.number = 0, .unit = "", .times = {}, .values = {}, .peaks = {}, .outline = {}}}};
}

TEST(ManifestLine, HoldsAllOfARecordButNoPartOfALine) {
    const BatchRecord batch{.batch = "b1",
                            .time = "t",
                            .version = "0.2.0",
                            .machine = "m",
                            .folder = "/home/\xFF",
                            .arguments = {"--to", "andi", ""},
                            .fileCount = 20'000};
    for (const std::string& line : {lineOf(fullRecord()), lineOf(batch)}) {
        EXPECT_EQ(line.find('\n'), line.size() - 1);
        const auto record = recordIn(line.substr(0, line.size() - 1));
        ASSERT_TRUE(record) << line;
        EXPECT_EQ(std::visit([](const auto& each) { return lineOf(each); }, *record), line);
        for (std::size_t size = 0; size + 1 < line.size(); ++size) {
            EXPECT_FALSE(size > 0 && recordIn(line.substr(0, size)).has_value()) << size;
        }
    }
    const auto read = std::get<FileRecord>(*recordIn(lineOf(fullRecord())));
    EXPECT_EQ(read.sources[0].path, fullRecord().sources[0].path);
    EXPECT_EQ(read.sources[0].digest, fullRecord().sources[0].digest);
    EXPECT_FALSE(read.sources[1].digest);
    EXPECT_EQ(read.outputs[0].digest->size, 1LL << 40);
    EXPECT_EQ(read.channels[0].points, 5'000'000'000);
    EXPECT_EQ(read.channels[0].outline, (Outline{0, 250, -1, -1}));
    EXPECT_FALSE(read.channels[0].peaks[1].time);
    EXPECT_EQ(read.verdict->expected[0].count, 3);
}

TEST(ManifestLine, OfAnotherShapeIsNoRecord) {
    for (const char* line :
         {"", "{}", "[]", "null", "1", "\"file\"", "{", "{\"record\":\"file\"}", "not JSON",
          "{\"record\":\"other\"}", "{\"result\":\"converted\",\"sources\":[]}",
          "{\"result\":\"converted\",\"sources\":7}"}) {
        EXPECT_FALSE(recordIn(line).has_value()) << line;
    }
    const std::string line = lineOf(fullRecord());
    // Whatever type stands where another belongs.
    for (std::size_t place = line.find(':'); place != std::string::npos;
         place = line.find(':', place + 1)) {
        std::string changed = line;
        changed.insert(place + 1, "{}");
        EXPECT_NO_THROW(recordIn(changed));
    }
}

/// A record from words such as "converted a x,y": result, source and outputs.
FileRecord recordOf(const std::string& words) {
    std::istringstream in{words};
    FileRecord record;
    std::string source;
    std::string outputs;
    in >> record.result >> source >> outputs;
    record.sources = {{.path = source, .digest = {}}};
    std::istringstream each{outputs};
    for (std::string path; std::getline(each, path, ',');) {
        record.outputs.push_back({.path = path, .digest = {}});
    }
    return record;
}

TEST(NewestRecords, OvertakeThoseOfTheSameSource) {
    struct Case {
        std::vector<const char*> records;
        std::vector<std::size_t> newest;
    };
    for (const auto& [records, newest] : std::initializer_list<Case>{
             {{}, {}},
             {{"failed a", "converted a x"}, {1}},
             {{"converted a x", "converted b y"}, {0, 1}},
             {{"converted a x", "converted a x"}, {1}},
             {{"converted a x", "converted a y"}, {0, 1}},
             {{"converted a x,y", "converted a x"}, {0, 1}},
             {{"converted a x", "skipped a x"}, {0}},
             {{"converted a x", "skipped a y"}, {0, 1}},
             {{"skipped a x", "skipped a x"}, {1}},
             {{"failed a", "failed a"}, {1}},
             {{"failed a", "failed b"}, {0, 1}},
             {{"converted a x", "failed a"}, {0, 1}},
             {{"converted a x", "failed a", "skipped a x"}, {0, 1}},
             {{"skipped a x", "converted a x", "failed a", "converted a x"}, {3}},
         }) {
        Manifest manifest;
        std::string all;
        for (const char* words : records) {
            add(manifest, recordOf(words));
            all += std::string{words} + "; ";
        }
        std::vector<std::size_t> actual;
        for (const FileRecord* each : newestOf(manifest)) {
            actual.push_back(static_cast<std::size_t>(each - manifest.files.data()));
        }
        EXPECT_EQ(actual, newest) << all;
    }
}

TEST(Manifests, AreReadByTheTimesOfTheirRecords) {
    const TempFolder folder;
    const auto manifest = [&](const char* name, std::initializer_list<const char*> times) {
        std::string lines;
        for (const char* time : times) {
            FileRecord record = recordOf("converted a x");
            record.time = time;
            lines += lineOf(record);
        }
        return folder.write(name, lines);
    };
    const std::string one = manifest("one", {"2026-03-01T10:00:00+02:00", "2026-03-01T09:30:00Z"});
    const std::string other = manifest("other", {"2026-03-01T08:30:00+00:00", "no time"});
    for (const auto& paths : {std::vector{one, other}, std::vector{other, one}}) {
        std::string times;
        withManifests(paths, {.command = "", .use = [&](const Manifest& read) {
                                  for (const FileRecord& record : read.files) {
                                      times += record.time + "; ";
                                  }
                                  return 0;
                              }});
        EXPECT_EQ(times, "2026-03-01T10:00:00+02:00; 2026-03-01T08:30:00+00:00; no time; "
                         "2026-03-01T09:30:00Z; ");
    }
}

TEST(ManifestPlace, IsAFileOfRecordsOrNone) {
    const TempFolder folder;
    const std::string line = lineOf(fullRecord());
    EXPECT_EQ(manifestProblem(folder.path("none")), "");
    EXPECT_EQ(manifestProblem(folder.write("empty", "")), "");
    EXPECT_EQ(manifestProblem(folder.write("lines", line)), "");
    EXPECT_EQ(manifestProblem(folder.write("cut", line + line.substr(0, 30))), "");
    EXPECT_NE(manifestProblem(folder.write("text", "a letter\n")), "");
    EXPECT_NE(manifestProblem(folder.write("data.cdf", std::string{"CDF\1", 4})), "");
}

} // namespace
} // namespace korlit::host
