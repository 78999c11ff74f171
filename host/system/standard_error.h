// Catches what goes to standard error, where the message boxes show.
#pragma once

#include <cstdint>
#include <string>

namespace korlit::host {

/// While this lives, what the process writes to standard error is kept here instead. Where the
/// system can't do that, it goes where it always goes.
class StandardErrorCapture {
  public:
    StandardErrorCapture();
    StandardErrorCapture(const StandardErrorCapture&) = delete;
    StandardErrorCapture& operator=(const StandardErrorCapture&) = delete;
    /// Gives standard error back, unless another of these still has it.
    ~StandardErrorCapture();

    /// What was written so far.
    std::string text() const;

  private:
    std::int64_t begin = 0;
};

} // namespace korlit::host
