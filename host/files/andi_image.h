// An ANDI file in memory, as the commands look into it. Values are found as conversions find them:
// by their name in the chromatography template, apart from separators.
#pragma once

#include "andi/andi_file.h"
#include "host/files/number_view.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
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

/// Loads a file, but for mass spectra; answers the empty text, or why it can't be.
std::string load(AndiImage& image, const std::string& path);

/// The same without any data.
std::string loadHeader(AndiImage& image, const std::string& path);

/// The text of a global attribute, a variable or an attribute of a variable. Nothing if there is
/// none.
std::optional<std::string> textOf(const AndiImage& image, std::string_view name);

/// The variable of that name; null if there is none.
const AndiVariable* variableOf(const AndiImage& image, std::string_view name);

/// The same for a variable along the record dimension, too, which conversions don't find.
const AndiVariable* variableNamed(const AndiImage& image, std::string_view name);

/// All elements of a variable of numbers, which must outlive what is answered; none of one of text
/// or of null.
NumberView numbersOf(const AndiVariable* variable);

/// The rows of a matrix of text, each up to its first NUL; none of anything else.
std::vector<std::string> rowsOf(const AndiImage& image, const AndiVariable* variable);

/// The text that an attribute holds; nothing for one of numbers.
std::optional<std::string> textOf(const AndiAttribute& attribute);

std::span<const AndiVariable> variablesOf(const AndiImage& image);
std::span<const AndiAttribute> attributesOf(const AndiAttributeList& list);
std::span<const AndiDimension> dimensionsOf(const AndiImage& image);

/// Whether a name in the file is that of the template.
bool isNamed(const char* storedName, std::string_view templateName);

} // namespace korlit::host
