// Libraries loaded at run time.
#pragma once

namespace korlit {

struct LoadedLibrary;
/// A loaded library; null is none.
using LibraryHandle = LoadedLibrary*;

/// Loads "Name.dll" as libname.so, in lower case, by the rules of the system's loader, which look
/// into the folder of this library too. Null if it isn't found or can't be loaded.
LibraryHandle LoadLibraryA(const char* name);

/// The address of an entry point; null if the library has none of that name.
void* GetProcAddress(LibraryHandle library, const char* name);

/// Releases the library. Null is passed over.
void FreeLibrary(LibraryHandle library);

} // namespace korlit
