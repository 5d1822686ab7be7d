#include "Base/Diagnostics.h"
#include "CommandLine/StandardStreams.h"
#include "Core/Removal/Remover.h"
#include "Platform/Accounts.h"
#include "Platform/FileSizeLimit.h"
#include "Platform/Linux/RemovalRequest.h"
#include "Platform/SystemLog.h"

#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstdlib>
#include <string>
#include <string_view>
#include <unistd.h>

// Deletes items as root for a user who has been authenticated by pkexec. It trusts neither the request, which
// it reads from its standard input (see `RemovalRequest`), nor the paths in it: every item passes the guards
// and must still be the one that the user selected, in the same folder.

namespace {

using namespace brimvale;

enum class ExitStatus { allRemoved = 0, someKept = 1, requestRefused = 2 };

/// Everything until the end of standard input; nothing if it cannot be read or is too long.
std::optional<std::string> readRequest() {
    std::string request;
    std::array<char, 65536> buffer;
    while (request.size() <= longestRemovalRequest) {
        const ssize_t count = read(STDIN_FILENO, buffer.data(), buffer.size());
        if (count == 0)
            return request;
        if (count > 0)
            request.append(buffer.data(), static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return std::nullopt;
    }
    return std::nullopt;
}

/// The account that pkexec was asked by; without pkexec, the one that runs this program.
std::uint32_t askingUser() {
    const char *variable = std::getenv("PKEXEC_UID");
    const std::string_view text = variable != nullptr ? variable : "";
    std::uint32_t user = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), user);
    return !text.empty() && error == std::errc() && end == text.data() + text.size() ? user : getuid();
}

/// Drops the environment, which is the user's in part. The home folder that the guards begin with is the one
/// of the user who asked.
void dropEnvironment() {
    const std::optional<FileURL> home = homeOfAccount(askingUser());
    clearenv();
    if (home)
        setenv("HOME", home->path().c_str(), 1);
}

/// Nothing when the item was removed; otherwise why it was kept.
std::optional<std::string> remove(const ItemPin &pin) {
    RemovalProgress progress;
    progress.abandoned.set(); // the user's program measures what is left
    const RemovalResult result = Remover::remove(std::vector{CleanupEntry{.url = pin.place, .pin = pin}},
                                                 RemovalMode::deleteNow, &progress);
    if (!result.failed.empty())
        return result.failed.front().reason;
    if (!result.adminRemarks.empty())
        return result.adminRemarks.front().reason;
    if (!result.needsAdmin.empty())
        return "Its file system does not let an administrator remove it either.";
    return std::nullopt;
}

/// A reader that has gone is no reason to stop: the user has confirmed the removal.
void print(const std::string &line) {
    static_cast<void>(write(STDOUT_FILENO, line.data(), line.size()));
}

ExitStatus removeAll(const std::vector<ItemPin> &items) {
    ExitStatus status = ExitStatus::allRemoved;
    for (const ItemPin &item : items) {
        const std::optional<std::string> reason = remove(item);
        if (reason)
            status = ExitStatus::someKept;
        print(removalAnswer(reason));
    }
    return status;
}

ExitStatus runProgram(int words) {
    const std::optional<std::string> request = words == 1 ? readRequest() : std::nullopt;
    const auto items = request ? itemsOfRequest(*request) : std::nullopt;
    return items ? removeAll(*items) : ExitStatus::requestRefused;
}

} // namespace

int main(int argc, char ** /*argv*/) {
    setDiagnosticLog(writeToSystemLog);
    commandLine::occupyStandardStreams();
    failAtFileSizeLimit();
    std::signal(SIGPIPE, SIG_IGN);
    dropEnvironment();
    return static_cast<int>(runProgram(argc));
}
