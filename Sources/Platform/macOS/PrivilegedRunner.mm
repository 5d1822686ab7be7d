#include "Platform/PrivilegedRunner.h"

#include "Platform/AppleScript.h"
#include "Platform/macOS/Text.h"

#include <mutex>
#include <system_error>
#include <thread>

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

} // namespace

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

Result<ProcessResult, PrivilegedRunError>
runProgramAsAdministrator(const std::vector<std::string> & /*words*/, const Tools & /*tools*/) {
    return PrivilegedRunError{};
}

} // namespace brimvale
