// The folder that relative paths start from.
#pragma once

#include <filesystem>
#include <system_error>

namespace korlit::host {

/// For as long as this lives relative paths start from another folder, but for those that the
/// process's settings name: they are made absolute.
class CurrentFolder {
  public:
    explicit CurrentFolder(const std::filesystem::path& folder);
    CurrentFolder(const CurrentFolder&) = delete;
    CurrentFolder& operator=(const CurrentFolder&) = delete;
    ~CurrentFolder();

    /// Why it couldn't be done.
    std::error_code error() const { return failure; }

  private:
    std::error_code failure;
};

} // namespace korlit::host
