// Each conversion with each call of the platform failing in turn: what always holds behind a
// failure, and what each leads to, held against faults.txt.
#include "tests/support/andi_text.h"
#include "tests/support/host_call.h"
#include "tests/support/image.h"
#include "tests/support/module_test.h"
#include "tests/support/run_text.h"

#include <cstdlib>
#include <map>
#include <new>
#include <regex>

namespace korlit {
namespace {

using namespace test;

using Words = std::vector<std::string>;

const std::pair<FaultPoint, const char*> points[]{
    {FaultPoint::Allocate, "allocate"}, {FaultPoint::Lock, "lock"},
    {FaultPoint::Load, "load"},         {FaultPoint::Open, "open"},
    {FaultPoint::Read, "read"},         {FaultPoint::Create, "create"},
    {FaultPoint::Write, "write"},       {FaultPoint::Seek, "seek"},
    {FaultPoint::Close, "close"},       {FaultPoint::New, "new"}};

constexpr std::string_view marks =
    ".abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-*/=<>()[]{}!?&%$#@~^|;:_";

class FaultSweep : public ModuleTest {
  protected:
    FaultSweep() {
        setenv("TZ", "CET-1CEST,M3.5.0,M10.5.0/3", 1);
        folder.write("run.cdf", readFile(TEST_DATA "two_peaks_back.cdf"));
        folder.write("run.sli", readImage(LISTINGS "two_peaks.sli.txt"));
        folder.write("run.rpt", report);
    }
    ~FaultSweep() override {
        releaseLoaded();
        unsetenv("KORLIT_PROFILE");
    }

    /// Makes the calls of each service fail one by one, in the conversion of run.`extension`, until
    /// there is none left to fail.
    void sweep(const std::string& title, Export function, const std::string& extension,
               const Words& files) {
        called = function;
        source = "run." + extension;
        targets = files;
        message = function == Dunvale2Andi ? "" : untouchedMessage;
        whole.clear();
        stateOf.clear();
        good = outcome(FaultPoint::Load, 0, FaultKind::None);
        for (const std::string& target : targets) {
            whole[target] = readFile(folder.path(target));
        }
        good = outcome(FaultPoint::Load, 0, FaultKind::None);
        listing = "== " + title + "\n";
        outcomes = {good};
        for (const auto& [point, name] : points) {
            sweepPoint(point, FaultKind::Fail, name);
            if (point == FaultPoint::Read || point == FaultPoint::Write) {
                sweepPoint(point, FaultKind::CutShort, std::string{"short "} + name);
            }
        }
        for (std::size_t i = 0; i < outcomes.size(); ++i) {
            listing += std::string{marks.at(i), ' '} + outcomes[i] + "\n";
        }
        const std::string all = readFile(LISTINGS "faults.txt");
        const std::size_t start = all.find("== " + title + "\n");
        ASSERT_NE(start, std::string::npos) << listing;
        EXPECT_EQ(listing, all.substr(start, all.find("\n== ", start) + 1 - start));
    }

    std::string report = readImage(LISTINGS "two_peaks.rpt.txt");

  private:
    /// What a conversion leaves to the next one is released by that.
    void releaseLoaded() const { callAsHost(Andi2Merivolta, folder.path("missing.cdf")); }

    /// A mark for each call's failure, of which the listing's end tells the outcome.
    void sweepPoint(FaultPoint point, FaultKind kind, const std::string& name) {
        listing += name + " ";
        for (std::int64_t nth = 1;; ++nth) {
            SCOPED_TRACE(name + " " + std::to_string(nth));
            const std::string now = outcome(point, nth, kind);
            if (!hasStruck) {
                EXPECT_EQ(now, good);
                break;
            }
            const auto known = std::ranges::find(outcomes, now);
            const char mark = marks.at(static_cast<std::size_t>(known - outcomes.begin()));
            if (known == outcomes.end()) {
                outcomes.push_back(now);
            }
            // How often the runtime asks for memory is its own affair.
            if (point != FaultPoint::New || listing.back() != mark) {
                listing += mark;
            }
            EXPECT_EQ(outcome(FaultPoint::Load, 0, FaultKind::None), good);
        }
        listing += '\n';
    }

    /// Converts and tells result, path, message, box and what became of each target.
    std::string outcome(FaultPoint point, std::int64_t nth, FaultKind kind) {
        for (const std::string& target : targets) {
            folder.write(target, "an old " + target);
        }
        armed = {point, nth, kind};
        Answer answer;
        const std::string box =
            boxOf([&] { answer = callAsHost(callArmed, folder.path(source), message); });
        EXPECT_TRUE(answer.areBuffersKept);
        EXPECT_EQ(heldFileCount(), 0);
        EXPECT_EQ(heldLibraryCount(), 0);
        std::string text = std::to_string(answer.result) + " " + answer.path + ": " +
                           answer.message + (box.empty() ? "" : " BOX " + box);
        for (const std::string& target : targets) {
            text += " [" + state(target) + "]";
        }
        text += heldBlockCount() > 0 ? " stays loaded" : "";
        releaseLoaded();
        EXPECT_EQ(heldBlockCount(), 0);
        text = std::regex_replace(text, std::regex{folder.path("")}, "");
        return std::regex_replace(text, std::regex{"[\r\n]+"}, " ");
    }

