#include "CommandLine/Interruption.h"

#include <array>
#include <atomic>
#include <csignal>
#include <pthread.h>
#include <thread>
#include <utility>

namespace brimvale::commandLine {

namespace {

constexpr std::array caughtSignals = {SIGINT, SIGTERM};

std::atomic<const StopFlag *> interrupted = nullptr;
// A signal may be delivered to any thread, so a handler may run while its flag goes away.
std::atomic<int> runningHandlers = 0;
// A handler may only use lock-free atomics and async-signal-safe functions.
static_assert(std::atomic<const StopFlag *>::is_always_lock_free && std::atomic<int>::is_always_lock_free &&
              std::atomic<bool>::is_always_lock_free);

void replaceHandlers(void (*handler)(int)) {
    struct sigaction action {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    for (const int signal : caughtSignals) {
        struct sigaction current {};
        if (sigaction(signal, nullptr, &current) == 0 && current.sa_handler != SIG_IGN)
            sigaction(signal, &action, nullptr);
    }
}

extern "C" void interrupt(int) {
    ++runningHandlers;
    replaceHandlers(SIG_DFL);
    if (const StopFlag *flag = interrupted.load())
        flag->set();
    --runningHandlers;
}

} // namespace

Interruption::Interruption(StopFlag flag) : flag_(std::move(flag)) {
    interrupted = &flag_;
    replaceHandlers(interrupt);
    // A program inherits blocked signals from its parent process. Then it could not be stopped.
    sigset_t caught{};
    sigemptyset(&caught);
    for (const int signal : caughtSignals)
        sigaddset(&caught, signal);
    pthread_sigmask(SIG_UNBLOCK, &caught, nullptr);
}

Interruption::~Interruption() {
    replaceHandlers(SIG_DFL);
    interrupted = nullptr;
    while (runningHandlers.load() != 0)
        std::this_thread::yield();
}

} // namespace brimvale::commandLine
