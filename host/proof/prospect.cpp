#include "host/proof/prospect.h"

namespace korlit::host {

namespace {

Expectations expectedOf(const Reading& source, const std::string& file) {
    switch (source.kind) {
    case FileKind::Merivolta:
        return expectedOfAndi(source, file);
    case FileKind::Dunvale:
        return expectedOfChannel(source, file);
    case FileKind::Andi:
    case FileKind::Unknown:
        break;
    }
    return expectedOfPair(source);
}

} // namespace

Prospect prospectOf(const std::string& source, FileKind kind) {
    Prospect prospect{.sources = readingsOf(source, kind), .expected = {}};
    for (const Reading& each : prospect.sources) {
        prospect.expected.push_back(expectedOf(each, source));
    }
    return prospect;
}

} // namespace korlit::host
