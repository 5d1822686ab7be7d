#include "Platform/PrivilegedRunner.h"

#include "Platform/AppleScript.h"
#include "Platform/macOS/Text.h"

#include <crt_externs.h>
#include <cstring>
#include <mutex>
#include <system_error>
#include <thread>
#include <unistd.h>

namespace brimvale {

namespace {

std::optional<PrivilegedRunError> run(const std::string &script) {
    @autoreleasepool {
        NSString *source = [NSString stringWithUTF8String:script.c_str()];
        // An invalid script cannot be run, and reports no error either.
        NSAppleScript *object = source == nil ? nil : [[NSAppleScript alloc] initWithSource:source];
        NSDictionary<NSString *, id> *information = nil;
        [object executeAndReturnError:&information];
        if (information == nil)
            return std::nullopt;
        id message = information[NSAppleScriptErrorMessage];
        if (![message isKindOfClass:NSString.class])
            return PrivilegedRunError{};
        return PrivilegedRunError{bytesOf(message)};
    }
}

/// The bytes that the environment takes in the arguments of a new program.
std::size_t sizeOfEnvironment() {
    std::size_t size = 0;
    for (char *const *variable = *_NSGetEnviron(); *variable != nullptr; ++variable)
        size += std::strlen(*variable) + 1 + sizeof(char *);
    return size;
}

} // namespace

/// All arguments and the environment share ARG_MAX bytes. The command runs in the environment of the tool
/// that asks for the password, which may be somewhat larger than ours.
std::size_t longestAdministratorCommand() {
    constexpr std::size_t shortest = std::size_t{128} * 1024 - 1;
    constexpr std::size_t spare = std::size_t{32} * 1024;
    const long most = sysconf(_SC_ARG_MAX);
    const std::size_t taken = sizeOfEnvironment() + spare;
    const std::size_t all = most > 0 ? static_cast<std::size_t>(most) : 0;
    return all > taken + shortest ? all - taken : shortest;
}

std::optional<PrivilegedRunError> runAsAdministrator(const std::string &command, const Tools & /*tools*/) {
    static std::mutex oneQuestionAtATime;
    const std::lock_guard guard(oneQuestionAtATime);
    // A script must be used on the thread that made it, so each gets a thread of its own.
    std::optional<PrivilegedRunError> error;
    try {
        std::thread([&] { error = run(administratorScript(command)); }).join();
    } catch (const std::system_error &) { // no thread is available
        error.emplace();
    }
    return error;
}

} // namespace brimvale
