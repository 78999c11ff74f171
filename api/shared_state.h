// The life of what the conversions share: who releases it, and when.
#pragma once

namespace korlit {

/// Releases what the last conversion left in TheAndiFile. Every conversion that uses it begins with
/// this; behind the last one it happens when the library is unloaded.
void releaseSharedState();

} // namespace korlit
