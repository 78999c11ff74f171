#include "host/proof/reading.h"

#include <bit>
#include <cstdint>

namespace korlit::host {

bool areSame(const Value& a, const Value& b) {
    const auto* number = std::get_if<double>(&a);
    const auto* other = std::get_if<double>(&b);
    return number != nullptr && other != nullptr
               ? std::bit_cast<std::uint64_t>(*number) == std::bit_cast<std::uint64_t>(*other)
               : a == b;
}

std::vector<Reading> readingsOf(const std::string& file, FileKind kind, Layout layout) {
    if (kind == FileKind::Dunvale) {
        return readRun(file);
    }
    std::vector<Reading> one;
    one.push_back(kind == FileKind::Merivolta ? readPair(file) : readAndi(file, layout));
    return one;
}

} // namespace korlit::host
