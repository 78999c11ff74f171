// What files tell of which was made of which.
#include "host/files/origin.h"
#include "tests/support/andi_text.h"
#include "tests/support/image.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

namespace korlit::host {
namespace {

using namespace korlit::test;

std::string andiNaming(const std::string& source) {
    AndiText file;
    file.globals = oneText("source_file_reference", source);
    return file.bytes();
}

std::string withByte(std::string bytes, std::size_t place, char byte) {
    bytes.at(place) = byte;
    return bytes;
}

/// A slice file and a report as conversions write them.
const std::string& slice() {
    static const std::string bytes = readImage(LISTINGS "two_peaks.sli.txt");
    return bytes;
}
const std::string& report() {
    static const std::string bytes = readImage(LISTINGS "two_peaks.rpt.txt");
    return bytes;
}

class Origin : public testing::Test {
  protected:
    Plan plan(const std::string& source, FileKind kind) const {
        return {.source = folder.path(source), .kind = kind};
    }

    TempFolder folder;
};

TEST_F(Origin, OfAPairIsSeenInWhatAConversionLeavesZero) {
    folder.write("x.cdf", AndiText{}.bytes());
    const Plan toPair = plan("x.cdf", FileKind::Andi);
    struct Case {
        const char* name;
        std::string bytes;
        bool canBeMade;
    };
    for (const auto& [name, bytes, canBeMade] : std::initializer_list<Case>{
             {"x.sli", slice(), true},
             {"x.SLI", slice(), true},
             {"x.rpt", report(), true},
             // What a conversion fills may be anything.
             {"x.sli", withByte(slice(), 14, 'Z'), true},
             {"x.sli", withByte(slice(), 2050, 'Z'), true},
             {"x.rpt", withByte(report(), 139, 1), true},
             // What it leaves alone may not.
             {"x.sli", withByte(slice(), 1816, 1), false}, // the factor
             {"x.sli", withByte(slice(), 112, 1), false},  // the version
             {"x.sli", withByte(slice(), 57, 1), false},
             {"x.sli", withByte(slice(), 1830, 1), false},
             {"x.rpt", withByte(report(), 0, 1), false},
             {"x.rpt", withByte(report(), 2, 1), false},
             {"x.rpt", withByte(report(), 135, 1), false},
             {"x.sli", report(), false},
             {"x.rpt", slice(), false},
             {"x.sli", "", false},
             {"x.rpt", "", false},
         }) {
        EXPECT_EQ(canBeMadeFrom(toPair, folder.write(name, bytes)), canBeMade)
            << name << ' ' << bytes.size();
    }
}

TEST_F(Origin, OfAnAndiFileIsTheLastPartOfItsReference) {
    folder.write("x.sli", slice());
    struct Case {
        std::string reference;
        bool canBeMade;
    };
    for (const auto& [reference, canBeMade] : std::initializer_list<Case>{
             {"x.sli", true},
             {"/elsewhere/x.sli", true},
             {R"(C:\data\x.sli)", true},
             {R"(C:\data/x.sli)", true},
             {"x.sli.bak", false},
             {"xx.sli", false},
             {"x.sli/", false},
             {"X.sli", false},
         }) {
        const std::string target = folder.write("x.cdf", andiNaming(reference));
        EXPECT_EQ(canBeMadeFrom(plan("x.sli", FileKind::Merivolta), target), canBeMade)
            << reference;
        // A pair as conversions write them was made from an ANDI file that names something else.
        EXPECT_EQ(isOrigin(plan("x.sli", FileKind::Merivolta), target), !canBeMade) << reference;
        EXPECT_FALSE(isOrigin(plan("x.run", FileKind::Dunvale), target)) << reference;
    }
    const std::string nameless = folder.write("x.cdf", AndiText{}.bytes());
    EXPECT_FALSE(canBeMadeFrom(plan("x.sli", FileKind::Merivolta), nameless));
    EXPECT_TRUE(isOrigin(plan("x.sli", FileKind::Merivolta), nameless));
    EXPECT_FALSE(isOrigin(plan("x.sli", FileKind::Merivolta), folder.write("x.cdf", "CDF")));
    EXPECT_FALSE(isOrigin(plan("x.sli", FileKind::Merivolta), folder.path("none.cdf")));
}

TEST_F(Origin, IsAPairOfAnInstrumentAnywhereAndAConvertedOneWhereItIsNamed) {
    const std::string& made = slice();
    const std::string instruments = withByte(slice(), 57, 1);
    std::filesystem::create_directory(folder.path("sub"));
    struct Case {
        std::string reference;
        std::string target;
        const std::string& bytes;
        bool isSource;
    };
    for (const auto& [reference, target, bytes, isSource] : std::initializer_list<Case>{
             {folder.path("sub/x.sli"), "sub/x.sli", made, true},
             {"/gone/x.sli", "x.sli", made, true},      // beside the file itself
             {"/gone/x.sli", "sub/x.sli", made, false}, // any conversion's
             {"/gone/x.sli", "sub/x.sli", instruments, true},
             {"/gone/y.sli", "x.sli", instruments, false}, // made of another
             {"/gone/x.run", "sub/x.sli", instruments, false},
             {"", "x.sli", instruments, false},
         }) {
        folder.write("x.cdf", reference.empty() ? AndiText{}.bytes() : andiNaming(reference));
        const std::string pair = folder.write(target, bytes);
        EXPECT_EQ(isOrigin(plan("x.cdf", FileKind::Andi), pair), isSource)
            << reference << ' ' << target;
        std::filesystem::remove(pair);
    }
}

} // namespace
} // namespace korlit::host
