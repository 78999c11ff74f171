#include "host/convert/path_list.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <stdexcept>
#include <system_error>

namespace korlit::host {

namespace {

std::vector<std::string> readPaths(std::istream& in, bool isZeroSeparated) {
    std::vector<std::string> paths;
    for (std::string path; std::getline(in, path, isZeroSeparated ? '\0' : '\n');) {
        if (!isZeroSeparated && path.ends_with('\r')) {
            path.pop_back();
        }
        if (!path.empty()) {
            paths.push_back(path);
        }
    }
    return paths;
}

[[noreturn]] void refuse(const std::string& list) {
    throw std::runtime_error{"Can't read " + list + ": " + std::generic_category().message(errno)};
}

} // namespace

std::vector<std::string> pathsOf(const WorkOptions& options) {
    std::vector<std::string> paths = options.paths;
    if (options.filesFrom.empty()) {
        return paths;
    }
    const bool isStandardInput = options.filesFrom == "-";
    std::ifstream file;
    if (!isStandardInput) {
        file.open(options.filesFrom);
        if (!file) {
            refuse(options.filesFrom);
        }
    }
    const std::vector<std::string> further =
        readPaths(isStandardInput ? std::cin : file, options.isZeroSeparated);
    // A folder can be opened, and shows what it is when it is read.
    if (isStandardInput ? std::ferror(stdin) != 0 : file.bad()) {
        refuse(isStandardInput ? "standard input" : options.filesFrom);
    }
    paths.insert(paths.end(), further.begin(), further.end());
    return paths;
}

} // namespace korlit::host
