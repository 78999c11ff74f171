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
    return AndiText{.globals = oneText("source_file_reference", source)}.bytes();
}

std::string withByte(std::string bytes, std::size_t place, char byte) {
    bytes.at(place) = byte;
    return bytes;
}

class Origin : public testing::Test {
  protected:
    Plan plan(const std::string& source, FileKind kind) const {
        return {.source = folder.path(source), .kind = kind};
    }

    TempFolder folder;
    // As conversions write them.
    std::string slice = readImage(LISTINGS "two_peaks.sli.txt");
    std::string report = readImage(LISTINGS "two_peaks.rpt.txt");
};

TEST_F(Origin, OfAPairIsSeenInWhatAConversionLeavesZero) {
    folder.write("x.cdf", AndiText{}.bytes());
    const Plan toPair = plan("x.cdf", FileKind::Andi);
    for (const auto& [name, bytes, canBeMade] :
         std::initializer_list<std::tuple<const char*, std::string, bool>>{
             {"x.sli", slice, true},
             {"x.rpt", report, true},
             // What a conversion fills may be anything.
             {"x.sli", withByte(slice, 14, 'Z'), true},
             {"x.sli", withByte(slice, 2050, 'Z'), true},
             {"x.rpt", withByte(report, 139, 1), true},
             // What it leaves alone may not.
             {"x.sli", withByte(slice, 1816, 1), false}, // the factor
             {"x.sli", withByte(slice, 112, 1), false},  // the version
             {"x.sli", withByte(slice, 57, 1), false},
             {"x.sli", withByte(slice, 1830, 1), false},
             {"x.rpt", withByte(report, 0, 1), false},
             {"x.rpt", withByte(report, 135, 1), false},
             {"x.sli", report, false},
             {"x.sli", "", false},
         }) {
        EXPECT_EQ(canBeMadeFrom(toPair, folder.write(name, bytes)), canBeMade)
            << name << ' ' << bytes.size();
    }
}

TEST_F(Origin, OfAnAndiFileIsTheLastPartOfItsReference) {
    folder.write("x.sli", slice);
    const Plan pair = plan("x.sli", FileKind::Merivolta);
    for (const auto& [reference, canBeMade] :
         {std::pair{"x.sli", true}, std::pair{"/elsewhere/x.sli", true},
          std::pair{R"(C:\data\x.sli)", true}, std::pair{"xx.sli", false},
          std::pair{"x.sli/", false}, std::pair{"X.sli", false}}) {
        const std::string target = folder.write("x.cdf", andiNaming(reference));
        EXPECT_EQ(canBeMadeFrom(pair, target), canBeMade) << reference;
        // A pair as conversions write them was made from an ANDI file that names something else.
        EXPECT_EQ(isOrigin(pair, target), !canBeMade) << reference;
        EXPECT_FALSE(isOrigin(plan("x.run", FileKind::Dunvale), target)) << reference;
    }
    const std::string nameless = folder.write("x.cdf", AndiText{}.bytes());
    EXPECT_FALSE(canBeMadeFrom(pair, nameless));
    EXPECT_TRUE(isOrigin(pair, nameless));
    EXPECT_FALSE(isOrigin(pair, folder.write("x.cdf", "CDF")));
    EXPECT_FALSE(isOrigin(pair, folder.path("none.cdf")));
}

TEST_F(Origin, IsAPairOfAnInstrumentAnywhereAndAConvertedOneWhereItIsNamed) {
    const std::string instruments = withByte(slice, 57, 1);
    std::filesystem::create_directory(folder.path("sub"));
    struct Case {
        std::string reference;
        std::string target;
        const std::string& bytes;
        bool isSource;
    };
    for (const auto& [reference, target, bytes, isSource] : std::initializer_list<Case>{
             {folder.path("sub/x.sli"), "sub/x.sli", slice, true},
             {"/gone/x.sli", "x.sli", slice, true},      // beside the file itself
             {"/gone/x.sli", "sub/x.sli", slice, false}, // any conversion's
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
