#include "host/system/machine.h"

#include <unistd.h>

#include <array>

namespace korlit::host {

std::string machineName() {
    std::array<char, 256> name{};
    return gethostname(name.data(), name.size() - 1) == 0 ? name.data() : "";
}

} // namespace korlit::host
