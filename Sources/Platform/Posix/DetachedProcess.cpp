#include "Platform/DetachedProcess.h"

#include "Platform/Posix/Spawn.h"

#include <csignal>
#include <fcntl.h>
#include <spawn.h>
#include <unistd.h>

extern char **environ;

namespace brimvale {

namespace {

/// A session of its own, no stream, and no signal blocked or ignored.
int prepare(posix_spawn_file_actions_t &streams, posix_spawnattr_t &attributes) {
    sigset_t none;
    sigset_t all;
    sigemptyset(&none);
    sigfillset(&all);
    const int flags =
        POSIX_SPAWN_SETSID | POSIX_SPAWN_SETSIGMASK | POSIX_SPAWN_SETSIGDEF | inheritanceFlags();
    for (const int error :
         {posix_spawn_file_actions_addopen(&streams, STDIN_FILENO, "/dev/null", O_RDONLY, 0),
          posix_spawn_file_actions_addopen(&streams, STDOUT_FILENO, "/dev/null", O_WRONLY, 0),
          posix_spawn_file_actions_addopen(&streams, STDERR_FILENO, "/dev/null", O_WRONLY, 0),
          posix_spawnattr_setsigmask(&attributes, &none), posix_spawnattr_setsigdefault(&attributes, &all),
          posix_spawnattr_setflags(&attributes, static_cast<short>(flags))})
        if (error != 0)
            return error;
    return 0;
}

} // namespace

std::optional<FileError> startDetached(const std::string &executable,
                                       const std::vector<std::string> &arguments) {
    std::vector<char *> argumentList;
    argumentList.push_back(const_cast<char *>(executable.c_str()));
    for (const std::string &argument : arguments)
        argumentList.push_back(const_cast<char *>(argument.c_str()));
    argumentList.push_back(nullptr);

    posix_spawn_file_actions_t streams{};
    posix_spawnattr_t attributes{};
    posix_spawn_file_actions_init(&streams);
    posix_spawnattr_init(&attributes);
    pid_t child = 0;
    int error = prepare(streams, attributes);
    if (error == 0)
        error = posix_spawn(&child, executable.c_str(), &streams, &attributes, argumentList.data(), environ);
    posix_spawnattr_destroy(&attributes);
    posix_spawn_file_actions_destroy(&streams);
    return error == 0 ? std::nullopt : std::optional(FileError::posix(error));
}

} // namespace brimvale
