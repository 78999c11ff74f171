// call_export LIBRARY EXPORT PATH: calls an export as a host does and prints the outcome.
#include "tests/support/host_call.h"

#include <dlfcn.h>

#include <iostream>

int main(int count, char** arguments) {
    void* library = count == 4 ? dlopen(arguments[1], RTLD_NOW) : nullptr;
    if (library == nullptr) {
        return 2;
    }
    const auto function = reinterpret_cast<korlit::test::Export>(dlsym(library, arguments[2]));
    std::cout << korlit::test::callAsHost(function, arguments[3]);
    return 0;
}
