// Interrupts (SIGINT, SIGTERM, SIGHUP), which would end the process.
#pragma once

namespace korlit::host {

/// The exit status of a command that one has ended.
constexpr int interruptedStatus = 130;

/// From now on an interrupt is only noted.
void watchInterrupts();
bool isInterrupted();

/// From now on interrupts don't reach this process.
void ignoreInterrupts();

} // namespace korlit::host
