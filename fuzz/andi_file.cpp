// An ANDI file: loaded, written back, and made a pair that is then read in turn.
#include "andi/andi_reader.h"
#include "andi/andi_writer.h"
#include "native/native_state.h"
#include "fuzz/input.h"
#include "fuzz/promises.h"

using namespace korlit;
using namespace korlit::fuzz;

namespace {

template <typename Number>
void append(std::string& image, Number number) {
    image.append(reinterpret_cast<const char*>(&number), sizeof number);
}

void append(std::string& image, const AndiAttributeList& list) {
    append(image, list.Count);
    for (std::int32_t i = 0; i < list.Count; ++i) {
        const AndiAttribute& attribute = list.Items[i];
        image.append(attribute.Name) += '\0';
        append(image, attribute.Type);
        append(image, attribute.Count);
        image.append(static_cast<const char*>(attribute.Value),
                     static_cast<std::size_t>(attribute.Count) *
                         static_cast<std::size_t>(elementSize(attribute.Type)));
    }
}

void append(std::string& image, const AndiVariable& variable) {
    image.append(variable.Name) += '\0';
    append(image, variable.DimensionCount);
    append(image, variable.DimensionIds);
    append(image, variable.Attributes);
    append(image, variable.Type);
    append(image, variable.VSize);
    append(image, variable.IsRecord);
    append(image, variable.ElementCount);
    image.append(static_cast<const char*>(variable.Data),
                 static_cast<std::size_t>(GlobalSize(variable.DataHandle)));
}

/// All that a file holds, apart from its version and where it has its data.
std::string contentOf(const AndiFile& file) {
    std::string image;
    append(image, file.RecordCount);
    append(image, file.DimensionCount);
    for (std::int32_t i = 0; i < file.DimensionCount; ++i) {
        image.append(file.Dimensions[i].Name) += '\0';
        append(image, file.Dimensions[i].Length);
    }
    append(image, file.GlobalAttributes);
    append(image, file.VariableCount);
    for (std::int32_t i = 0; i < file.VariableCount; ++i) {
        append(image, file.Variables[i]);
    }
    return image;
}

/// The content of the file at `path`; empty if it can't be loaded.
std::string load(const std::string& path, AndiFile& file) {
    Message message{path};
    const int result = ReadAndiFile(path.c_str(), &file, message.span());
    if (result == 0) {
        requireNothingHeld();
        return {};
    }
    require(result == 1 && !message.isTold(), "a loaded file has no words");
    requireSound(file);
    return contentOf(file);
}

void writeBack(const std::string& path) {
    static const std::string copy = scratchPath("copy.cdf");
    AndiFile file{};
    const std::string content = load(path, file);
    if (content.empty()) {
        return;
    }
    Message message{copy};
    require(WriteAndiFile(copy.c_str(), &file, message.span()) == 1, "a loaded file is written");
    require(load(copy, file) == content, "a file that was written holds what was loaded");
    FreeAndiFile(&file);
    requireNothingHeld();
}

void makePair(const std::string& path) {
    static const std::string slice = scratchPath("run.sli");
    static const std::string report = scratchPath("run.rpt");
    const bool isMade =
        convertAsHost(Andi2Merivolta, path, "as it was", "Wrote Merivolta file " + slice);
    requireNothingHeld();
    if (!isMade) {
        return;
    }
    const std::uint32_t points = TheSliHeader.PointCount;
    const std::int16_t peaks = TheResHeader.PeakCount;
    require(std::filesystem::file_size(slice) == 2048 + std::uintmax_t{4} * points,
            "a slice file is as long as its points say");
    require(peaks >= 0 && peaks <= 570, "a report has at most 570 peaks");
    require(std::filesystem::file_size(report) == 352U + 116U * static_cast<unsigned>(peaks),
            "a report is as long as its peaks say");
    const bool isRead =
        convertAsHost(Merivolta2Andi, slice, "as it was", "Merivolta File converted to ");
    require(isRead == (points > 0), "a pair that was written is read, unless it has no points");
    FreeAndiFile(&TheAndiFile);
    requireNothingHeld();
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static ScratchFile file{"run.cdf"};
    file.fill(Input{data, size}.rest());
    writeBack(file.path());
    makePair(file.path());
    return 0;
}
