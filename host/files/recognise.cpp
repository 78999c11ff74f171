#include "host/files/recognise.h"

#include "host/files/extensions.h"

#include <algorithm>

namespace korlit::host {

FileKind recognise(const std::string& file) {
    const FileStart start = startOf(file);
    for (const Format& format : knownFormats()) {
        const bool isForAnyName = format.extension == nullptr;
        const bool hasItsName = !isForAnyName && hasExtension(file, format.extension);
        if ((isForAnyName || hasItsName) && format.isIn(start)) {
            return format.kind;
        }
        if (hasItsName) {
            break;
        }
    }
    return FileKind::Unknown;
}

FileKind kindToConvert(const std::string& file) {
    const FileKind kind = recognise(file);
    if (isKnown(kind)) {
        return kind;
    }
    const auto named = std::ranges::find_if(knownFormats(), [&](const Format& format) {
        return format.extension != nullptr && hasExtension(file, format.extension);
    });
    return named == knownFormats().end() ? FileKind::Andi : named->kind;
}

} // namespace korlit::host
