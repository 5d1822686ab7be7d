#include "Platform/Posix/ToolStart.h"

#include "Platform/Posix/Spawn.h"

extern char **environ;

namespace brimvale {

// Otherwise the tool would inherit the signals that this program or thread ignores or blocks.
ToolStart::ToolStart(const sigset_t &unignored, short flags) {
    sigset_t none;
    sigemptyset(&none);
    note(posix_spawn_file_actions_init(&streams_));
    note(posix_spawnattr_init(&attributes_));
    note(posix_spawnattr_setsigmask(&attributes_, &none));
    note(posix_spawnattr_setsigdefault(&attributes_, &unignored));
    const int all = POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | inheritanceFlags() | flags;
    note(posix_spawnattr_setflags(&attributes_, static_cast<short>(all)));
}

ToolStart::~ToolStart() {
    posix_spawnattr_destroy(&attributes_);
    posix_spawn_file_actions_destroy(&streams_);
}

void ToolStart::copy(int descriptor, int stream) {
    note(posix_spawn_file_actions_adddup2(&streams_, descriptor, stream));
}

void ToolStart::discard(int stream, int mode) {
    note(posix_spawn_file_actions_addopen(&streams_, stream, "/dev/null", mode, 0));
}

int ToolStart::run(const std::string &executable, const std::vector<std::string> &arguments,
                   pid_t &child) const {
    if (error_ != 0)
        return error_;
    std::vector<char *> words;
    words.push_back(const_cast<char *>(executable.c_str()));
    for (const std::string &argument : arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    return posix_spawn(&child, executable.c_str(), &streams_, &attributes_, words.data(), environ);
}

void ToolStart::note(int error) {
    if (error_ == 0)
        error_ = error;
}

sigset_t onlySignal(int signal) {
    sigset_t set;
    sigemptyset(&set);
    sigaddset(&set, signal);
    return set;
}

sigset_t allSignals() {
    sigset_t set;
    sigfillset(&set);
    return set;
}

} // namespace brimvale
