#include "host/files/float_columns.h"

#include <vector>

namespace korlit::host {

std::string wrongTypeWords(const char* name, AndiType type, AndiType expected) {
    return std::string{name} + " is " + andiTypes[static_cast<std::size_t>(type)].name +
           " instead of " + andiTypes[static_cast<std::size_t>(expected)].name;
}

std::string floatProblem(const AndiImage& image) {
    std::vector<const char*> names{taken::ordinateValues};
    for (const PeakSource& source : peakSources) {
        names.push_back(source.name);
    }
    for (const char* name : names) {
        const AndiVariable* variable = variableOf(image, name);
        if (variable != nullptr && variable->VSize > 0 && variable->Type != AndiType::Float) {
            return "Its " + wrongTypeWords(name, variable->Type, AndiType::Float) +
                   ", and its numbers would come out as others (ncdump and ncgen make a file of "
                   "floats of it)";
        }
    }
    return "";
}

} // namespace korlit::host
