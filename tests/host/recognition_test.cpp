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
    RunText run;
    run.version = version;
    run.count = channels;
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
             {andi.substr(0, 4), Andi, Andi},
             {andi.substr(0, 3), Unknown, Unknown},
             {std::string{"CDF\2", 4} + andi, Unknown, Unknown},
             {std::string{"\0CDF\1", 5}, Unknown, Unknown},
             {sliceBytes(), Unknown, Merivolta},
             {sliceBytes().substr(0, 1857), Unknown, Merivolta},
             {sliceBytes().substr(0, 1856), Unknown, Unknown},
             {run, Dunvale, Merivolta},
             {run.substr(0, headOfRun), Dunvale, Unknown},
             {run.substr(0, headOfRun - 1), Unknown, Unknown},
             {runOf("1f", "1s"), Dunvale, Merivolta},
             {runOf("0.999999f", "1s"), Unknown, Merivolta},
             {runOf("100f", "1s"), Dunvale, Merivolta},
             {runOf("100.00001f", "1s"), Unknown, Merivolta},
             {runOf("nanf", "1s"), Unknown, Merivolta},
             {runOf("5f", "0s"), Unknown, Merivolta},
             {runOf("5f", "9s"), Dunvale, Merivolta},
             {runOf("5f", "10s"), Unknown, Merivolta},
             {runOf("5f", "-1s"), Unknown, Merivolta},
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
    struct Case {
        const char* name;
        FileKind kind;
        bool isOfData;
    };
    for (const auto& [name, kind, isOfData] : std::initializer_list<Case>{
             {"x.cdf", Andi, true},
             {"x.CDF", Andi, true},
             {"x.sli", Merivolta, true},
             {"x.run", Dunvale, true},
             {"x.rpt", Unknown, true},
             {"x.rPT", Unknown, true},
             {"x.dat", Unknown, false},
             {"cdf", Unknown, false},
             {"x.cdf.gz", Unknown, false},
             {"a/.cdf", Unknown, false},
             {".run", Unknown, false},
             {"a.cdf/x", Unknown, false},
             {"xcdf", Unknown, false},
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
    AndiText records;
    records.records = "2";
    records.dimensions = "10 2 'point_number' 3 'runs' 0";
    records.variables = "11 3 'ordinate_values' 1 0 0 0 5 12 1024 "
                        "'a' 1 1 0 0 5 4 1036 'b' 1 1 0 0 5 4 1040";
    records.data = "5f 7f 6f 1f 2f 3f 4f";
    AndiText other;
    other.variables = "0 0";
    AndiText hollow;
    hollow.dimensions = "10 1 'point_number' 0";
    hollow.variables = "11 1 'ordinate_values' 1 0 0 0 5 4 1024";
    const auto oneShort = [](const std::string& bytes) {
        return bytes.substr(0, bytes.size() - 1);
    };
    const std::string noStart = "it doesn't start as netCDF files do";
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
             {"", Merivolta, "the file is empty"},
             {std::string(1, '\0'), Dunvale, "all its bytes are zero"},
             {std::string(9000, '\0') + "x", Unknown, noStart},
             {"x", Andi, noStart},
             {"CDF\2", Andi,
              "netCDF with 64-bit offsets: nccopy -k classic makes a classic file of it"},
             {"CDF\5", Andi, "CDF-5: nccopy -k classic makes a classic file of it"},
             {"\x89HDF\r\n\x1A\n", Andi, "netCDF-4: nccopy -k classic makes a classic file of it"},
             {"\x89HDF\r\n\x1A", Andi, noStart},
             {"\x1F\x8B\x08", Dunvale, "compressed with gzip: unpack it first"},
             {"BZh9", Andi, "compressed with bzip2: unpack it first"},
             {"\xFD"
              "7zXZ",
              Andi, "compressed with xz: unpack it first"},
             {"\x28\xB5\x2F\xFD", Merivolta, "compressed with zstd: unpack it first"},
             {"PK\3\4", Andi, "a ZIP archive: unpack it first"},
             {"7z\xBC\xAF\x27", Andi, "a 7z archive: unpack it first"},
             {andi, Andi, ""},
             {oneShort(andi), Andi, "cut: 1,035 of 1,036 bytes are there"},
             {andi.substr(0, 4), Andi, "cut within its head: 4 bytes are there"},
             {records.bytes(), Andi, ""},
             {oneShort(records.bytes()), Andi, "cut: 1,051 of 1,052 bytes are there"},
             {other.bytes(), Andi, noChromatogramText},
             {hollow.bytes(), Andi, noSamplesText},
             {sliceBytes(), Merivolta, ""},
             {oneShort(sliceBytes()), Merivolta, "cut: 2 of 3 samples are there"},
             {sliceBytes().substr(0, 2048), Merivolta, "cut: 0 of 3 samples are there"},
             {sliceBytes().substr(0, 2047), Merivolta,
              "cut within its head: 2,047 bytes are there"},
             {sliceBytes(), Unknown, slice},
             {oneShort(sliceBytes()), Unknown, noStart},
             {sliceBytes() + '\0', Unknown, noStart},
             {RunText{}.bytes(), Dunvale, ""},
             {RunText{}.bytes().substr(0, headOfRun - 1), Dunvale,
              "cut within its head: 307 bytes are there"},
             {runOf("5f", "0s"), Dunvale, channels("0")},
             {runOf("5f", "0s"), Unknown, channels("0")},
             {runOf("5f", "10s"), Dunvale, channels("10")},
             {runOf("5f", "100s"), Unknown, channels("100")},
             {runOf("5f", "101s"), Unknown, noStart},
             {runOf("5f", "101s"), Dunvale, ""},
             {runOf("5f", "-1s"), Dunvale, ""},
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
        AndiText file;
        file.variables = "11 2 'ordinate_values' 1 0 0 0 5 12 1024 " + std::string{variable};
        file.data += " 0 0 0";
        AndiImage image;
        ASSERT_EQ(loadHeader(image, folder.write("x.cdf", file.bytes())), "");
        const std::string problem = floatProblem(image);
        EXPECT_EQ(problem.substr(0, problem.find(',')), words) << variable;
    }
}

