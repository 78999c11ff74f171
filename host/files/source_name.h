// The name of its source that an ANDI file holds.
#pragma once

#include <filesystem>
#include <string>

namespace korlit::host {

struct AndiImage;

/// Makes `source` the source_file_reference of a file whose data lie together behind its header.
/// `image` is the file's header, which can only be released afterwards. The data are copied as they
/// lie, by way of the file "whole" beside it. Throws a runtime_error with words for the user,
/// or bad_alloc.
void nameSource(AndiImage& image, const std::filesystem::path& file, const std::string& source);

} // namespace korlit::host
