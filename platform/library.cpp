#include "platform/library.h"

#include "platform/faults.h"
#include "platform/text.h"

#include <dlfcn.h>

#include <string>
#include <string_view>

namespace korlit {

namespace {

std::string fileNameOf(std::string_view name) {
    std::string stem{name.substr(0, name.rfind('.'))};
    _strlwr(stem.data());
    return "lib" + stem + ".so";
}

} // namespace

LibraryHandle LoadLibraryA(const char* name) {
    if (faultAt(FaultPoint::Load) != FaultKind::None) {
        return nullptr;
    }
    auto* library =
        static_cast<LibraryHandle>(dlopen(fileNameOf(name).c_str(), RTLD_NOW | RTLD_LOCAL));
    if (library != nullptr) {
        countHeldLibraries(+1);
    }
    return library;
}

void* GetProcAddress(LibraryHandle library, const char* name) {
    return dlsym(library, name);
}

void FreeLibrary(LibraryHandle library) {
    if (library != nullptr) {
        dlclose(library);
        countHeldLibraries(-1);
    }
}

} // namespace korlit
