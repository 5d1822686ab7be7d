#include "CommandLine/Terminal.h"

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <fcntl.h>
#include <poll.h>
#include <sys/ioctl.h>
#include <system_error>
#include <termios.h>
#include <unistd.h>
#include <utility>

namespace brimvale::testing {

namespace {

void demand(bool isDone, const char *what) {
    if (!isDone)
        throw std::system_error(errno, std::generic_category(), what);
}

/// As it is written, without a carriage return before every line feed.
void setUp(int device, int columns) {
    termios modes{};
    tcgetattr(device, &modes);
    modes.c_oflag &= ~static_cast<tcflag_t>(OPOST);
    tcsetattr(device, TCSANOW, &modes);
    winsize size{};
    size.ws_row = 24;
    size.ws_col = static_cast<unsigned short>(columns);
    ioctl(device, TIOCSWINSZ, &size);
}

} // namespace

Terminal::Terminal(int columns) : controller_(posix_openpt(O_RDWR | O_NOCTTY | O_CLOEXEC)) {
    demand(controller_ >= 0 && grantpt(controller_) == 0 && unlockpt(controller_) == 0, "posix_openpt");
    device_ = open(ptsname(controller_), O_RDWR | O_NOCTTY | O_CLOEXEC);
    demand(device_ >= 0, "ptsname");
    demand(pipe(end_.data()) == 0, "pipe");
    for (const int end : end_)
        fcntl(end, F_SETFD, FD_CLOEXEC);
    setUp(device_, columns);
    reader_ = std::thread([this] { read(); });
}

Terminal::~Terminal() {
    if (reader_.joinable()) {
        demand(write(end_[1], "", 1) == 1, "write");
        reader_.join();
    }
    if (device_ >= 0)
        close(device_);
    for (const int descriptor : {controller_, end_[0], end_[1]})
        close(descriptor);
}

void Terminal::type(std::string_view text) const {
    demand(write(controller_, text.data(), text.size()) == static_cast<ssize_t>(text.size()), "write");
}

void Terminal::answer(std::string_view question, std::string_view text) {
    constexpr std::chrono::seconds patience(20);
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, patience, [&] { return hasEnded_ || seen_.ends_with(question); });
        if (hasEnded_)
            return;
    }
    type(text);
}

std::string Terminal::written() {
    close(std::exchange(device_, -1));
    reader_.join();
    return seen_;
}

/// Reads until the other side is closed, or the object goes.
void Terminal::read() {
    std::array<pollfd, 2> sources{pollfd{.fd = controller_, .events = POLLIN, .revents = 0},
                                  pollfd{.fd = end_[0], .events = POLLIN, .revents = 0}};
    std::array<char, 4096> part{};
    ssize_t count = 0;
    do {
        poll(sources.data(), sources.size(), -1);
        if (sources[1].revents != 0)
            return;
        count = ::read(controller_, part.data(), part.size());
        const std::lock_guard lock(mutex_);
        seen_.append(part.data(), static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        hasEnded_ = count <= 0;
        changed_.notify_all();
    } while (count > 0);
}

Outcome runOnTerminal(const std::vector<std::string> &arguments, std::string_view answer,
                      std::string_view typedAhead) {
    Terminal terminal;
    terminal.type(typedAhead);
    std::thread user([&] {
        if (!answer.empty())
            terminal.answer(" [y/N] ", answer);
    });
    Outcome outcome = runProgram(arguments, [&] {
        dup2(terminal.device(), STDIN_FILENO);
        dup2(terminal.device(), STDERR_FILENO);
    });
    user.join();
    outcome.err = terminal.written();
    return outcome;
}

} // namespace brimvale::testing
