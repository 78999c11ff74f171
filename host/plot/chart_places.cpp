#include "host/plot/chart_places.h"

#include "host/files/side_files.h"
#include "host/files/standard_input.h"

#include <cstddef>
#include <map>

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
        SideFiles charts;
        std::vector<std::size_t> owners;
        std::vector<ChartPlace> places;
        for (std::size_t i = 0; i < listing.files.size(); ++i) {
            ChartPlace place{.file = placeOf(i), .problem = listing.files[i].problem};
            if (place.problem.empty()) {
                const auto other = charts.at(place.file);
                place.problem = charts.add(place.file, "chart");
                owners.push_back(i);
                if (other) {
                    place.problem = "Its chart " + place.file.string() + " is that of " +
                                    listing.pathOf(listing.files[owners[*other]]).string();
                }
            }
            places.push_back(place);
        }
        refuseSources(charts, owners, places);
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

    void refuseSources(const SideFiles& charts, const std::vector<std::size_t>& owners,
                       std::vector<ChartPlace>& places) const {
        for (const ListedFile& file : listing.files) {
            for (const SourceFile& source : formatOf(file.kind).sourceFiles(listing.pathOf(file))) {
                if (const auto chart = charts.at(source.path)) {
                    ChartPlace& place = places[owners[*chart]];
                    place.problem =
                        "Its chart " + place.file.string() + " is a file that is to be drawn";
                }
            }
        }
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
