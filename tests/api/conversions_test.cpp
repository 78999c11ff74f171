// Runs the cases of conversions.txt, which says how to read them.
#include "tests/support/andi_text.h"
#include "tests/support/host_call.h"
#include "tests/support/image.h"
#include "tests/support/module_test.h"

#include <map>

namespace korlit {
namespace {

using namespace test;

class Conversions : public ModuleTest {
  protected:
    /// A text of the table with its paths filled in.
    std::string filled(std::string text) const {
        for (const std::string extension : {"cdf", "sli", "rpt"}) {
            const std::size_t place = text.find("{" + extension + "}");
            if (place != std::string::npos) {
                text.replace(place, 5, folder.path("run." + extension));
            }
        }
        return text;
    }

    /// A line such as "write 3 short".
    static void arm(const std::string& fault) {
        const std::map<std::string, FaultPoint> points{
            {"allocate", FaultPoint::Allocate}, {"lock", FaultPoint::Lock},
            {"open", FaultPoint::Open},         {"create", FaultPoint::Create},
            {"read", FaultPoint::Read},         {"write", FaultPoint::Write},
            {"close", FaultPoint::Close}};
        std::istringstream words{fault};
        std::string point;
        std::int64_t nth = 0;
        words >> point >> nth;
        armFault(points.at(point), nth,
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

    using Case = std::map<std::string, std::string>; ///< what stands behind each key

    void run(const Case& given, const std::vector<std::string>& contents) {
        const auto get = [&](const char* key, const std::string& otherwise) {
            return given.contains(key) ? given.at(key) : otherwise;
        };
        AndiText file;
        file = {get("start", file.start),           get("records", file.records),
                get("dimensions", file.dimensions), get("globals", file.globals),
                get("variables", file.variables),   get("data", file.data)};
        const std::string source = folder.write("run.cdf", file.bytes());
        folder.write("run.sli", std::string(100, 'x'));
        folder.write("run.rpt", std::string(100, 'x'));
        if (given.contains("fault")) {
            arm(given.at("fault"));
        }
        Answer answer;
        const std::string box = boxOf([&] { answer = callAsHost(Andi2Merivolta, source); });
        disarmFault();
        const bool fails = given.contains("fails") || given.contains("box");
        const std::string otherwise = fails ? untouchedMessage : "Wrote Merivolta file {sli}";
        EXPECT_EQ(answer, (Answer{fails ? 0 : 1, folder.path("run." + get("path", "sli")),
                                  filled(get("fails", otherwise)), true}));
        EXPECT_EQ(box, given.contains("box") ? given.at("box") + "\n" : "");
        for (const std::string& line : contents) {
            expectContent(line);
        }
        if (given.contains("path") && given.at("path") == "cdf") {
            expectNothingHeld(); // a failed load
        }
        // A good conversion right behind goes through and leaves nothing.
        const std::string good = folder.write("good.cdf", AndiText{}.bytes());
        EXPECT_EQ(callAsHost(Andi2Merivolta, good).result, 1);
        expectNothingHeld();
    }
};

TEST_F(Conversions, ComeOutAsTheTableSays) {
    std::ifstream in{LISTINGS "conversions.txt"};
    std::vector<std::pair<Case, std::vector<std::string>>> cases;
    for (std::string line; std::getline(in, line);) {
        const std::string key = line.substr(0, line.find(' '));
        if (key == "==") {
            cases.emplace_back();
        }
        if (key == "sli" || key == "rpt") {
            cases.back().second.push_back(line);
        } else if (!key.empty() && key.front() != '#') {
            cases.back().first[key] = line.substr(key.size() + 1);
        }
    }
    EXPECT_GT(cases.size(), 80U);
    for (const auto& [given, contents] : cases) {
        SCOPED_TRACE(given.at("=="));
        run(given, contents);
    }
}

} // namespace
} // namespace korlit
