#include "host/files/recognise.h"

#include "host/files/extensions.h"

#include <algorithm>

namespace korlit::host {

FileKind recognise(const std::string& file) {
    return recognise(file, startOf(file));
}

FileKind recognise(const std::string& file, const FileStart& start) {
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

FileKind kindFound(const std::string& file, const FileStart& start) {
    const FileKind kind = recognise(file, start);
    if (isKnown(kind)) {
        return kind;
    }
    const auto named = std::ranges::find_if(knownFormats(), [&](const Format& format) {
        return hasExtension(file, format.usualExtension);
    });
    return named == knownFormats().end() ? FileKind::Unknown : named->kind;
}

FileKind kindToConvert(const std::string& file, const FileStart& start) {
    const FileKind kind = kindFound(file, start);
    return isKnown(kind) ? kind : FileKind::Andi;
}

bool hasNameOfData(const std::string& file) {
    return std::ranges::any_of(knownFormats(), [&](const Format& format) {
        return hasExtension(file, format.usualExtension) ||
               (format.companionExtension != nullptr &&
                hasExtension(file, format.companionExtension));
    });
}

} // namespace korlit::host
