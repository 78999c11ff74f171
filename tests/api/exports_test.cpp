// The built library, loaded and called as a host does.
#include "tests/support/andi_text.h"
#include "tests/support/host_call.h"
#include "tests/support/image.h"
#include "tests/support/run_text.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <dlfcn.h>

#include <array>
#include <filesystem>

namespace korlit {
namespace {

using namespace test;
namespace fs = std::filesystem;

class ExportsTest : public testing::Test {
  protected:
    ~ExportsTest() override {
        // The next call lets go of what a success may keep.
        callAsHost(andi2Merivolta, folder.path("missing"));
        dlclose(library);
    }

    void* library = dlopen(BUILT_LIBRARY, RTLD_NOW | RTLD_LOCAL);
    Export andi2Merivolta = reinterpret_cast<Export>(dlsym(library, "Andi2Merivolta"));
    Export merivolta2Andi = reinterpret_cast<Export>(dlsym(library, "Merivolta2Andi"));
    Export dunvale2Andi = reinterpret_cast<Export>(dlsym(library, "Dunvale2Andi"));
    Export andi2Dunvale = reinterpret_cast<Export>(dlsym(library, "Andi2Dunvale"));
    TempFolder folder;
    std::string source = folder.write("run.cdf", readFile(TEST_DATA "two_peaks.cdf"));
    std::string slice = folder.path("run.sli");
};

TEST_F(ExportsTest, ARoundTripKeepsTheSignalToTheBit) {
    for (const std::string file : {SAMPLES "hplc_run.cdf", FOREIGN_ANDI_FILE}) {
        const std::string original = readFile(file);
        if (original.empty()) {
            continue; // not on this machine
        }
        folder.write("run.cdf", original);
        ASSERT_EQ(callAsHost(andi2Merivolta, source).result, 1);
        ASSERT_EQ(callAsHost(merivolta2Andi, slice).result, 1);
        EXPECT_NE(folder.dump("run.cdf", "-h"), "");
        std::string samples = readFile(slice);
        if (file == FOREIGN_ANDI_FILE) {
            EXPECT_EQ(samples.substr(0, 2048), readImage(LISTINGS "foreign.sli.txt"));
        }
        samples.erase(0, 2048);
        for (std::size_t i = 0; i < samples.size(); i += 4) {
            std::reverse(samples.data() + i, samples.data() + i + 4);
        }
        EXPECT_GT(samples.size(), 20U);
        EXPECT_TRUE(original.find(samples) != std::string::npos) << file;
        EXPECT_TRUE(readFile(source).find(samples) != std::string::npos) << file;
    }
}

TEST_F(ExportsTest, TakesAnyPathOfARun) {
    const std::string bytes = RunText{}.bytes();
    const auto noExtension = [](const std::string& path) {
        return Answer{0, path, "Error:\r\nNo Extension found in File\r\n\"" + path + "\"", true};
    };
    folder.write("run.data", bytes);
    for (const std::string& path : {std::string{}, std::string{"x"}, std::string{".cd"},
                                    std::string{"run"}, folder.path("run.data")}) {
        EXPECT_EQ(callAsHost(dunvale2Andi, path, ""), noExtension(path));
    }
    for (const std::string name : {"missing.run", "folder.run"}) {
        const std::string path = folder.path(name);
        fs::create_directory(folder.path("folder.run"));
        EXPECT_EQ(callAsHost(dunvale2Andi, path, ""),
                  (Answer{0, path, "Unable to open\r\n\"" + path + "\"", true}));
    }
    // A path that is an extension alone.
    fs::current_path(folder.path(""));
    folder.write(".abc", bytes);
    EXPECT_EQ(callAsHost(dunvale2Andi, ".abc", ""), (Answer{1, ".abc", "", true}));
    fs::current_path("/");
    EXPECT_TRUE(fs::remove(folder.path("1.cdf")));
    const std::string noName = folder.write(".dat", bytes);
    EXPECT_EQ(callAsHost(dunvale2Andi, noName, ""), (Answer{1, noName, "", true}));
    EXPECT_TRUE(fs::exists(folder.path("1.cdf")));

    // Beyond 255 characters, for the run and for its output.
    const std::string deep = std::string(200, 'd') + "/" + std::string(200, 'e') + "/run";
    fs::create_directories(fs::path{folder.path(deep)}.parent_path());
    const std::string run = folder.write(deep + ".dat", bytes);
    EXPECT_EQ(callAsHost(dunvale2Andi, run, ""), (Answer{1, run, "", true}));
    EXPECT_TRUE(fs::remove(folder.path(deep + "1.cdf")));
    // One output path for all channels keeps the last one's file.
    const std::string dad = folder.write("dad.run", readFile(SAMPLES "dad_run.run"));
    EXPECT_EQ(callAsHost(dunvale2Andi, dad, folder.path("last")).result, 1);
    EXPECT_NE(folder.dump("last", "-v ordinate_values"), "");
    EXPECT_EQ(callAsHost(dunvale2Andi, dad, "").result, 1);
    EXPECT_EQ(readFile(folder.path("last")), readFile(folder.path("dad3.cdf")));
    const std::string output = folder.path(deep + ".cdf");
    EXPECT_EQ(callAsHost(dunvale2Andi, noName, output), (Answer{1, noName, output, true}));
    EXPECT_TRUE(fs::exists(output));
    const std::string noFolder = folder.path(std::string(300, 'x') + "/out.cdf");
    EXPECT_EQ(callAsHost(dunvale2Andi, noName, noFolder),
              (Answer{0, noName, ("Error writing Andi File " + noFolder).substr(0, noFolder.size()),
                      true}));
    // The run by its own name, by a link's, and by that of a channel's file.
    fs::create_symlink(dad, folder.path("link"));
    EXPECT_TRUE(fs::remove(folder.path("dad2.cdf")));
    fs::create_hard_link(dad, folder.path("dad2.cdf"));
    for (const std::string& name : {dad, folder.path("link"), folder.path("dad2.cdf")}) {
        const bool isOfChannel = name.ends_with(".cdf");
        EXPECT_EQ(callAsHost(dunvale2Andi, dad, isOfChannel ? "" : name),
                  (Answer{0, dad, "Error writing Andi File " + name, true}));
        EXPECT_EQ(readFile(dad), readFile(SAMPLES "dad_run.run"));
    }

    std::array<char, 100> buffer{};
    EXPECT_EQ(dunvale2Andi(nullptr, buffer.data()), 0);
    EXPECT_EQ(buffer[0], '\0');
    std::string path = noName;
    fs::remove(folder.path("1.cdf"));
    EXPECT_EQ(dunvale2Andi(path.data(), nullptr), 1);
    EXPECT_TRUE(fs::exists(folder.path("1.cdf")));
    path = folder.path("missing.run");
    EXPECT_EQ(dunvale2Andi(path.data(), nullptr), 0);
}

TEST_F(ExportsTest, NamesTheFilesByTheLastDot) {
    fs::create_directory(folder.path("data.old"));
    const std::pair<const char*, const char*> names[]{{"run.x.cdf", "run.x.sli"},
                                                      {"data.old/run.", "data.old/run.sli"},
                                                      {"one.c", "one.sli"},
                                                      {"long.chrom", "long.sli"}};
    for (const auto& [from, to] : names) {
        const std::string path = folder.write(from, AndiText{}.bytes());
        EXPECT_EQ(callAsHost(andi2Merivolta, path).path, folder.path(to));
        EXPECT_TRUE(fs::remove(folder.path(to)));
    }
    // The report stands beside a slice file of any name and extension.
    folder.write("other.raw", readImage(LISTINGS "two_peaks.sli.txt"));
    folder.write("other.rpt", readImage(LISTINGS "two_peaks.rpt.txt"));
    EXPECT_EQ(callAsHost(merivolta2Andi, folder.path("other.raw")).path, folder.path("other.cdf"));
    const std::string missing = folder.path("missing");
    EXPECT_EQ(callAsHost(andi2Merivolta, missing),
              (Answer{0, missing + ".", "Error opening Andi file " + missing + ".", true}));
    const std::string undotted = folder.path("data.old/run");
    EXPECT_EQ(callAsHost(andi2Merivolta, undotted).path, undotted + ".sli") << "run. is loaded";
}

TEST_F(ExportsTest, KeepsToTheHostsBuffersAtAnyPathLength) {
    const std::string bytes = AndiText{.variables = "11 1 'x' 1 1"}.bytes();
    const auto expected = [](const std::string& path) {
        return "Andi File " + path + " internal Error: Variable using unknown Dimension";
    };
    folder.write("run.cdf", bytes);
    EXPECT_EQ(callAsHost(andi2Merivolta, source), (Answer{0, source, expected(source), true}));

    // An appended dot makes the longest text one character longer than the host's room for it.
    const std::string dotted = folder.write("a_name_long_enough_by_itself.", bytes);
    std::string cut = expected(dotted);
    cut.pop_back();
    EXPECT_EQ(callAsHost(andi2Merivolta, dotted.substr(0, dotted.size() - 1)),
              (Answer{0, dotted, cut, true}));

    const std::string deep = std::string(200, 'd') + "/" + std::string(200, 'e');
    fs::create_directories(folder.path(deep));
    const std::string path = folder.write(deep + "/run.cdf", AndiText{}.bytes());
    EXPECT_EQ(callAsHost(andi2Merivolta, path).message,
              "Wrote Merivolta file " + folder.path(deep + "/run.sli"));
    const std::string tooLong = folder.path(std::string(5000, 'x') + ".cdf");
    EXPECT_EQ(callAsHost(andi2Merivolta, tooLong),
              (Answer{0, tooLong, "Error opening Andi file " + tooLong, true}));
}

TEST_F(ExportsTest, AnswersNullWithZero) {
    const std::string notImplemented = "Feature is not implemented !!!";
    std::array<char, 100> buffer{"run.cdf"};
    EXPECT_EQ(andi2Merivolta(nullptr, buffer.data()), 0);
    EXPECT_EQ(andi2Merivolta(buffer.data(), nullptr), 0);
    EXPECT_STREQ(buffer.data(), "run.cdf");
    EXPECT_EQ(merivolta2Andi(nullptr, buffer.data()) + merivolta2Andi(buffer.data(), nullptr), 0);
    EXPECT_EQ(andi2Dunvale(nullptr, nullptr), 0);
    EXPECT_EQ(andi2Dunvale(nullptr, buffer.data()), 0);
    EXPECT_EQ(buffer.data(), notImplemented);
    EXPECT_EQ(callAsHost(andi2Dunvale, "any"), (Answer{0, "any", notImplemented, true}));
}

} // namespace
} // namespace korlit
