// Runs the cases of conversions.txt, pairs.txt and runs.txt, which say how to read them.
#include "tests/support/cases.h"
#include "tests/support/host_call.h"
#include "tests/support/module_test.h"

#include <cstdlib>

namespace korlit {
namespace {

using namespace test;

class Conversions : public ModuleTest {
  protected:
    /// A text of the table with its paths and line ends filled in.
    std::string filled(std::string text) const {
        std::map<std::string, std::string> fillings{{"\\r\\n", "\r\n"}};
        for (const std::string extension : {"cdf", "sli", "rpt", "dat"}) {
            fillings["{" + extension + "}"] = folder.path("run." + extension);
        }
        for (const char channel : {'2', '3'}) {
            fillings[std::string{'{', channel, '}'}] = channelFile(channel);
        }
        for (const auto& [word, filling] : fillings) {
            const std::size_t place = text.find(word);
            if (place != std::string::npos) {
                text.replace(place, word.size(), filling);
            }
        }
        return text;
    }

    /// Where the file of a channel of run.dat belongs.
    std::string channelFile(char channel) const {
        return folder.path(std::string{"run"} + channel + ".cdf");
    }

    /// A line such as "write 3 short".
    static void arm(const std::string& fault) {
        armFault(FaultPoint::Write, std::stoi(fault.substr(6)),
                 fault.ends_with("short") ? FaultKind::CutShort : FaultKind::Fail);
    }

    /// A line such as "sli size 2060" or "rpt 0 15 20".
    void expectContent(const std::string& line) const {
        SCOPED_TRACE(line);
        const std::string file = readFile(folder.path("run." + line.substr(0, 3)));
        const std::size_t blank = line.find(' ', 4);
        const std::string place = line.substr(4, blank - 4);
        const std::string rest = line.substr(blank + 1);
        if (place == "size") {
            EXPECT_EQ(std::to_string(file.size()), rest);
        } else {
            const std::string expected = parseBytes(rest);
            ASSERT_LE(std::stoul(place), file.size());
            EXPECT_EQ(file.substr(std::stoul(place), expected.size()), expected);
        }
    }

    /// What ncdump shows of an ANDI file, with one blank for all white space.
    std::string dumped(const std::string& name) const {
        std::istringstream in{folder.dump(name, "-p 9,17")};
        std::string dump;
        for (std::string word; in >> word;) {
            dump += word + " ";
        }
        return dump;
    }

    /// Holds what ncdump shows of a file against the lines behind "dumps", or behind "dumps1" for
    /// the channel "1".
    static void expectDumps(const Case& each, const std::string& dump,
                            const std::string& channel = "") {
        for (const std::string& line : each.dumps) {
            const std::string prefix = channel + " ";
            if (line.starts_with(prefix)) {
                EXPECT_NE(dump.find(line.substr(prefix.size()) + " "), std::string::npos)
                    << line << "\n"
                    << dump;
            }
        }
    }

    /// Calls the export on the prepared file, with `before` in the message buffer, and holds the
    /// outcome against the case.
    void run(const Case& each, Export function, const std::string& from, const std::string& to,
             const std::string& success, const std::string& before = untouchedMessage) {
        arm(each.get("fault", "write 0"));
        Answer answer;
        const std::string box =
            boxOf([&] { answer = callAsHost(function, folder.path("run." + from), before); });
        disarmFault();
        const bool fails = each.words.contains("fails") || each.words.contains("box");
        const std::string message = each.get("fails", fails ? before : success);
        const std::string extension = each.get("path", to);
        const std::string returned = folder.path(extension == "none" ? "run" : "run." + extension);
        EXPECT_EQ(answer, (Answer{fails ? 0 : 1, returned, filled(message), true}));
        EXPECT_EQ(box, each.words.contains("box") ? filled(each.get("box", "")) + "\n" : "");
        for (const std::string& line : each.contents) {
            expectContent(line);
        }
        EXPECT_EQ(heldFileCount(), 0);
        EXPECT_EQ(heldLibraryCount(), 0);
        if (fails && (from != "cdf" || each.get("path", to) == from)) {
            expectNothingHeld(); // only a load whose target failed may stay
        }
        // Good conversions right behind go through and leave nothing.
        folder.write("good.sli", readImage(LISTINGS "two_peaks.sli.txt"));
        folder.write("good.rpt", readImage(LISTINGS "two_peaks.rpt.txt"));
        EXPECT_EQ(callAsHost(Merivolta2Andi, folder.path("good.sli")).result, 1);
        const std::string good = folder.write("good.cdf", AndiText{}.bytes());
        EXPECT_EQ(callAsHost(Andi2Merivolta, good).result, 1);
        expectNothingHeld();
    }
};

TEST_F(Conversions, OfAndiFilesComeOutAsTheTableSays) {
    const std::vector<Case> cases = readCases(LISTINGS "conversions.txt");
    EXPECT_GT(cases.size(), 70U);
    for (const Case& each : cases) {
        SCOPED_TRACE(each.get("==", ""));
        folder.write("run.cdf", andiFileOf(each));
        folder.write("run.sli", std::string(100, 'x'));
        folder.write("run.rpt", std::string(100, 'x'));
        run(each, Andi2Merivolta, "cdf", "sli", "Wrote Merivolta file {sli}");
    }
}

TEST_F(Conversions, OfPairsComeOutAsTheTableSays) {
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    const std::vector<Case> cases = readCases(LISTINGS "pairs.txt");
    EXPECT_GT(cases.size(), 25U);
    for (const Case& each : cases) {
        SCOPED_TRACE(each.get("==", ""));
        folder.write("run.cdf", std::string(100, 'x'));
        for (const std::string extension : {"sli", "rpt"}) {
            const std::string image = readImage(LISTINGS "two_peaks." + extension + ".txt");
            folder.write("run." + extension, pairFileOf(each, extension, image));
        }
        std::filesystem::remove(folder.path("run." + each.get("without", "none")));
        run(each, Merivolta2Andi, "sli", "cdf", "Merivolta File converted to {cdf}.");
        const bool succeeds = !each.words.contains("fails") && !each.words.contains("box");
        const std::string dump = succeeds ? dumped("run.cdf") : "";
        EXPECT_EQ(dump.empty(), !succeeds);
        expectDumps(each, dump);
    }
}

TEST_F(Conversions, OfRunsComeOutAsTheTableSays) {
    setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
    const std::vector<Case> cases = readCases(LISTINGS "runs.txt");
    EXPECT_GT(cases.size(), 30U);
    for (const Case& each : cases) {
        SCOPED_TRACE(each.get("==", ""));
        folder.write("run.dat", runFileOf(each));
        for (const char channel : std::string{"123456789"}) {
            std::filesystem::remove(channelFile(channel));
        }
        if (each.words.contains("folder")) {
            std::filesystem::create_directory(channelFile(each.words.at("folder").front()));
        }
        run(each, Dunvale2Andi, "dat", "dat", "", "");
        const std::string files = each.get("files", each.words.contains("fails") ? "" : "1");
        for (const char channel : std::string{"123456789"}) {
            const bool isThere = files.find(channel) != std::string::npos;
            EXPECT_EQ(std::filesystem::is_regular_file(channelFile(channel)), isThere) << channel;
            const std::string dump =
                isThere ? dumped(std::string{"run"} + channel + ".cdf") : std::string{};
            EXPECT_EQ(dump.empty(), !isThere || each.words.contains("undumpable")) << channel;
            expectDumps(each, dump, {channel});
        }
    }
}

} // namespace
} // namespace korlit
