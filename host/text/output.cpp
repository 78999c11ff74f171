#include "host/text/output.h"

#include "host/system/terminal.h"
#include "host/text/utf8.h"

#include <iostream>
#include <stdexcept>

namespace korlit::host {

void printFailure(const std::string& file, const std::string& words) {
    std::cerr << "korlit: " << printable(file) << ": " << printable(words) << '\n';
}

void finishOutput() {
    if (std::cout.flush()) {
        return;
    }
    if (isOutputAbandoned()) {
        throw ReaderGone{};
    }
    throw std::runtime_error{"standard output could not be written"};
}

} // namespace korlit::host
