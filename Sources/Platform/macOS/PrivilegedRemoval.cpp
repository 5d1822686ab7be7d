#include "Platform/PrivilegedRemoval.h"

#include "Base/Text.h"

#include <crt_externs.h>
#include <cstring>
#include <optional>
#include <unistd.h>
#include <utility>

namespace brimvale {

namespace {

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
std::size_t longestPrivilegedRemoval() {
    constexpr std::size_t shortest = std::size_t{128} * 1024 - 1;
    constexpr std::size_t spare = std::size_t{32} * 1024;
    const long most = sysconf(_SC_ARG_MAX);
    const std::size_t taken = sizeOfEnvironment() + spare;
    const std::size_t all = most > 0 ? static_cast<std::size_t>(most) : 0;
    return all > taken + shortest ? all - taken : shortest;
}

// The system runs only a command, which knows its items by their paths. So they are compared a last time
// before the question, and nobody else may be able to exchange a folder on the way to them (see
// `othersMayExchange`). The others are still removed.
Result<KeptReasons, PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &items,
                                                              const Tools &tools) {
    KeptReasons reasons(items.size());
    std::vector<std::string> paths;
    for (std::size_t i = 0; i < items.size(); ++i) {
        const std::string name = "“" + displayText(items[i].place.fileName()) + "”";
        const Result<OpenedItem, int> found = OpenedItem::again(items[i]);
        const auto *item = std::get_if<OpenedItem>(&found);
        if (item == nullptr)
            reasons[i] = name + " changed since you selected it.";
        else if (othersMayExchange(*item))
            reasons[i] = "Other users can change a folder on the way to " + name +
                         ", so the command of an administrator might remove something else.";
        else
            paths.push_back(item->place().standardized().path());
    }
    if (!paths.empty())
        if (std::optional<PrivilegedRunError> error = runAsAdministrator(removalCommand(paths), tools))
            return *std::move(error);
    return reasons;
}

} // namespace brimvale
