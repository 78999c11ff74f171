// What files are taken for, what is seen in those that can't be read, and which a command lists.
#include "host/files/broken_files.h"
#include "host/files/diagnosis.h"
#include "host/files/extensions.h"
#include "host/files/float_columns.h"
#include "host/files/listing.h"
#include "host/files/recognise.h"
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

constexpr std::size_t headOfRun = 308;

std::string sliceBytes() {
    return readImage(LISTINGS "two_peaks.sli.txt"); // three samples
}

std::string runOf(const std::string& version, const std::string& channels,
                  const std::string& points = "6") {
    RunText run{.version = version, .count = channels};
    run.signal.replace(run.signal.find('6'), 1, points);
    return run.bytes();
}

class SeenFiles : public testing::Test {
  protected:
    FileKind kindOf(const std::string& name, const std::string& bytes) const {
        return recognise(folder.write(name, bytes));
    }

    TempFolder folder;
};

TEST_F(SeenFiles, AreOfTheKindThatTheirBytesSayWhateverTheirNames) {
    using enum FileKind;
    const std::string andi = AndiText{}.bytes();
    const std::string run = RunText{}.bytes();
    struct Case {
        std::string bytes;
        FileKind kind;        ///< by any name
        FileKind kindOfSlice; ///< by the name of a slice file
    };
    for (const auto& [bytes, kind, kindOfSlice] : std::initializer_list<Case>{
             {andi, Andi, Andi},
             {andi.substr(0, 3), Unknown, Unknown},
             {std::string{"CDF\2", 4} + andi, Unknown, Unknown},
             {std::string{"\0CDF\1", 5}, Unknown, Unknown},
             {sliceBytes().substr(0, 1857), Unknown, Merivolta},
             {sliceBytes().substr(0, 1856), Unknown, Unknown},
             {run, Dunvale, Merivolta},
             {run.substr(0, headOfRun), Dunvale, Unknown},
             {run.substr(0, headOfRun - 1), Unknown, Unknown},
             {runOf("0.999999f", "1s"), Unknown, Merivolta},
             {runOf("100f", "1s"), Dunvale, Merivolta},
             {runOf("100.00001f", "1s"), Unknown, Merivolta},
             {runOf("nanf", "1s"), Unknown, Merivolta},
             {runOf("5f", "0s"), Unknown, Merivolta},
             {runOf("5f", "9s"), Dunvale, Merivolta},
             {runOf("5f", "10s"), Unknown, Merivolta},
             {runOf("5f", "1s", "0"), Dunvale, Merivolta},
             {runOf("5f", "1s", "-1"), Unknown, Merivolta},
             {"", Unknown, Unknown},
         }) {
        for (const char* name : {"x", "x.cdf", "x.run", "x.rpt", "x.sli.old", ".sli"}) {
            EXPECT_EQ(kindOf(name, bytes), kind) << name << ' ' << bytes.substr(0, 4);
        }
        for (const char* name : {"x.sli", "x.SLI", "x.y.Sli"}) {
            EXPECT_EQ(kindOf(name, bytes), kindOfSlice) << name << ' ' << bytes.substr(0, 4);
        }
    }
    EXPECT_EQ(recognise(folder.path("none.cdf")), Unknown);
    EXPECT_EQ(recognise(folder.path("")), Unknown);
}

TEST_F(SeenFiles, OfNoKindAreThatOfTheirNames) {
    using enum FileKind;
    for (const auto& [name, kind, isOfData] :
         std::initializer_list<std::tuple<const char*, FileKind, bool>>{
             {"x.CDF", Andi, true},
             {"x.sli", Merivolta, true},
             {"x.run", Dunvale, true},
             {"x.rPT", Unknown, true},
             {"x.dat", Unknown, false},
             {"x.cdf.gz", Unknown, false},
             {"a/.cdf", Unknown, false},
             {"a.cdf/x", Unknown, false},
             {"\xE9.cdf", Andi, true},
         }) {
        EXPECT_EQ(kindFound(name, {}), kind) << name;
        EXPECT_EQ(kindToConvert(name, {}), isKnown(kind) ? kind : Andi) << name;
        EXPECT_EQ(hasNameOfData(name), isOfData) << name;
    }
    EXPECT_EQ(besideWith(folder.path("x.sli"), ".rpt"), folder.path("x.rpt"));
    for (const char* name : {"x.RpT", "x.RPT", "x.rpt"}) {
        folder.write(name, "");
        EXPECT_EQ(besideWith(folder.path("x.sli"), ".rpt"), folder.path(name));
    }
}

