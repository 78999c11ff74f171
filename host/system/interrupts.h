// Interrupts (SIGINT, SIGTERM, SIGHUP), which would end the process.
#pragma once

namespace korlit::host {

/// From now on an interrupt is only noted.
void watchInterrupts();
bool isInterrupted();

/// From now on interrupts don't reach this process.
void ignoreInterrupts();

} // namespace korlit::host
