// A folder of a test's own, and whole files as strings.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace korlit::test {

inline std::string readFile(const std::filesystem::path& path) {
    std::ifstream in{path, std::ios::binary};
    std::ostringstream bytes;
    bytes << in.rdbuf();
    return bytes.str();
}

class TempFolder {
  public:
    TempFolder() {
        // In memory where the machine has such a place: thousands of files are rewritten here.
        const std::filesystem::path memory = "/dev/shm";
        const auto parent =
            std::filesystem::exists(memory) ? memory : std::filesystem::temp_directory_path();
        std::string pattern = (parent / "korlit-XXXXXX").string();
        path_ = mkdtemp(pattern.data());
    }
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    ~TempFolder() {
        std::error_code ignored;
        std::filesystem::remove_all(path_, ignored);
    }

    [[nodiscard]] std::string path(const std::string& name) const {
        return (path_ / name).string();
    }

    /// What ncdump prints of an ANDI file in the folder, with the switches given; "" if it refuses.
    [[nodiscard]] std::string dump(const std::string& name, const std::string& switches) const {
        const std::string command = "ncdump " + switches + " " + path(name) + " >" + path("dump");
        return std::system(command.c_str()) == 0 ? readFile(path("dump")) : "";
    }

    std::string write(const std::string& name, const std::string& bytes) const {
        std::ofstream{path(name), std::ios::binary} << bytes;
        return path(name);
    }

  private:
    std::filesystem::path path_;
};

} // namespace korlit::test
