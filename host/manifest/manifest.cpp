#include "host/manifest/manifest.h"

#include "host/system/access.h"
#include "host/text/utf8.h"

#include <fstream>
#include <iostream>
#include <stdexcept>
#include <string_view>

namespace korlit::host {

namespace {

/// A kill leaves a line without its end, and whoever appends next ends it.
void readInto(Manifest& manifest, const std::string& path) {
    const std::size_t before = manifest.batches.size() + manifest.files.size();
    if (const std::string problem = openProblem(path); !problem.empty()) {
        throw std::runtime_error{path + ": " + problem};
    }
    std::ifstream in{path, std::ios::binary};
    std::size_t number = 0;
    for (std::string line; std::getline(in, line);) {
        ++number;
        if (auto record = recordIn(line)) {
            add(manifest, std::move(*record));
        } else {
            manifest.problems.push_back(path + ": line " + std::to_string(number) +
                                        " is cut or no record, and passed over");
        }
    }
    if (manifest.batches.size() + manifest.files.size() == before) {
        throw std::runtime_error{path + ": it is no manifest"};
    }
}

} // namespace

void add(Manifest& manifest, ManifestRecord record) {
    if (auto* batch = std::get_if<BatchRecord>(&record)) {
        manifest.batches.push_back(std::move(*batch));
    } else {
        manifest.files.push_back(std::move(std::get<FileRecord>(record)));
    }
}

int withManifests(const std::string& command, const std::vector<std::string>& paths,
                  const std::function<int(const Manifest&)>& use) {
    constexpr int unreadable = 2;
    const std::string start = "korlit " + command + ": ";
    Manifest manifest;
    try {
        for (const std::string& path : paths) {
            readInto(manifest, path);
        }
    } catch (const std::runtime_error& error) {
        std::cerr << start << printable(error.what()) << '\n';
        return unreadable;
    }
    for (const std::string& problem : manifest.problems) {
        std::cerr << start << printable(problem) << '\n';
    }
    return use(manifest);
}

std::string manifestProblem(const std::filesystem::path& file) {
    constexpr std::string_view recordStart = R"({"record":)";
    std::ifstream in{file, std::ios::binary};
    std::string start(recordStart.size(), '\0');
    in.read(start.data(), std::ssize(start));
    start.resize(static_cast<std::size_t>(in.gcount()));
    return recordStart.starts_with(start) ? "" : file.string() + " is there and is no manifest";
}

} // namespace korlit::host
