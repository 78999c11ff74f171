// Which files of two folders are held against each other.
#include "host/compare/pairing.h"

#include <gtest/gtest.h>

#include <array>
#include <sstream>

namespace korlit::host {
namespace {

/// Files from words: run.dat:3 is a run of three channels, one without a number an ANDI file or the
/// slice file of a pair by its name.
std::vector<PlacedFile> filesOf(const std::string& words) {
    std::vector<PlacedFile> files;
    std::istringstream in{words};
    for (std::string word; in >> word;) {
        const std::string place = word.substr(0, word.find(':'));
        const bool isRun = place != word;
        files.push_back({.path = "root/" + place,
                         .place = place,
                         .kind = isRun                     ? FileKind::Dunvale
                                 : place.ends_with(".sli") ? FileKind::Merivolta
                                                           : FileKind::Andi,
                         .channelCount = isRun ? std::stoi(word.substr(place.size() + 1)) : 1,
                         .problem = {}});
    }
    return files;
}

std::string wordsOf(const std::vector<FilePair>& pairs) {
    std::string words;
    for (const auto& [a, b, channel] : pairs) {
        words += (words.empty() ? "" : " ") + (a == nullptr ? "" : a->place.string()) + "=" +
                 (b == nullptr ? "" : b->place.string()) +
                 (channel == 0 ? "" : "#" + std::to_string(channel));
    }
    return words;
}

TEST(Pairing, GoesByPlaceThenByChannelThenByStem) {
    for (const auto& [a, b, pairs] : std::initializer_list<std::array<const char*, 3>>{
             {"b.cdf", "a.cdf c.cdf", "=a.cdf b.cdf= =c.cdf"},
             // The same name goes before another extension, whichever comes first.
             {"x.cdf x.sli", "x.sli", "x.cdf= x.sli=x.sli"},
             {"x.sli", "x.cdf x.sli", "=x.cdf x.sli=x.sli"},
             // A place is a folder, too.
             {"a/x.cdf", "b/x.cdf x.cdf", "a/x.cdf= =b/x.cdf =x.cdf"},
             {"a/x.cdf", "a/x.sli x.sli", "a/x.cdf=a/x.sli =x.sli"},
             // Only the last extension goes.
             {"x.y.cdf", "x.sli x.y.sli", "=x.sli x.y.cdf=x.y.sli"},
             {"x.CDF", "x.cdf", "x.CDF=x.cdf"},
             // Channels, on either side; those missing are told if one is there.
             {"x1.cdf x2.cdf", "x.dat:2", "x1.cdf=x.dat#1 x2.cdf=x.dat#2"},
             {"a/x.dat:1", "a/x1.cdf x1.cdf", "a/x.dat=a/x1.cdf#1 =x1.cdf"},
             {"x.dat:3", "x3.cdf x1.cdf", "x.dat=x1.cdf#1 x.dat=#2 x.dat=x3.cdf#3"},
             {"x.dat:2", "x1.cdf x2.cdf x3.cdf", "x.dat=x1.cdf#1 x.dat=x2.cdf#2 =x3.cdf"},
             {"x.dat:2", "y1.cdf", "x.dat= =y1.cdf"},
             {"x.dat:2", "x.dat:2 x1.cdf", "x.dat=x.dat =x1.cdf"},
             {"x.dat:1", "x.cdf x1.cdf", "=x.cdf x.dat=x1.cdf#1"},
             {"x.dat:9", "x.cdf", "x.dat=x.cdf"},
             // A file of a channel that has a namesake is that one's.
             {"x.dat:1 x1.cdf", "x1.cdf", "x.dat= x1.cdf=x1.cdf"},
         }) {
        const auto filesOfA = filesOf(a);
        const auto filesOfB = filesOf(b);
        EXPECT_EQ(wordsOf(pairsOf(filesOfA, filesOfB)), pairs) << a << " | " << b;
    }
}

TEST(Pairing, HasPlacesBelowTheFolderAndOfAFileTheName) {
    Listing listing;
    listing.folders.push_back({.path = "in/deep", .below = "deep"});
    listing.files.push_back({.name = "x.cdf", .folder = 1, .problem = {}});
    listing.files.push_back({.name = "in/half.rpt", .folder = 0, .problem = "half"});
    for (const char* root : {"in", "in/"}) {
        const auto files = placedFiles(root, listing);
        EXPECT_EQ(files[0].place, "deep/x.cdf");
        EXPECT_EQ(files[0].path, "in/deep/x.cdf");
        EXPECT_EQ(files[1].place, "half.rpt");
    }
    listing.files[1].name = "in/x.cdf";
    EXPECT_EQ(placedFiles("in/x.cdf", listing)[1].place, "x.cdf");
}

} // namespace
} // namespace korlit::host
