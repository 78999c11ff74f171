#include "host/files/path_list.h"

#include "host/text/wrong_use.h"

#include <cerrno>
#include <cstdio>
#include <fstream>
#include <iostream>
#include <system_error>

namespace korlit::host {

namespace {

std::vector<std::string> readPaths(std::istream& in, bool isZeroSeparated) {
    std::vector<std::string> paths;
    for (std::string path; std::getline(in, path, isZeroSeparated ? '\0' : '\n');) {
        if (!isZeroSeparated && path.ends_with('\r')) {
            path.pop_back();
        }
        if (path.find('\0') != std::string::npos) {
            throw WrongUse{"--files-from: there are names that end with NUL: say -0"};
        }
        if (!path.empty()) {
            paths.push_back(path);
        }
    }
    return paths;
}

[[noreturn]] void refuse(const std::string& list) {
    throw WrongUse{"Can't read " + list + ": " + std::generic_category().message(errno)};
}

} // namespace

std::vector<std::string> pathsOf(const Inputs& inputs) {
    std::vector<std::string> paths = inputs.paths;
    if (inputs.filesFrom.empty()) {
        return paths;
    }
    const bool isStandardInput = inputs.filesFrom == "-";
    std::ifstream file;
    if (!isStandardInput) {
        file.open(inputs.filesFrom);
        if (!file) {
            refuse(inputs.filesFrom);
        }
    }
    const std::vector<std::string> further =
        readPaths(isStandardInput ? std::cin : file, inputs.isZeroSeparated);
    // A folder can be opened, and shows what it is when it is read.
    if (isStandardInput ? std::ferror(stdin) != 0 : file.bad()) {
        refuse(isStandardInput ? "standard input" : inputs.filesFrom);
    }
    paths.insert(paths.end(), further.begin(), further.end());
    return paths;
}

} // namespace korlit::host