TEST_F(SeenFiles, ThatCannotBeReadShowWhy) {
    using enum FileKind;
    const std::string andi = AndiText{}.bytes();
    // A record is a float of each of two variables, and there are two records.
    const std::string records = AndiText{.records = "2",
                                         .dimensions = "10 2 'point_number' 3 'runs' 0",
                                         .variables = "11 3 'ordinate_values' 1 0 0 0 5 12 1024 "
                                                      "'a' 1 1 0 0 5 4 1036 'b' 1 1 0 0 5 4 1040",
                                         .data = "5f 7f 6f 1f 2f 3f 4f"}
                                    .bytes();
    const std::string none = AndiText{.variables = "0 0"}.bytes();
    const std::string hollow = AndiText{.dimensions = "10 1 'point_number' 0",
                                        .variables = "11 1 'ordinate_values' 1 0 0 0 5 4 1024"}
                                   .bytes();
    const auto oneShort = [](std::string bytes) { return bytes.erase(bytes.size() - 1); };
    const std::string noStart = "it doesn't start as netCDF files do";
    const std::string classic = ": nccopy -k classic makes a classic file of it";
    const std::string unpack = ": unpack it first";
    const std::string slice = "it looks like the slice file of a Merivolta pair, which is read by "
                              "its name, with the report beside it";
    const auto channels = [](const char* count) {
        return std::string{"a Dunvale run of "} + count + " channels: 1 to 9 can be read";
    };
    struct Case {
        std::string bytes;
        FileKind kind;
        std::string words;
    };
    for (const auto& [bytes, kind, words] : std::initializer_list<Case>{
             {"", Unknown, "the file is empty"},
             {std::string(1, '\0'), Dunvale, "all its bytes are zero"},
             {std::string(9000, '\0') + "x", Unknown, noStart},
             {"CDF\2", Andi, "netCDF with 64-bit offsets" + classic},
             {"CDF\5", Andi, "CDF-5" + classic},
             {"\x89HDF\r\n\x1A\n", Andi, "netCDF-4" + classic},
             {"\x89HDF\r\n\x1A", Andi, noStart},
             {"\x1F\x8B\x08", Dunvale, "compressed with gzip" + unpack},
             {"BZh9", Andi, "compressed with bzip2" + unpack},
             {"\xFD\x37zXZ", Andi, "compressed with xz" + unpack},
             {"\x28\xB5\x2F\xFD", Merivolta, "compressed with zstd" + unpack},
             {"PK\3\4", Andi, "a ZIP archive" + unpack},
             {"7z\xBC\xAF\x27", Andi, "a 7z archive" + unpack},
             {andi, Andi, ""},
             {oneShort(andi), Andi, "cut: 1,035 of 1,036 bytes are there"},
             {andi.substr(0, 4), Andi, "cut within its head: 4 bytes are there"},
             {records, Andi, ""},
             {oneShort(records), Andi, "cut: 1,051 of 1,052 bytes are there"},
             {none, Andi, noChromatogramText},
             {hollow, Andi, noSamplesText},
             {sliceBytes(), Merivolta, ""},
             {oneShort(sliceBytes()), Merivolta, "cut: 2 of 3 samples are there"},
             {sliceBytes().substr(0, 2048), Merivolta, "cut: 0 of 3 samples are there"},
             {sliceBytes().substr(0, 2047), Merivolta,
              "cut within its head: 2,047 bytes are there"},
             {sliceBytes(), Unknown, slice},
             {sliceBytes() + '\0', Unknown, noStart},
             {RunText{}.bytes().substr(0, headOfRun - 1), Dunvale,
              "cut within its head: 307 bytes are there"},
             {runOf("5f", "0s"), Dunvale, channels("0")},
             {runOf("5f", "10s"), Dunvale, channels("10")},
             {runOf("5f", "100s"), Unknown, channels("100")},
             {runOf("5f", "101s"), Dunvale, ""},
         }) {
        const std::string name = kind == Merivolta ? "x.sli" : "x";
        EXPECT_EQ(diagnosisOf(folder.write(name, bytes), kind), words) << bytes.substr(0, 8);
    }
}

TEST_F(SeenFiles, OfOtherNumbersThanFloatsAreToldByTheColumnsThatAConversionTakes) {
    for (const auto& [variable, words] : std::initializer_list<std::pair<const char*, const char*>>{
             {"'peak_area' 1 0 0 0 5 12 1024", ""},
             {"'peak_area' 1 0 0 0 3 8 1024", "Its peak_area is short instead of float"},
             {"'peak_amount' 1 0 0 0 6 24 1024", "Its peak_amount is double instead of float"},
             {"'peak_height' 1 0 0 0 2 4 1024", "Its peak_height is char instead of float"},
             {"'peak_width' 1 0 0 0 3 8 1024", ""},
             {"'peak_area' 1 0 0 0 3 0 1024", ""}}) { // without data
        const AndiText file{.variables =
                                "11 2 'ordinate_values' 1 0 0 0 5 12 1024 " + std::string{variable},
                            .data = "5f 7f 6f 0 0 0"};
        AndiImage image;
        ASSERT_EQ(loadHeader(image, folder.write("x.cdf", file.bytes())), "");
        const std::string problem = floatProblem(image);
        EXPECT_EQ(problem.substr(0, problem.find(',')), words) << variable;
    }
}

