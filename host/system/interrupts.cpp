#include "host/system/interrupts.h"

#include <csignal>

namespace korlit::host {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void noteInterrupt(int /*signal*/) {
    interrupted = 1;
}

void handleInterrupts(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    sigaction(SIGINT, &action, nullptr);
    sigaction(SIGTERM, &action, nullptr);
}

} // namespace

void watchInterrupts() {
    handleInterrupts(noteInterrupt);
}

bool isInterrupted() {
    return interrupted != 0;
}

void ignoreInterrupts() {
    handleInterrupts(SIG_IGN);
}

} // namespace korlit::host
