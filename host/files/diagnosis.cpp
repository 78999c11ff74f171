#include "host/files/diagnosis.h"

#include "host/system/access.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <fstream>
#include <iterator>
#include <string_view>

namespace korlit::host {

namespace {

namespace fs = std::filesystem;
using namespace std::string_view_literals;

struct Signature {
    std::string_view bytes;
    const char* words;
};

/// Files that are often taken for one of ours.
constexpr std::array<Signature, 9> signatures{{
    {"CDF\x02"sv, "netCDF with 64-bit offsets: nccopy -k classic makes a classic file of it"},
    {"CDF\x05"sv, "CDF-5: nccopy -k classic makes a classic file of it"},
    {"\x89HDF\r\n\x1A\n"sv, "netCDF-4: nccopy -k classic makes a classic file of it"},
    {"\x1F\x8B"sv, "compressed with gzip: unpack it first"},
    {"BZh"sv, "compressed with bzip2: unpack it first"},
    {"\xFD\x37zXZ"sv, "compressed with xz: unpack it first"},
    {"\x28\xB5\x2F\xFD"sv, "compressed with zstd: unpack it first"},
    {"PK\x03\x04"sv, "a ZIP archive: unpack it first"},
    {"7z\xBC\xAF"sv, "a 7z archive: unpack it first"},
}};

bool isAllZeros(const std::string& file) {
    std::ifstream in{file, std::ios::binary};
    return std::all_of(std::istreambuf_iterator<char>{in}, {},
                       [](char each) { return each == '\0'; });
}

std::string lookInside(const std::string& file, FileKind kind) {
    const auto size = static_cast<std::int64_t>(fs::file_size(file));
    if (size == 0) {
        return "the file is empty";
    }
    std::string start(16, '\0');
    std::ifstream{file, std::ios::binary}.read(start.data(), std::ssize(start));
    const auto* const known = std::ranges::find_if(
        signatures, [&](const Signature& each) { return start.starts_with(each.bytes); });
    if (known != signatures.end()) {
        return known->words;
    }
    if (isAllZeros(file)) {
        return "all its bytes are zero";
    }
    return formatOf(kind).flaw(file, size);
}

std::string withSeen(const std::string& reason, const std::string& seen) {
    return seen.empty() ? reason : reason + " (" + seen + ")";
}

} // namespace

std::string diagnosisOf(const std::string& file, FileKind kind) {
    const std::string problem = openProblem(file);
    return problem.empty() ? lookInside(file, kind) : problem;
}

std::string withDiagnosis(const std::string& reason, const std::string& file, FileKind kind) {
    return withSeen(reason, diagnosisOf(file, kind));
}

std::string withDiagnosis(const std::string& reason, const Plan& plan, std::error_code error) {
    if (error) {
        return withSeen(reason, error.message());
    }
    for (const StagedFile& file : plan.sources) {
        const std::string seen = diagnosisOf(file.path.string(), plan.kind);
        if (!seen.empty()) {
            const bool isNamed = file.path == plan.source;
            return withSeen(reason, isNamed ? seen : file.path.filename().string() + ": " + seen);
        }
    }
    return reason;
}

} // namespace korlit::host
