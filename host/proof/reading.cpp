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

std::vector<Reading> readingsOf(const std::string& file, FileKind kind) {
    switch (kind) {
    case FileKind::Merivolta:
        return {readPair(file)};
    case FileKind::Dunvale:
        return readRun(file);
    case FileKind::Andi:
    case FileKind::Unknown:
        break;
    }
    return {readAndi(file)};
}

} // namespace korlit::host