    /// What has become of a target: old, empty, whole, begun (its start, with zeros where values
    /// were to be filled in), so many statements short, or else its size.
    std::string state(const std::string& target) {
        const std::string bytes = readFile(folder.path(target));
        const std::string& all = whole[target];
        const auto mayFollow = [](char is, char should) { return is == should || is == 0; };
        if (bytes == "an old " + target) {
            return "old";
        }
        if (bytes.empty() || bytes == all) {
            return bytes.empty() ? "empty" : "whole";
        }
        if (bytes.size() <= all.size() &&
            std::ranges::equal(bytes, all.substr(0, bytes.size()), mayFollow)) {
            return "begun";
        }
        std::string& known = stateOf[bytes];
        if (known.empty()) {
            const Words left = statements(bytes);
            const Words those = statements(all);
            known = !left.empty() && std::ranges::includes(those, left)
                        ? "lacks " + std::to_string(those.size() - left.size())
                        : std::to_string(bytes.size()) + " bytes";
        }
        return known;
    }

    /// What ncdump says of an ANDI file, one statement after the other, sorted; none of others.
    Words statements(const std::string& bytes) const {
        folder.write("dumped.cdf", bytes);
        const std::regex titles{"netcdf .* \\{|dimensions:|variables:|// global attributes:|data:"};
        std::istringstream dump{
            regex_replace(folder.dump("dumped.cdf", "-p 9,17 2>&1"), titles, ";")};
        Words all;
        for (std::string each; std::getline(dump, each, ';');) {
            if (each.find_first_not_of(" \t\n") != std::string::npos) {
                all.push_back(each);
            }
        }
        std::ranges::sort(all);
        return all;
    }

    struct ArmedFault {
        FaultPoint point;
        std::int64_t nth;
        FaultKind kind;
    };

    /// The export that is swept; what its host does around it doesn't meet the fault.
    static std::int32_t callArmed(char* path, char* message) {
        armFault(armed.point, armed.nth, armed.kind);
        const std::int32_t result = called(path, message);
        hasStruck = disarmFault();
        return result;
    }

    static inline Export called = nullptr;
    static inline ArmedFault armed{};
    static inline bool hasStruck = false;

    std::string source, message, good, listing;
    Words targets, outcomes;
    std::map<std::string, std::string> whole;   ///< the bytes of each target of a good conversion
    std::map<std::string, std::string> stateOf; ///< by the bytes, where that was looked up
};

TEST_F(FaultSweep, OfASmallAndiFile) {
    folder.write("run.cdf", AndiText{}.bytes());
    sweep("Andi2Merivolta, samples alone", Andi2Merivolta, "cdf", {"run.sli", "run.rpt"});
}

TEST_F(FaultSweep, OfAWholeAndiFile) {
    sweep("Andi2Merivolta, two peaks", Andi2Merivolta, "cdf", {"run.sli", "run.rpt"});
}

TEST_F(FaultSweep, OfAPairWithoutPeaks) {
    folder.write("run.rpt", std::string{report}.replace(350, 1, 1, '\0'));
    sweep("Merivolta2Andi, no peaks", Merivolta2Andi, "sli", {"run.cdf"});
}

TEST_F(FaultSweep, OfAPairThatNeedsTheUpdateAndTheSettings) {
    folder.write("run.rpt", "\x11" + report.substr(1));
    setenv("KORLIT_PROFILE", folder.write("ini", "[intl]\nsShortDate=M/d/y\n").c_str(), 1);
    sweep("Merivolta2Andi, an older report, two peaks", Merivolta2Andi, "sli", {"run.cdf"});
}

TEST_F(FaultSweep, OfAnOldRun) {
    RunText run{.version = "x40A00000", .extra = "", .lines = "r522"};
    run.results = "0s 2s 5s 0.5f 0f 1f 120f 6f 1.5f 1f 2.5f 60f 5f";
    run.timeTable = "r1548 1s 257s";
    folder.write("run.dat", run.bytes());
    sweep("Dunvale2Andi, an old version", Dunvale2Andi, "dat", {"run1.cdf"});
}

TEST_F(FaultSweep, OfTwoChannels) {
    folder.write("run.dat", RunText{.count = "2s", .channels = 2}.bytes());
    sweep("Dunvale2Andi, two channels", Dunvale2Andi, "dat", {"run1.cdf", "run2.cdf"});
}

} // namespace
} // namespace korlit

// The runtime's memory fails on demand too.
[[gnu::noinline]] void* operator new(std::size_t size) {
    void* block = korlit::faultAt(korlit::FaultPoint::New) == korlit::FaultKind::None
                      ? std::malloc(std::max<std::size_t>(size, 1))
                      : nullptr;
    return block != nullptr ? block : throw std::bad_alloc{};
}
[[gnu::noinline]] void operator delete(void* block) noexcept {
    std::free(block);
}
[[gnu::noinline]] void operator delete(void* block, std::size_t /*size*/) noexcept {
    std::free(block);
}