TEST_F(SeenFiles, AreReportsByTheirKindAndThePlaceOfTheirResults) {
    const std::string report = readImage(LISTINGS "two_peaks.rpt.txt");
    for (const auto& [place, byte, isOne] :
         {std::tuple{0U, 0x11, true}, std::tuple{0U, 0x10, false}, std::tuple{0U, 0x12, false},
          std::tuple{135U, 0x20, true}, // 288, behind the head
          std::tuple{135U, 0x1F, false}, std::tuple{138U, 0xFF, false}}) {
        std::string changed = report;
        changed[place] = static_cast<char>(byte);
        EXPECT_EQ(isReport(folder.write("x.rpt", changed)), isOne) << place << ' ' << byte;
    }
    EXPECT_FALSE(isReport(folder.write("x.rpt", "")));
}

/// The folder a has files of each kind, whole and not, a folder and a link to it.
class Listings : public testing::Test {
  protected:
    Listings() {
        std::filesystem::create_directories(folder.path("a/sub"));
        for (const char* name : {"a/x.cdf", "a/kept.old", "a/.hidden.cdf"}) {
            folder.write(name, AndiText{}.bytes());
        }
        for (const char* name : {"a/x.sli", "a/z.SLI"}) {
            folder.write(name, sliceBytes());
        }
        for (const char* name : {"a/x.rpt", "a/z.RPT", "a/lone.rpt", "a/bad.cdf", "a/notes"}) {
            folder.write(name, "x");
        }
        folder.write("a/sub/y.run", runOf("5f", "3s"));
        std::filesystem::create_directory_symlink(folder.path("a/sub"), folder.path("a/link"));
    }

    Inputs inputs(const std::string& paths, bool isRecursive = false,
                  FileKind from = FileKind::Unknown) const {
        Inputs inputs;
        inputs.isRecursive = isRecursive;
        inputs.from = from;
        std::istringstream in{paths};
        for (std::string path; in >> path;) {
            inputs.paths.push_back(path == "-" ? path : folder.path(path));
        }
        return inputs;
    }

    /// The first letter of each file's kind with its path, ! behind what is a problem.
    std::string listed(const Inputs& inputs, const Selection& selection = {}) const {
        const Listing listing = listFiles(inputs, selection);
        std::string words;
        for (const ListedFile& each : listing.files) {
            std::string path = listing.pathOf(each).string();
            path.erase(0, path.starts_with(folder.path("")) ? folder.path("").size() : 0);
            words += (words.empty() ? "" : " ") + std::string{formatOf(each.kind).name, 1} + ":" +
                     path + (each.channelCount > 1 ? "*" : "") + (each.problem.empty() ? "" : "!");
        }
        return words +
               (listing.ignored.empty() ? "" : " " + std::to_string(listing.ignored.size()));
    }

    TempFolder folder;
};

TEST_F(Listings, HaveEachFileOnce) {
    const std::string found = "a:a/bad.cdf a:a/kept.old m:a/lone.rpt! ";
    const std::string rest = "a:a/x.cdf m:a/x.sli m:a/z.SLI";
    for (const auto& [paths, isRecursive, expected] :
         std::initializer_list<std::tuple<const char*, bool, std::string>>{
             {"a", false, found + rest + " 3"},
             {"a ./a/../a a/sub/..", false, found + rest + " 3"},
             {"a/sub a", true, "d:a/sub/y.run* " + found + rest + " 2"},
             {"a a/link", true, found + "d:a/sub/y.run* " + rest + " 2"},
             {"a/link", false, "d:a/link/y.run*"},
             {"a/x.cdf a", false, "a:a/x.cdf " + found + "m:a/x.sli m:a/z.SLI 3"},
             {"a/none.cdf a/none.cdf a/none.rpt", false, "a:a/none.cdf a:a/none.rpt"},
             {"a/x.rpt a/.hidden.cdf a/notes", false, "u:a/x.rpt! a:a/.hidden.cdf a:a/notes"},
         }) {
        EXPECT_EQ(listed(inputs(paths, isRecursive)), expected) << paths;
    }
}

TEST_F(Listings, KeepToTheKindThatIsAskedFor) {
    for (const auto& [from, expected] :
         {std::pair{FileKind::Andi, "a:a/bad.cdf a:a/kept.old a:a/x.cdf 6"},
          std::pair{FileKind::Merivolta, "m:a/lone.rpt! m:a/x.sli m:a/z.SLI 6"},
          std::pair{FileKind::Dunvale, "d:a/sub/y.run* 8"}}) {
        EXPECT_EQ(listed(inputs("a", true, from)), expected);
    }
    const Selection passing{.fateOf = [](const FoundFile& file) {
        return file.kind == FileKind::Andi ? Fate{.way = Fate::Way::Passed} : Fate{.problem = "p"};
    }};
    EXPECT_EQ(listFiles(inputs("a"), passing).passedCount, 3);
    EXPECT_EQ(listed(inputs("a"), passing), "m:a/lone.rpt! m:a/x.sli! m:a/z.SLI! 3");
    const Selection standardInput{.isStandardInputTaken = true};
    EXPECT_EQ(listed(inputs("- a/x.cdf -"), standardInput), "u:- a:a/x.cdf");
    EXPECT_EQ(listed(inputs("- -")), "a:-");
    Inputs both = inputs("-");
    both.filesFrom = "-";
    EXPECT_THROW(listFiles(both, standardInput), WrongUse);
}

} // namespace
} // namespace korlit::host
