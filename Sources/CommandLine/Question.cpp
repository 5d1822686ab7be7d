#include "CommandLine/Question.h"

#include "Base/Text.h"

#include <cerrno>
#include <fcntl.h>
#include <optional>
#include <string>
#include <termios.h>
#include <unistd.h>

namespace brimvale::commandLine {

namespace {

/// The descriptors of a terminal, open as long as the object lives.
class OpenTerminal {
public:
    explicit OpenTerminal(AskedOn terminal) {
        if (terminal == AskedOn::controllingTerminal)
            own_ = input_ = output_ = open("/dev/tty", O_RDWR | O_CLOEXEC);
    }
    ~OpenTerminal() {
        if (own_ >= 0)
            close(own_);
    }
    OpenTerminal(const OpenTerminal &) = delete;
    OpenTerminal &operator=(const OpenTerminal &) = delete;

    [[nodiscard]] bool isUsable() const { return isatty(input_) == 1 && isatty(output_) == 1; }

    void dropTypedAhead() const { tcflush(input_, TCIFLUSH); }

    void write(std::string_view text) const {
        while (!text.empty()) {
            const ssize_t count = ::write(output_, text.data(), text.size());
            if (count >= 0)
                text.remove_prefix(static_cast<std::size_t>(count));
            else if (errno != EINTR)
                return;
        }
    }

    /// Nothing at the end of the input.
    [[nodiscard]] std::optional<char> read() const {
        char byte = 0;
        ssize_t count = 0;
        while ((count = ::read(input_, &byte, 1)) < 0 && errno == EINTR) {
        }
        return count == 1 ? std::optional(byte) : std::nullopt;
    }

private:
    int own_ = -1;
    int input_ = STDIN_FILENO;
    int output_ = STDERR_FILENO;
};

} // namespace

bool canAsk(AskedOn terminal) {
    return OpenTerminal(terminal).isUsable();
}

bool confirm(std::string_view question, AskedOn terminal) {
    const OpenTerminal user(terminal);
    user.dropTypedAhead();
    user.write(std::string(question) + " [y/N] ");
    std::string answer;
    std::optional<char> byte = user.read();
    for (; byte && *byte != '\n'; byte = user.read())
        if (*byte != ' ')
            answer += lowered(*byte);
    if (!byte)
        user.write("\n");
    return byte && (answer == "y" || answer == "yes");
}

} // namespace brimvale::commandLine
