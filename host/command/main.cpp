#include "host/command/options.h"

#include <exception>
#include <iostream>

int main(int argumentCount, char** arguments) try {
    return korlit::host::runCommand(argumentCount, arguments);
} catch (const std::exception& error) {
    std::cerr << "korlit: " << error.what() << '\n';
    return 1;
}
