// A sibling library that leaves something out or does it wrong, in the place of the real one.
#include "tests/support/host_call.h"
#include "tests/support/image.h"
#include "tests/support/module_test.h"

namespace korlit {
namespace {

using namespace test;

bool isStubLoaded = false;
std::string missingEntry; ///< which the sibling library doesn't have
std::string lookedUp;     ///< the names since this was last cleared

class SiblingTest : public ModuleTest {
  protected:
    ~SiblingTest() override {
        unsetenv("STUB_SIBLING");
        isStubLoaded = false;
        missingEntry = "";
    }

    /// Prepares a pair, with a report of an older revision if that is asked for.
    void writePair(bool isOlder) const {
        std::string bytes = readImage(LISTINGS "two_peaks.rpt.txt");
        bytes[0] = isOlder ? '\x11' : bytes[0];
        folder.write("run.rpt", bytes);
        folder.write("run.sli", readImage(LISTINGS "two_peaks.sli.txt"));
        std::filesystem::remove(folder.path("run.cdf"));
    }

    std::string slice = folder.path("run.sli");
    std::string report = folder.path("run.rpt");
    std::string andi = folder.path("run.cdf");
};

TEST_F(SiblingTest, EachWayToFailIsTold) {
    const std::string written = "Merivolta File converted to " + andi + ".";
    const std::string notUpdated = "Unable to update Report Header in File " + report;
    const std::string cut = "Error reading Merivolta file " + report;
    const auto noEntry = [](const std::string& name) {
        return "Fatal Error:\n--------------\n\nCannot locate \"" + name +
               "\" Function in Ostrelix.dll !!!";
    };
    struct {
        const char* told;
        const char* missing;
        bool isOlder; ///< an older report needs its update
        std::string path, message;
    } const cases[]{
        {"", "", false, andi, written},
        {"", "", true, andi, written},
        {"", "UpdateRepHeader", false, andi, written},
        {"", "UpdateRepHeader", true, report, notUpdated},
        {"throws on update", "", true, report, notUpdated},
        {"", "ReadChromHeader", false, slice, noEntry("ReadChromHeader")},
        {"", "GetSliDataOffSet", false, report, noEntry("GetSliDataOffSet")},
        {"refuses", "FileReadError", false, slice,
         "Fatal Error:\n\nCannot Get SliDataOffSet from Version !!!"},
        {"refuses", "", false, slice, untouchedMessage},
        {"throws", "", false, slice, untouchedMessage},
        {"removes sli", "", false, slice, "Error opening Merivolta Raw Data file " + slice},
        {"removes rpt", "", false, report, "Error opening Merivolta Report file " + report},
        {"shrinks sli", "", false, report, cut},
        {"shrinks rpt", "", false, report, cut},
        {"skips a sample", "", false, report, cut}};
    isStubLoaded = true;
    for (const auto& [told, missing, isOlder, path, message] : cases) {
        SCOPED_TRACE(std::string{told} + ", without " + missing);
        writePair(isOlder);
        setenv("STUB_SIBLING", told, 1);
        missingEntry = missing;
        const std::string box = boxOf([&, &path = path, &message = message] {
            EXPECT_EQ(callAsHost(Merivolta2Andi, slice),
                      (Answer{path == andi ? 1 : 0, path, message, true}));
        });
        const bool isRefused = path == slice && message == untouchedMessage;
        EXPECT_EQ(box,
                  isRefused && told == std::string{"refuses"} ? "refused " + slice + "\n" : "");
        EXPECT_EQ(std::filesystem::exists(andi), path == andi);
        EXPECT_EQ(heldFileCount() + heldLibraryCount(), 0);
        callAsHost(Andi2Merivolta, folder.path("missing"));
        expectNothingHeld();
    }
}

TEST_F(SiblingTest, EntryPointsAreLookedUpUnderTheirDecoratedNamesFirst) {
    writePair(true);
    lookedUp.clear();
    EXPECT_EQ(callAsHost(Merivolta2Andi, slice).result, 1);
    EXPECT_EQ(lookedUp, "_ReadChromHeader@12 ReadChromHeader _GetSliDataOffSet@8 GetSliDataOffSet "
                        "_UpdateRepHeader@12 UpdateRepHeader ");
    callAsHost(Andi2Merivolta, folder.path("missing"));
}

} // namespace
} // namespace korlit

// The linker puts these in front of dlopen and dlsym (--wrap): names with an @ can't be given to an
// entry point of a shared library here, so the lookup itself is watched.
// NOLINTBEGIN(bugprone-reserved-identifier)
extern "C" void* __real_dlopen(const char* name, int flags);
extern "C" void* __wrap_dlopen(const char* name, int flags) {
    return __real_dlopen(korlit::isStubLoaded ? STUB_SIBLING : name, flags);
}
extern "C" void* __real_dlsym(void* library, const char* name);
extern "C" void* __wrap_dlsym(void* library, const char* name) {
    korlit::lookedUp += std::string{name} + " ";
    return name == korlit::missingEntry ? nullptr : __real_dlsym(library, name);
}
// NOLINTEND(bugprone-reserved-identifier)
