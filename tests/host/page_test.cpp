// Digests, what a page draws of a signal, and the hash of its script, on their own headers.
#include "host/manifest/digest.h"
#include "host/manifest/outline.h"
#include "host/page/markup.h"
#include "host/page/page_chart.h"
#include "tests/support/temp_folder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numeric>

namespace korlit::host {
namespace {

constexpr double largest = std::numeric_limits<double>::max();

Outline outlineIn(const std::vector<double>& samples) {
    return outlineOf({AndiType::Double, samples.data(), samples.size()});
}

TEST(PageOutline, HasTheExtremesOfEachStretchOnItsScale) {
    EXPECT_EQ(outlineIn({}), Outline{});
    EXPECT_EQ(outlineIn({7, 7}), (Outline{0, 0, 0, 0}));
    EXPECT_EQ(outlineIn({NAN, INFINITY}), (Outline{-1, -1, -1, -1}));
    EXPECT_EQ(outlineIn({-1, NAN, 3, 1, -INFINITY}),
              (Outline{0, 0, -1, -1, 250, 250, 125, 125, -1, -1}));
    EXPECT_EQ(outlineIn({-largest, largest, 0}), (Outline{0, 0, 250, 250, 125, 125}));
    // One peak of one sample, the last of all, in the last of 150 stretches.
    std::vector<double> samples(30'001);
    samples.back() = 5;
    samples[200] = 1;
    const Outline outline = outlineIn(samples);
    ASSERT_EQ(outline.size(), 300U);
    EXPECT_EQ(outline[2], 0);
    EXPECT_EQ(outline[3], 50);
    EXPECT_EQ(outline[299], 250);
    EXPECT_EQ(std::accumulate(outline.begin(), outline.end(), 0), 300);
}

TEST(PageOutline, IsThinnedWithoutLosingAnExtreme) {
    const Outline outline{5, 9, -1, -1, 3, 4, 0, 250, -1, -1, -1, -1};
    EXPECT_EQ(thinned(outline, 9), outline);
    EXPECT_EQ(thinned(outline, 3), (Outline{5, 9, 0, 250, -1, -1}));
    EXPECT_EQ(thinned(outline, 1), (Outline{0, 250}));
}

TEST(PagePicture, IsOneLineWithItsGaps) {
    struct Case {
        Outline outline;
        const char* path;
    };
    for (const auto& [outline, path] : std::initializer_list<Case>{
             {{}, ""},
             {{-1, -1}, ""},
             {{0, 0}, "M0 250l1 0"},
             {{0, 250, 240, 250, 250, 250}, "M0 250l1-250 1 0 1 10 1-10 1 0"},
             {{0, 0, 0, 0, 0, 10, 4, 4}, "M0 250l4 0 1-10 1 6 1 0"},
             {{-1, -1, 1, 1, -1, -1, 2, 3}, "M2 249l1 0M6 248l1-1"},
         }) {
        RecordedChannel channel;
        channel.outline = outline;
        const std::string picture = pictureOf(channel, 7, 150);
        EXPECT_NE(picture.find(std::string{"<path id=c7 d=\""} + path + "\"/>"), std::string::npos)
            << picture;
    }
}

// As `head -c SIZE /dev/zero | sha256sum` has them.
TEST(ManifestDigest, IsOfTheWholeFile) {
    struct Case {
        std::size_t size;
        const char* sha256;
    };
    const test::TempFolder folder;
    for (const auto& [size, sha256] : std::initializer_list<Case>{
             {0, "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
             {262144, "8a39d2abd3999ab73c34db2476849cddf303ce389b35826850f9a700589b4a90"},
             {600000, "1358f4ce65f0d1ed482d572e4eac6ea90d465c0ab878f477297474f8f23226c3"},
         }) {
        folder.write("file", std::string(size, '\0'));
        const auto digest = digestOf(folder.path("file"));
        ASSERT_TRUE(digest);
        EXPECT_EQ(digest->size, static_cast<std::int64_t>(size));
        EXPECT_EQ(digest->sha256, sha256);
    }
    EXPECT_EQ(digestOf(folder.path("missing")), std::nullopt);
    EXPECT_EQ(digestOf(folder.path("")), std::nullopt);
}

// As `printf 'alert(1)' | openssl dgst -sha256 -binary | base64` has it.
TEST(PagePolicy, NamesTheScriptByItsHash) {
    EXPECT_EQ(policyHash("alert(1)"), "sha256-bhHHL3z2vDgxUt0W3dWQOrprscmda2Y5pLsLg4GF+pI=");
}

} // namespace
} // namespace korlit::host
