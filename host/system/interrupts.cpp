#include "host/system/interrupts.h"

#include <csignal>
#include <initializer_list>

namespace korlit::host {

namespace {

volatile std::sig_atomic_t interrupted = 0;

void noteInterrupt(int /*signal*/) {
    interrupted = 1;
}

void handleInterrupts(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    for (const int signal : {SIGINT, SIGTERM, SIGHUP}) {
        sigaction(signal, &action, nullptr);
    }
}

} // namespace

void watchInterrupts() {
    struct sigaction before {};
    sigaction(SIGHUP, nullptr, &before);
    handleInterrupts(noteInterrupt);
    // Who started the command to outlive the terminal (nohup) has said so.
    if (before.sa_handler == SIG_IGN) {
        sigaction(SIGHUP, &before, nullptr);
    }
}

bool isInterrupted() {
    return interrupted != 0;
}

void ignoreInterrupts() {
    handleInterrupts(SIG_IGN);
}

} // namespace korlit::host
