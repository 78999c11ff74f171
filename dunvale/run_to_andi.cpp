#include "dunvale/run_to_andi.h"

#include "andi/andi_writer.h"
#include "datetime/serial_date.h"
#include "dunvale/channel_to_andi.h"
#include "dunvale/run_file.h"
#include "platform/cfile.h"
#include "platform/text.h"

#include <string>
#include <string_view>

namespace korlit {

namespace {

constexpr const char* noExtensionText = "Error:\r\nNo Extension found in File\r\n\"%s\"";
constexpr const char* notOpenedText = "Unable to open\r\n\"%s\"";

/// Characters of an extension with its dot; no other length is taken.
constexpr std::size_t extensionLength = 4;

/// What one conversion holds. At its end the ANDI file is released first, then the run file closed,
/// then the run released.
struct RunConversion {
    const char* path;
    std::span<char> message;
    std::string outputPath; ///< empty for a name of each channel's own
    DunvaleRun run;
    CFile file;
    AndiFile andiFile{};

    ~RunConversion() { FreeAndiFile(&andiFile); }
};

/// Tells the reason; answers false.
bool fail(std::span<char> message, const char* format, const char* path) {
    formatText(message, format, path);
    return false;
}

bool hasExtension(std::string_view path) {
    return path.size() >= extensionLength && path[path.size() - extensionLength] == '.';
}

RunOrigin originOf(const RunConversion& conversion) {
    SerialStamp start{.Serial = conversion.run.info.StartSerial, .Fields = {}};
    DecodeSerialDate(&start);
    RunOrigin origin{
        .runFile = conversion.path, .stamp = {}, .injectionTime = InjectionTime(start.Fields)};
    // Stays empty where the date service has no such date.
    FormatAndiStamp(&start.Fields, origin.stamp.data());
    return origin;
}

std::string outputName(const RunConversion& conversion, int channel) {
    if (!conversion.outputPath.empty()) {
        return conversion.outputPath;
    }
    std::string name{conversion.path};
    name.resize(name.size() - extensionLength);
    return name + std::to_string(channel + 1) + ".cdf";
}

bool convertChannels(RunConversion& conversion) {
    const RunOrigin origin = originOf(conversion);
    bool areWritten = true;
    for (int channel = 0; channel < conversion.run.channelCount; ++channel) {
        if (!MapChannelToAndi(conversion.run, channel, origin, &conversion.andiFile,
                              conversion.message)) {
            return false;
        }
        areWritten &= WriteAndiFile(outputName(conversion, channel).c_str(), &conversion.andiFile,
                                    conversion.message) == 1;
        FreeAndiFile(&conversion.andiFile);
    }
    return areWritten;
}

} // namespace

bool RunToAndi(const char* path, std::span<char> message) {
    RunConversion conversion{.path = path,
                             .message = message,
                             .outputPath = message.empty() ? "" : message.data(),
                             .run = {},
                             .file = {}};
    if (!hasExtension(conversion.path)) {
        return fail(message, noExtensionText, path);
    }
    if (!conversion.file.Open(path)) {
        return fail(message, notOpenedText, path);
    }
    if (ReadRun(path, conversion.file, conversion.run, message) != runIsRead) {
        return false;
    }
    return convertChannels(conversion);
}

} // namespace korlit
