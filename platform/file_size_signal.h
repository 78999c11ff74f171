// The signal of a process that writes beyond the largest file that it may have. Its default is to
// end the process, which would be the host.
#pragma once

#include <csignal>

namespace korlit {

/// Keeps that signal from this thread for as long as it lives. A write that goes too far fails
/// instead, as one to a full disk does.
class FileSizeSignalHeld {
  public:
    FileSizeSignalHeld();
    FileSizeSignalHeld(const FileSizeSignalHeld&) = delete;
    FileSizeSignalHeld& operator=(const FileSizeSignalHeld&) = delete;
    ~FileSizeSignalHeld();

  private:
    sigset_t before{};
};

} // namespace korlit
