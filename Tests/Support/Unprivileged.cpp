#include "Support/Unprivileged.h"

#include <grp.h>
#include <sys/wait.h>
#include <unistd.h>

namespace brimvale::testing {

int runUnprivileged(const std::function<int()> &body) {
    const pid_t child = fork();
    if (child == 0) {
        constexpr unsigned nobody = 65534;
        if (geteuid() == 0 && (setgroups(0, nullptr) != 0 || setgid(nobody) != 0 || setuid(nobody) != 0))
            _exit(120);
        _exit(body());
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

} // namespace brimvale::testing
