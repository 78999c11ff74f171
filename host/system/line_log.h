// A file of lines to which several processes append at a time, on one machine or on many.
#pragma once

#include <filesystem>
#include <string_view>

namespace korlit::host {

class LineLog {
  public:
    /// Opens the file, or makes it; one without lines gets `most` as its permissions at most.
    /// Throws a filesystem_error where that can't be done or it is no regular file.
    LineLog(const std::filesystem::path& file, std::filesystem::perms most);
    LineLog(const LineLog&) = delete;
    LineLog& operator=(const LineLog&) = delete;
    ~LineLog();

    /// Appends lines, each with its end, in one piece; what a killed process has left of a line
    /// ahead of them is ended first. Throws a filesystem_error where the file can't take them, and
    /// then holds nothing of them.
    void append(std::string_view lines) const;

  private:
    std::filesystem::path path;
    int descriptor;
};

} // namespace korlit::host