TEST_F(SeenFiles, AreReportsByTheirKindAndThePlaceOfTheirResults) {
    const std::string report = readImage(LISTINGS "two_peaks.rpt.txt");
    for (const auto& [place, byte, isOne] :
         {std::tuple{0, '\x11', true}, std::tuple{0, '\x10', false}, std::tuple{0, '\x12', false},
          std::tuple{0, '\x13', false}, std::tuple{135, '\x20', true}, // 288, behind the head
          std::tuple{135, '\x1F', false}, std::tuple{138, '\xFF', false}}) {
        std::string changed = report;
        changed[static_cast<std::size_t>(place)] = byte;
        EXPECT_EQ(isReport(folder.write("x.rpt", changed)), isOne) << place << ' ' << int{byte};
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

    Inputs inputs(const std::string& paths) const {
        Inputs inputs;
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
    struct Case {
        const char* paths;
        bool isRecursive;
        std::string listed;
    };
    for (const auto& [paths, isRecursive, expected] : std::initializer_list<Case>{
             {"a", false, found + rest + " 3"},
             {"a a", false, found + rest + " 3"},
             {"a ./a/../a a/sub/..", false, found + rest + " 3"},
             {"a", true, found + "d:a/sub/y.run* " + rest + " 2"},
             {"a/sub a", true, "d:a/sub/y.run* " + found + rest + " 2"},
             {"a a/link", true, found + "d:a/sub/y.run* " + rest + " 2"},
             {"a/link", false, "d:a/link/y.run*"},
             {"a/x.cdf a", false, "a:a/x.cdf " + found + "m:a/x.sli m:a/z.SLI 3"},
             {"a a/x.cdf", false, found + "m:a/x.sli m:a/z.SLI a:a/x.cdf 3"},
             {"a/x.cdf a/../a/x.cdf a/x.cdf", false, "a:a/x.cdf"},
             {"a/none.cdf a/none.cdf a/none.rpt", false, "a:a/none.cdf a:a/none.rpt"},
             {"a/x.rpt a/.hidden.cdf a/notes", false, "u:a/x.rpt! a:a/.hidden.cdf a:a/notes"},
         }) {
        Inputs named = inputs(paths);
        named.isRecursive = isRecursive;
        EXPECT_EQ(listed(named), expected) << paths;
    }
}

TEST_F(Listings, KeepToTheKindThatIsAskedFor) {
    struct Case {
        FileKind from;
        const char* listed;
    };
    for (const auto& [from, expected] : std::initializer_list<Case>{
             {FileKind::Andi, "a:a/bad.cdf a:a/kept.old a:a/x.cdf 6"},
             {FileKind::Merivolta, "m:a/lone.rpt! m:a/x.sli m:a/z.SLI 6"},
             {FileKind::Dunvale, "d:a/sub/y.run* 8"},
         }) {
        Inputs named = inputs("a");
        named.from = from;
        named.isRecursive = true;
        EXPECT_EQ(listed(named), expected);
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
