// The lines of a manifest, and which of them still count.
#include "host/manifest/manifest.h"
#include "host/manifest/newest.h"
#include "host/manifest/outline.h"
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
            .sources = {{"/in/\xE9.run", FileDigest{.size = 1, .sha256 = "ab"}}, {"/in/gone"}},
            .outputs = {{"/out/1.cdf", FileDigest{.size = 1LL << 40, .sha256 = "cd"}}},
            .verdict = RecordedVerdict{"same data", true, {{"no-place", "w", 3}}, {"u"}},
            .losses = {"a loss"},
            .warnings = {"a warning"},
            .sample = "Probe \xC3\xBC",
            .operatorName = "<b>",
            .date = "2005-10-12",
            .channels = {{.number = 9,
                          .unit = "mAU",
                          .points = 5'000'000'000,
                          .times = std::pair{0.0, 12.5},
                          .values = std::pair{-1e-9, 3.25},
                          .peaks = {{"one", 1.5}, {"", {}}},
                          .outline = {0, 250, -1, -1}},
                         {}}};
}

BatchRecord batchRecord(const std::string& folder) {
    return {"b1", "t", "0.2.0", "m", folder, {"--to", "andi", ""}, 20'000};
}

TEST(ManifestLine, HoldsAllOfARecordButNoPartOfALine) {
    for (const std::string& line : {lineOf(fullRecord()), lineOf(batchRecord("/home/\xFF"))}) {
        EXPECT_EQ(line.find('\n'), line.size() - 1);
        const auto record = recordIn(line.substr(0, line.size() - 1));
        ASSERT_TRUE(record) << line;
        EXPECT_EQ(std::visit([](const auto& each) { return lineOf(each); }, *record), line);
        for (std::size_t size = 0; size + 1 < line.size(); ++size) {
            EXPECT_FALSE(size > 0 && recordIn(line.substr(0, size)).has_value()) << size;
        }
    }
    const auto read = std::get<FileRecord>(*recordIn(lineOf(fullRecord())));
    EXPECT_EQ(read.sources[0].digest, fullRecord().sources[0].digest);
    EXPECT_FALSE(read.sources[1].digest);
    EXPECT_EQ(read.outputs[0].digest->size, 1LL << 40);
    EXPECT_EQ(read.channels[0].points, 5'000'000'000);
    EXPECT_EQ(read.channels[0].outline, (Outline{0, 250, -1, -1}));
    EXPECT_FALSE(read.channels[0].peaks[1].time);
    EXPECT_EQ(read.verdict->expected[0].count, 3);
}

TEST(ManifestLine, HoldsEachPathByItsBytesAndEachNumberToItsLast) {
    const auto fileOf = [](const FileRecord& record) {
        return std::get<FileRecord>(*recordIn(lineOf(record)));
    };
    FileRecord record = fullRecord();
    for (int byte = 1; byte < 256; ++byte) {
        const std::string path = std::string{"/d/"} + static_cast<char>(byte) + "x \xC3\xBC";
        record.sources[0].path = path;
        record.outputs[0].path = path;
        record.sample = path;
        const FileRecord read = fileOf(record);
        EXPECT_EQ(read.sources[0].path, path) << byte;
        EXPECT_EQ(read.outputs[0].path, path) << byte;
        EXPECT_EQ(std::get<BatchRecord>(*recordIn(lineOf(batchRecord(path)))).folder, path) << byte;
        EXPECT_EQ(read.sample == path, byte < 0x80) << byte; // all else is a text
    }
    for (const auto& values : {std::pair{-1e300, 1e300}, std::pair{0.123456789012345, 1e9 + 0.25},
                               std::pair{-0.0, 5e-324}}) {
        record.channels[0].values = values;
        EXPECT_EQ(fileOf(record).channels[0].values, values);
    }
    record.verdict->isSame = false;
    EXPECT_FALSE(fileOf(record).verdict->isSame);
    record.sources.clear();
    EXPECT_FALSE(recordIn(lineOf(record)));
    record = fullRecord();
    record.result = "done";
    EXPECT_FALSE(recordIn(lineOf(record)));
}

TEST(ManifestLine, OfAnotherShapeIsNoRecord) {
    for (const char* line :
         {"", "{}", "[]", "1", "{", R"({"record":"file"})", "not JSON", R"({"record":"other"})",
          R"({"result":"converted","sources":[]})", R"({"result":"converted","sources":7})"}) {
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
    std::string source, outputs;
    in >> record.result >> source >> outputs;
    record.sources = {{source}};
    std::istringstream each{outputs};
    for (std::string path; std::getline(each, path, ',');) {
        record.outputs.push_back({path});
    }
    return record;
}

TEST(NewestRecords, OvertakeThoseOfTheSameSource) {
    using Records = std::vector<const char*>;
    for (const auto& [records, newest] :
         std::initializer_list<std::pair<Records, std::vector<std::ptrdiff_t>>>{
             {{"failed a", "converted a x"}, {1}},
             {{"converted a x", "converted b y"}, {0, 1}},
             {{"converted a x", "converted a x"}, {1}},
             {{"converted a x", "converted a y"}, {0, 1}},
             {{"converted a x,y", "converted a x"}, {0, 1}},
             {{"converted a x", "skipped a x"}, {0}},
             {{"converted a x", "skipped a y"}, {0, 1}},
             {{"failed a", "failed a"}, {1}},
             {{"failed a", "failed b"}, {0, 1}},
             {{"converted a x", "skipped b x"}, {0, 1}},
             {{"converted a x", "failed a"}, {0, 1}},
             {{"converted a x", "failed a x"}, {0, 1}},
             {{"converted a x", "failed a", "skipped a x"}, {0, 1}},
             {{"converted a x", "converted a y", "converted a x"}, {1, 2}},
             {{"skipped a x", "converted a x", "failed a", "converted a x"}, {3}},
         }) {
        Manifest manifest;
        std::string all;
        for (const char* words : records) {
            add(manifest, recordOf(words));
            all += std::string{words} + "; ";
        }
        std::vector<std::ptrdiff_t> actual;
        for (const FileRecord* each : newestOf(manifest)) {
            actual.push_back(each - manifest.files.data());
        }
        EXPECT_EQ(actual, newest) << all;
    }
}

TEST(Manifests, AreReadByTheTimesOfTheirRecords) {
    const TempFolder folder;
    const auto manifest = [&](const char* name, const char* firstTime, const char* secondTime) {
        FileRecord first = recordOf("converted a x");
        FileRecord second = first;
        first.time = firstTime;
        second.time = secondTime;
        return folder.write(name, lineOf(first) + lineOf(second));
    };
    const std::string one = manifest("one", "2026-03-01T10:00:00+02:00", "2026-03-01T09:30:00Z");
    const std::string other = manifest("other", "2026-03-01T08:30:00+00:00", "no time");
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

TEST(Manifests, AreToldToBeCutAtWhateverByteTheyAre) {
    const TempFolder folder;
    std::string lines;
    std::vector<std::size_t> ends; // of whole records, without their ends of line
    for (const char* words : {"converted a x", "failed b", "converted c y"}) {
        lines += lineOf(recordOf(words));
        ends.push_back(lines.size() - 1);
    }
    for (std::size_t size = 0; size <= lines.size(); ++size) {
        SCOPED_TRACE(size);
        const auto whole =
            std::ranges::count_if(ends, [&](std::size_t end) { return end <= size; });
        const bool isCut =
            size > 0 && lines[size - 1] != '\n' && std::ranges::find(ends, size) == ends.end();
        testing::internal::CaptureStderr();
        const int status = withManifests({folder.write("cut", lines.substr(0, size))},
                                         {.command = "test", .use = [&](const Manifest& read) {
                                              EXPECT_EQ(std::ssize(read.files), whole);
                                              EXPECT_EQ(read.problems.size(), isCut ? 1U : 0U);
                                              return 0;
                                          }});
        const std::string errors = testing::internal::GetCapturedStderr();
        EXPECT_EQ(status, whole == 0 ? 2 : 0);
        EXPECT_EQ(errors.empty(), whole > 0 && !isCut) << errors;
    }
}

TEST(Digests, AreOfAllBytesOfAFile) {
    const TempFolder folder;
    // As sha256sum has them, around the size of what is read at once.
    for (const auto& [size, sha256] : std::initializer_list<std::pair<std::size_t, const char*>>{
             {0, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
             {1, "ca978112ca1bbdcafac231b39a23dc4da786eff8147c4e72b9807785afee48bb"},
             {262'143, "0379854ae435b4c82999632f674694ce1f98103f645f44ba68c901a83a2b00fd"},
             {262'144, "dd3dde87623d9a6b354c68c943d189c89c63652d945e7bbdf0986cae91a49521"},
             {262'145, "c592f4a6b099700b5050ce8bc67367f0c8f44810203124e86405c3e7b6f1a2ba"},
             {600'000, "ded93777580eeaa7d906cb0f16b9706b1000067eaf0f3b6c1d03a8bc6a15bf15"}}) {
        const auto digest = digestOf(folder.write("a", std::string(size, 'a')));
        EXPECT_EQ(digest, (FileDigest{.size = static_cast<std::int64_t>(size), .sha256 = sha256}));
    }
    EXPECT_FALSE(digestOf(folder.path("none")));
    EXPECT_FALSE(digestOf(folder.path("")));
}

TEST(Outlines, HaveTheLeastAndTheGreatestOfEachStretch) {
    constexpr float gap = std::numeric_limits<float>::quiet_NaN();
    const auto outline = [](const std::vector<float>& samples) {
        return outlineOf({AndiType::Float, samples.data(), samples.size()});
    };
    EXPECT_EQ(outline({}), Outline{});
    EXPECT_EQ(outline({gap}), (Outline{-1, -1}));
    EXPECT_EQ(outline({7}), (Outline{0, 0}));
    // Rounded to the nearest of 251 heights.
    EXPECT_EQ(outline({0, 1000, 3, 1, gap, 2.1F}),
              (Outline{0, 0, 250, 250, 1, 1, 0, 0, -1, -1, 1, 1}));
    EXPECT_EQ(outline({-3e38F, 0, 3e38F}), (Outline{0, 0, 125, 125, 250, 250}));
    // 151 samples share 150 stretches, the last two the last.
    std::vector<float> samples(151, 0);
    samples[149] = 250;
    samples[150] = 100;
    Outline last = outline(samples);
    ASSERT_EQ(last.size(), 300U);
    EXPECT_EQ((Outline{last.end() - 4, last.end()}), (Outline{0, 0, 100, 250}));
    EXPECT_EQ(thinned({5, 9, 2, 8, -1, -1, 4, 7}, 2), (Outline{2, 9, 4, 7}));
    EXPECT_EQ(thinned({5, 9, 2, 8, 1, 4}, 2), (Outline{5, 9, 1, 8}));
    EXPECT_EQ(thinned({5, 9, -1, -1}, 3), (Outline{5, 9, -1, -1}));
}

TEST(ManifestPlace, IsAFileOfRecordsOrNone) {
    const TempFolder folder;
    const std::string line = lineOf(fullRecord());
    for (const std::string& bytes : {std::string{}, line, line + line.substr(0, 30)}) {
        EXPECT_EQ(manifestProblem(folder.write("x", bytes)), "") << bytes;
    }
    EXPECT_NE(manifestProblem(folder.write("x", "a letter\n")), "");
}

} // namespace
} // namespace korlit::host
