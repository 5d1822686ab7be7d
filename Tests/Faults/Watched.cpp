#include "Faults/Watched.h"

#include "Platform/Posix/Descriptor.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstddef>
#include <fcntl.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <optional>
#include <poll.h>
#include <pty.h>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <sys/wait.h>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace brimvale::faults {

namespace {

using Clock = std::chrono::steady_clock;

constexpr std::chrono::seconds patience(60); // sanitizers are slow, and so are busy machines
constexpr int listener = 200;                ///< the descriptor of a child by which it is watched

std::string programPath; // NOLINT: there is one

void require(bool isDone, const char *what) {
    if (!isDone)
        throw std::system_error(errno, std::generic_category(), what);
}

/// Has the calls of this process, and of all that it starts, wait for the reader of its descriptor.
bool watchOwnCalls() {
    const std::vector<CallKind> &kinds = callKinds();
    std::vector<sock_filter> filter = {BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr))};
    for (std::size_t i = 0; i < kinds.size(); ++i)
        filter.push_back(BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, static_cast<unsigned>(kinds[i].number),
                                  static_cast<unsigned char>(kinds.size() - i), 0));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW));
    filter.push_back(BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_USER_NOTIF));
    sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0)
        return false;
    const long made =
        syscall(SYS_seccomp, SECCOMP_SET_MODE_FILTER, SECCOMP_FILTER_FLAG_NEW_LISTENER, &program);
    return made >= 0 && dup3(static_cast<int>(made), listener, O_CLOEXEC) == listener;
}

/// The descriptor by which a child is watched, once it has it. Not open where it ends without.
Descriptor listenerOf(pid_t child) {
    const Descriptor process(static_cast<int>(syscall(SYS_pidfd_open, child, 0)));
    while (true) {
        Descriptor calls(static_cast<int>(syscall(SYS_pidfd_getfd, process.number(), listener, 0)));
        if (calls.isOpen() || errno != EBADF)
            return calls;
        std::this_thread::yield();
    }
}

/// Takes the place of a child of this process. `terminal` is negative where it has none.
[[noreturn]] void become(const Program &program, int terminal, int output) {
    std::vector<char *> words{programPath.data()};
    for (const std::string &argument : program.arguments)
        words.push_back(const_cast<char *>(argument.c_str()));
    words.push_back(nullptr);
    setpgid(0, 0);
    dup2(terminal >= 0 ? terminal : open("/dev/null", O_RDONLY | O_CLOEXEC), STDIN_FILENO);
    dup2(output, STDOUT_FILENO);
    dup2(terminal >= 0 ? terminal : output, STDERR_FILENO);
    if (!program.onCall || watchOwnCalls())
        execv(programPath.c_str(), words.data());
    _exit(127);
}

/// One run of a program, seen from outside.
class Watch {
public:
    explicit Watch(const Program &program);
    Ending end();

private:
    bool isOver();
    void answerCall();
    void readTerminal();

    const Program &program_;
    Descriptor terminal_; ///< the end that the user types on
    Descriptor output_{memfd_create("output", MFD_CLOEXEC)};
    Descriptor calls_;
    pid_t child_ = -1;
    std::optional<int> status_;
    bool isAnswered_ = false;
    std::string spoken_; ///< on the terminal
};

Watch::Watch(const Program &program) : program_(program) {
    int ours = -1, its = -1;
    if (program.onQuestion)
        require(openpty(&ours, &its, nullptr, nullptr, nullptr) == 0, "openpty");
    terminal_ = Descriptor(ours);
    const Descriptor device(its);
    for (const int end : {ours, its})
        fcntl(end, F_SETFD, FD_CLOEXEC);
    child_ = fork();
    require(child_ >= 0, "fork");
    if (child_ == 0)
        become(program, its, output_.number());
    if (program.onCall)
        calls_ = listenerOf(child_);
}

/// Whether the program and all that it has started have ended.
bool Watch::isOver() {
    int status = 0;
    if (!status_ && waitpid(child_, &status, WNOHANG) == child_)
        status_ = WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
    return status_ && !calls_.isOpen() && !terminal_.isOpen();
}

void Watch::answerCall() {
    seccomp_notif notice{};
    if (ioctl(calls_.number(), SECCOMP_IOCTL_NOTIF_RECV, &notice) != 0)
        return; // the caller has been killed
    seccomp_notif_resp reply{notice.id, 0, 0, SECCOMP_USER_NOTIF_FLAG_CONTINUE};
    if (const CallKind *kind = callKind(notice.data.nr)) {
        Call call{*kind, {}, static_cast<pid_t>(notice.pid)};
        std::copy(std::begin(notice.data.args), std::end(notice.data.args), call.arguments.begin());
        const Answer answer = program_.onCall(call);
        if (answer.what == Answer::kill)
            ::kill(call.process, SIGKILL);
        if (answer.what == Answer::fail)
            reply = {notice.id, 0, -answer.error, 0};
    }
    ioctl(calls_.number(), SECCOMP_IOCTL_NOTIF_SEND, &reply);
}

void Watch::readTerminal() {
    std::array<char, 4096> part{};
    const ssize_t count = read(terminal_.number(), part.data(), part.size());
    if (count <= 0) // all that had it open have ended
        return terminal_.close();
    spoken_.append(part.data(), static_cast<std::size_t>(count));
    if (isAnswered_ || spoken_.find("[y/N] ") == std::string::npos)
        return;
    isAnswered_ = true;
    program_.onQuestion();
    static_cast<void>(write(terminal_.number(), "y\n", 2));
}

Ending Watch::end() {
    const Clock::time_point latest = Clock::now() + patience;
    Ending ending;
    while (!isOver()) {
        std::array<pollfd, 2> ends = {{{calls_.number(), POLLIN, 0}, {terminal_.number(), POLLIN, 0}}};
        // Without calls and a terminal, nothing but its status tells of its end.
        poll(ends.data(), ends.size(), calls_.isOpen() || terminal_.isOpen() ? 100 : 1);
        if ((ends[0].revents & POLLIN) != 0)
            answerCall();
        else if (ends[0].revents != 0)
            calls_.close();
        if (ends[1].revents != 0)
            readTerminal();
        if (!ending.isHanging && Clock::now() > latest) {
            ending.isHanging = true;
            ::kill(-child_, SIGKILL);
        }
    }
    ending.status = *status_;
    ending.words.resize(static_cast<std::size_t>(lseek(output_.number(), 0, SEEK_END)));
    static_cast<void>(pread(output_.number(), ending.words.data(), ending.words.size(), 0));
    ending.words += spoken_;
    return ending;
}

} // namespace

std::string Call::path() const {
    if (kind.path < 0)
        return {};
    constexpr std::uint64_t page = 4096; // what comes after may not be mapped
    std::array<char, 2 * page> text{};
    const std::uint64_t start = arguments.at(static_cast<std::size_t>(kind.path));
    const std::uint64_t first = page - start % page;
    iovec here{text.data(), text.size() - 1};
    std::array<iovec, 2> there = {
        {{reinterpret_cast<void *>(start), first}, {reinterpret_cast<void *>(start + first), page - 1}}};
    if (start == 0 || process_vm_readv(process, &here, 1, there.data(), there.size(), 0) <= 0)
        return {};
    return text.data();
}

bool canWatchCalls() {
    bool isSeen = false;
    const auto see = [&](const Call &) {
        isSeen = true;
        return Answer();
    };
    return run({{"--version"}, see}).status == 0 && isSeen;
}

void useProgram(const std::string &path) {
    programPath = path;
}

Ending run(const Program &program) {
    return Watch(program).end();
}

} // namespace brimvale::faults
