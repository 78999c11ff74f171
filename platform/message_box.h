// The message box, for a host that may have no window system: one line on standard error.
#pragma once

namespace korlit {

struct Window;

/// The window that a box would belong to; none on this platform.
Window* GetActiveWindow();

/// Shows "title: text" as one line on standard error. Never waits for a reader, so that it can't
/// hold the host up: where the line doesn't go through at once it is dropped.
void MessageBoxA(Window* owner, const char* text, const char* title);

} // namespace korlit
