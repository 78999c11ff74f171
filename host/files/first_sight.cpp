#include "host/files/first_sight.h"

#include "host/files/diagnosis.h"
#include "host/files/recognise.h"

namespace korlit::host {

std::string flawAtFirstSight(const std::string& file, FileKind kind, const FileStart& start) {
    const Format& format = formatOf(kind);
    if (!isKnown(recognise(file, start))) {
        const std::string flaw = diagnosisOf(file, kind);
        return flaw.empty() ? std::string{"it is not of the kind "} + format.name : flaw;
    }
    for (const SourceFile& each : format.sourceFiles(file)) {
        const bool isItself = each.path == file;
        const std::string flaw =
            isItself ? format.flaw(file, start.fileSize) : diagnosisOf(each.path.string(), kind);
        if (!flaw.empty()) {
            return isItself ? flaw : each.path.filename().string() + ": " + flaw;
        }
    }
    return {};
}

} // namespace korlit::host
