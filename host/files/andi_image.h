// An ANDI file in memory, as the commands look into it.
#pragma once

#include "andi/andi_file.h"

#include <optional>
#include <string>
#include <vector>

namespace korlit::host {

/// Owns what it has loaded.
struct AndiImage {
    AndiFile file{};

    AndiImage() = default;
    AndiImage(const AndiImage&) = delete;
    AndiImage& operator=(const AndiImage&) = delete;
    ~AndiImage() { FreeAndiFile(&file); }
};

/// Loads a file; answers the empty text, or why it can't be.
std::string load(AndiImage& image, const std::string& path);

/// The text of a global attribute, a variable or an attribute of a variable, found as conversions
/// find it: by its name in lower case without separators ("detectorunit"). Nothing if there is
/// none.
std::optional<std::string> textOf(const AndiImage& image, const std::string& key);

/// The variable of that name, found in the same way; null if there is none.
const AndiVariable* variableOf(const AndiImage& image, const std::string& key);

/// All elements of a variable of numbers; none of one of text or of null.
std::vector<double> numbersOf(const AndiVariable* variable);

/// The rows of a matrix of text, each up to its first NUL; none of anything else.
std::vector<std::string> rowsOf(const AndiImage& image, const AndiVariable* variable);

/// The text that an attribute holds; nothing for one of numbers.
std::optional<std::string> textOf(const AndiAttribute& attribute);

/// Replaces the source_file_reference. Throws bad_alloc where there is no memory for it.
void setSourceReference(AndiImage& image, const std::string& source);

/// Writes the image to a file, after which it can only be released; answers the empty text, or why
/// it can't be.
std::string save(AndiImage& image, const std::string& path);

} // namespace korlit::host
