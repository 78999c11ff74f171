// The style and the script of a page, which stand in files of their own.
#pragma once

namespace korlit::host {

extern const char* const pageStyle;
extern const char* const pageScript;

} // namespace korlit::host
