#include "host/data/listed_data.h"

#include "host/text/wrong_use.h"

#include <stdexcept>
#include <string>

namespace korlit::host {

std::vector<DataSet> loadListed(const Listing& listing, const ListedFile& file, int channel) {
    if (!file.problem.empty()) {
        throw std::runtime_error{file.problem};
    }
    const std::string path = listing.pathOf(file);
    std::vector<DataSet> sets = loadDataSets(path, file.kind);
    if (sets.empty()) {
        throw std::runtime_error{path + " has no channels"};
    }
    try {
        pickChannel(sets, channel);
    } catch (const WrongUse& error) {
        // Among several files it is the fault of this one.
        if (listing.files.size() == 1) {
            throw;
        }
        throw std::runtime_error{error.what()};
    }
    return sets;
}

} // namespace korlit::host
