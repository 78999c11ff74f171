// The cases of conversions.txt, pairs.txt and runs.txt, and the files that they start from.
#pragma once

#include "tests/support/andi_text.h"
#include "tests/support/image.h"
#include "tests/support/run_text.h"

#include <algorithm>
#include <fstream>
#include <map>
#include <string>
#include <vector>

namespace korlit::test {

struct Case {
    std::map<std::string, std::string> words; ///< what stands behind each key
    std::vector<std::string> changes, contents, dumps;

    std::string get(const char* key, const std::string& otherwise) const {
        return words.contains(key) ? words.at(key) : otherwise;
    }
};

inline std::vector<Case> readCases(const std::string& table) {
    std::ifstream in{table};
    std::vector<Case> cases;
    for (std::string line; std::getline(in, line);) {
        const std::string key = line.substr(0, line.find(' '));
        if (key == "==") {
            cases.emplace_back();
        }
        if (key == "in") {
            cases.back().changes.push_back(line.substr(3));
        } else if (key.starts_with("dumps")) {
            cases.back().dumps.push_back(line.substr(5));
        } else if (key == "sli" || key == "rpt" || key == "cdf") {
            cases.back().contents.push_back(line);
        } else if (!key.empty() && key.front() != '#') {
            cases.back().words[key] = line.substr(std::min(key.size() + 1, line.size()));
        }
    }
    return cases;
}

/// The ANDI file of a case of conversions.txt.
inline std::string andiFileOf(const Case& each) {
    AndiText file;
    file = {each.get("start", file.start),           each.get("records", file.records),
            each.get("dimensions", file.dimensions), each.get("globals", file.globals),
            each.get("variables", file.variables),   each.get("data", file.data)};
    return file.bytes();
}

/// The run file of a case of runs.txt.
inline std::string runFileOf(const Case& each) {
    RunText file;
    file = {each.get("version", file.version),     each.get("info", file.info),
            each.get("count", file.count),         each.get("signal", file.signal),
            each.get("results", file.results),     each.get("events", file.events),
            each.get("extra", file.extra),         each.get("anno", file.anno),
            each.get("timetable", file.timeTable), each.get("lines", file.lines),
            each.get("windows", file.windows),     std::stoi(each.get("channels", "1"))};
    return file.bytes();
}

/// One file of the pair of a case of pairs.txt, "sli" or "rpt", from its image without the changes,
/// which are lines such as "sli size 1856" or "rpt 0 15 00".
inline std::string pairFileOf(const Case& each, const std::string& extension, std::string file) {
    for (const std::string& line : each.changes) {
        const std::size_t blank = line.find(' ', 4);
        const std::string place = line.substr(4, blank - 4);
        const std::string rest = line.substr(blank + 1);
        if (!line.starts_with(extension)) {
            continue;
        }
        if (place == "size") {
            file.resize(std::stoul(rest));
        } else {
            const std::string bytes = parseBytes(rest);
            file.replace(std::stoul(place), bytes.size(), bytes);
        }
    }
    return file;
}

} // namespace korlit::test
