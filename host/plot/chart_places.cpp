#include "host/plot/chart_places.h"

#include "host/files/standard_input.h"
#include "host/system/file_identity.h"

#include <cstddef>
#include <map>
#include <set>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;

class PlaceFinder {
  public:
    PlaceFinder(const Listing& listedFiles, const fs::path& chartFolder, ChartFormat format)
        : listing{listedFiles}, folder{chartFolder},
          extension{'.' + chartFormatNames()[static_cast<std::size_t>(format)]},
          isNameWhole(listedFiles.files.size()) {}

    std::vector<ChartPlace> places() {
        while (keepExtensions()) {
        }
        std::map<fs::path, std::size_t> owners;
        const std::set<FileIdentity> sources = sourceIdentities();
        std::vector<ChartPlace> places;
        for (std::size_t i = 0; i < listing.files.size(); ++i) {
            ChartPlace place{.file = placeOf(i), .problem = listing.files[i].problem};
            if (place.problem.empty()) {
                const std::size_t owner = owners.emplace(place.file, i).first->second;
                const auto there = identityOf(place.file);
                if (owner != i) {
                    place.problem = "Its chart " + place.file.string() + " is that of " +
                                    listing.pathOf(listing.files[owner]).string();
                } else if (there && sources.contains(*there)) {
                    place.problem =
                        "Its chart " + place.file.string() + " is a file that is to be drawn";
                }
            }
            places.push_back(place);
        }
        return places;
    }

  private:
    fs::path placeOf(std::size_t i) const {
        const ListedFile& file = listing.files[i];
        const fs::path name = shownName(fs::path{file.name}.filename());
        fs::path place = folder / listing.folders[file.folder].below;
        place /= isNameWhole[i] ? name : name.stem();
        return place += extension;
    }

    /// Has files that share a place keep their extensions, which may be the name of yet another
    /// chart. Answers whether there were any.
    bool keepExtensions() {
        std::map<fs::path, std::vector<std::size_t>> sharing;
        for (std::size_t i = 0; i < listing.files.size(); ++i) {
            if (listing.files[i].problem.empty()) {
                sharing[placeOf(i)].push_back(i);
            }
        }
        bool isAnyChanged = false;
        for (const auto& [place, files] : sharing) {
            for (const std::size_t i : files) {
                const bool isToKeep = files.size() > 1 && !isNameWhole[i];
                isNameWhole[i] = isNameWhole[i] || isToKeep;
                isAnyChanged = isAnyChanged || isToKeep;
            }
        }
        return isAnyChanged;
    }

    std::set<FileIdentity> sourceIdentities() const {
        std::set<FileIdentity> identities;
        for (const ListedFile& file : listing.files) {
            if (const auto identity = identityOf(listing.pathOf(file))) {
                identities.insert(*identity);
            }
        }
        return identities;
    }

    const Listing& listing;
    const fs::path& folder;
    std::string extension;
    std::vector<bool> isNameWhole; ///< whether a chart's name has its file's with the extension
};

} // namespace

std::vector<ChartPlace> chartPlaces(const Listing& listing, const fs::path& folder,
                                    ChartFormat format) {
    return PlaceFinder{listing, folder, format}.places();
}

} // namespace korlit::host
