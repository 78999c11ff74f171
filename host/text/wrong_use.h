// Wrong use of a command, which is not the fault of any file.
#pragma once

#include <stdexcept>
#include <string>

namespace korlit::host {

/// Thrown for arguments that can't be followed together, with the words for the user.
class WrongUse : public std::runtime_error {
  public:
    explicit WrongUse(const std::string& words) : std::runtime_error{words} {}
};

} // namespace korlit::host
