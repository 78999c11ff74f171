#include "host/compare/pairing.h"

#include <algorithm>
#include <map>
#include <utility>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

fs::path stemOf(const fs::path& place) {
    return place.parent_path() / place.stem();
}

/// The files of a side that have no partner yet.
class Lone {
  public:
    explicit Lone(const std::vector<PlacedFile>& files) {
        for (const PlacedFile& file : files) {
            byPlace.emplace(file.place, &file);
            byStem.emplace(stemOf(file.place), &file);
        }
    }

    const PlacedFile* at(const fs::path& place) const { return first(byPlace, place); }
    const PlacedFile* ofStem(const fs::path& stem) const { return first(byStem, stem); }

    void take(const PlacedFile& file) {
        erase(byPlace, file.place, file);
        erase(byStem, stemOf(file.place), file);
    }

    std::vector<const PlacedFile*> rest() const {
        std::vector<const PlacedFile*> files;
        for (const auto& [place, file] : byPlace) {
            files.push_back(file);
        }
        return files;
    }

  private:
    using Files = std::multimap<fs::path, const PlacedFile*>;

    static const PlacedFile* first(const Files& files, const fs::path& key) {
        const auto found = files.lower_bound(key);
        return found == files.end() || found->first != key ? nullptr : found->second;
    }

    static void erase(Files& files, const fs::path& key, const PlacedFile& file) {
        const auto [begin, end] = files.equal_range(key);
        files.erase(
            std::find_if(begin, end, [&](const auto& each) { return each.second == &file; }));
    }

    Files byPlace;
    Files byStem;
};

class Pairing {
  public:
    Pairing(const std::vector<PlacedFile>& filesOfA, const std::vector<PlacedFile>& filesOfB)
        : a{filesOfA}, b{filesOfB} {}

    void pairSameNames() {
        for (const PlacedFile* file : a.rest()) {
            pair(file, b.at(file->place));
        }
    }

    void pairChannels() {
        for (const PlacedFile* run : a.rest()) {
            addChannels(*run, a, b,
                        [](const PlacedFile* one, const PlacedFile* other, int channel) {
                            return FilePair{.a = one, .b = other, .channel = channel};
                        });
        }
        for (const PlacedFile* run : b.rest()) {
            addChannels(*run, b, a,
                        [](const PlacedFile* one, const PlacedFile* other, int channel) {
                            return FilePair{.a = other, .b = one, .channel = channel};
                        });
        }
    }

    void pairSameStems() {
        for (const PlacedFile* file : a.rest()) {
            pair(file, b.ofStem(stemOf(file->place)));
        }
    }

    std::vector<FilePair> withLone() {
        for (const PlacedFile* file : a.rest()) {
            pairs.push_back({.a = file});
        }
        for (const PlacedFile* file : b.rest()) {
            pairs.push_back({.b = file});
        }
        std::ranges::stable_sort(pairs, {}, [](const FilePair& each) {
            return std::pair{(each.a == nullptr ? each.b : each.a)->place, each.channel};
        });
        return pairs;
    }

  private:
    using Made = FilePair (*)(const PlacedFile* run, const PlacedFile* channelFile, int channel);

    void pair(const PlacedFile* file, const PlacedFile* partner) {
        if (partner != nullptr) {
            pairs.push_back({.a = file, .b = partner});
            a.take(*file);
            b.take(*partner);
        }
    }

    /// A channel whose file isn't there is told if that of another is.
    void addChannels(const PlacedFile& run, Lone& side, Lone& others, Made made) {
        if (!formatOf(run.kind).hasChannels) {
            return;
        }
        std::vector<const PlacedFile*> files;
        for (const std::string& ending : formatOf(run.kind).targetEndings(run.channelCount)) {
            files.push_back(others.ofStem(stemOf(stemOf(run.place).string() + ending)));
        }
        if (std::ranges::all_of(files, [](const auto* file) { return file == nullptr; })) {
            return;
        }
        side.take(run);
        for (std::size_t i = 0; i < files.size(); ++i) {
            pairs.push_back(made(&run, files[i], static_cast<int>(i) + 1));
            if (files[i] != nullptr) {
                others.take(*files[i]);
            }
        }
    }

    Lone a;
    Lone b;
    std::vector<FilePair> pairs;
};

} // namespace

std::vector<PlacedFile> placedFiles(const std::string& root, const Listing& listing) {
    std::vector<PlacedFile> files;
    for (const ListedFile& each : listing.files) {
        const fs::path path = listing.pathOf(each);
        const fs::path place = path.lexically_relative(root);
        files.push_back({.path = path,
                         .place = place == "." ? path.filename() : place,
                         .kind = each.kind,
                         .channelCount = each.channelCount,
                         .problem = each.problem});
    }
    return files;
}

std::vector<FilePair> pairsOf(const std::vector<PlacedFile>& a, const std::vector<PlacedFile>& b) {
    Pairing pairing{a, b};
    pairing.pairSameNames();
    pairing.pairChannels();
    pairing.pairSameStems();
    return pairing.withLone();
}

} // namespace korlit::host
