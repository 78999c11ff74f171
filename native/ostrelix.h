// The sibling library Ostrelix.dll, which knows the file versions of the native product. It is
// loaded for the length of a conversion; a host may bring its own.
#pragma once

#include "native/native_records.h"
#include "platform/cfile.h"
#include "platform/library.h"

#include <cstdint>

namespace korlit {

constexpr const char* ostrelixName = "Ostrelix.dll";

/// An entry point under the name that a 32-bit library decorates it with, and under its plain name.
struct EntryPointNames {
    const char* decorated;
    const char* plain;
};

constexpr EntryPointNames readChromHeaderNames{"_ReadChromHeader@12", "ReadChromHeader"};
constexpr EntryPointNames getSliDataOffSetNames{"_GetSliDataOffSet@8", "GetSliDataOffSet"};
constexpr EntryPointNames fileReadErrorNames{"_FileReadError@4", "FileReadError"};
constexpr EntryPointNames updateRepHeaderNames{"_UpdateRepHeader@12", "UpdateRepHeader"};

extern "C" {
/// Fills the header from the slice file at `path`, whatever the file's version.
using ReadChromHeaderEntry = std::int16_t (*)(const char* path, SliHeader* header, std::int32_t);
/// Gives the offset of the samples in a slice file of that version; answers 0 if it knows none.
using GetSliDataOffSetEntry = std::int32_t (*)(std::uint16_t formatVersion, std::uint32_t* offset);
/// Tells the user that the file can't be read.
using FileReadErrorEntry = std::int32_t (*)(const char* path);
/// Brings the header of an older report to the current form.
using UpdateRepHeaderEntry = std::int32_t (*)(CFile* report, RepHeader* header, std::int32_t);
}

/// Looks an entry point up under both of its names, the decorated one first; null if it has
/// neither.
template <typename Entry>
Entry entryPoint(LibraryHandle library, const EntryPointNames& names) {
    void* address = GetProcAddress(library, names.decorated);
    return reinterpret_cast<Entry>(address != nullptr ? address
                                                      : GetProcAddress(library, names.plain));
}

} // namespace korlit
