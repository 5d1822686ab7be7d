#include "CommandLine/PathOperands.h"

#include "Base/FileError.h"
#include "Base/Hex.h"
#include "Base/Result.h"
#include "CommandLine/StandardStreams.h"
#include "CommandLine/TerminalText.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <unistd.h>

namespace brimvale::commandLine {

namespace {

constexpr std::size_t longestList = std::size_t{1} << 30; // in bytes

/// Up to one byte more than the longest list.
Result<std::string> readStandardInput() {
    std::string text;
    std::array<char, 65'536> piece{};
    while (text.size() <= longestList) {
        const ssize_t count = read(STDIN_FILENO, piece.data(), piece.size());
        if (count == 0)
            break;
        if (count > 0)
            text.append(piece.data(), static_cast<std::size_t>(count));
        else if (errno != EINTR)
            return FileError::posix(errno);
    }
    return text;
}

/// The fault of a list, if any.
std::optional<std::string> faultOfList(std::string_view list) {
    if (list.size() > longestList)
        return "the list on standard input is longer than 1 GB";
    if (!list.empty() && list.back() != '\0')
        return "the list on standard input does not end with a zero byte, so it may be cut off";
    for (std::size_t start = 0, item = 1; start < list.size(); start = list.find('\0', start) + 1, ++item)
        if (list[start] == '\0')
            return "path " + std::to_string(item) + " of the list on standard input is empty";
    return std::nullopt;
}

std::vector<std::string> pathsInList(std::string_view list) {
    std::vector<std::string> items;
    while (!list.empty()) {
        items.emplace_back(list.substr(0, list.find('\0')));
        list.remove_prefix(items.back().size() + 1);
    }
    return items;
}

/// Decodes the paths. The fault of the first one that has any.
std::optional<std::string> decode(std::vector<std::string> &paths) {
    for (std::string &path : paths) {
        const std::optional<std::string> bytes = path.empty() ? std::nullopt : bytesOfHex(path);
        if (!bytes)
            return inQuotes(path) + " is not a path in hexadecimal digits, two for each byte";
        if (bytes->find('\0') != std::string::npos)
            return inQuotes(path) + " contains a zero byte, which is part of no path";
        path = *bytes;
    }
    return std::nullopt;
}

/// The fault in how the paths are given, if any.
std::optional<std::string> faultOfUse(const Arguments &arguments, const Command &command) {
    const std::optional<std::string_view> list = arguments.text(from0Option.name);
    if (list && *list != "-")
        return "\"--from0\" reads only standard input, which is written \"-\"";
    if (list && !arguments.operands().empty())
        return "paths are either given or read with \"--from0\"";
    if (!list && arguments.operands().empty())
        return "missing argument: " + std::string(command.operands);
    return std::nullopt;
}

} // namespace

std::variant<std::vector<std::string>, ExitStatus> givenPaths(const Arguments &arguments,
                                                              const Command &command) {
    if (const std::optional<std::string> fault = faultOfUse(arguments, command))
        return refuseUsage(*fault, &command);
    std::vector<std::string> paths(arguments.operands().begin(), arguments.operands().end());
    if (arguments.has(from0Option.name)) {
        const Result<std::string> list = readStandardInput();
        if (const auto *error = std::get_if<FileError>(&list)) {
            printError("standard input: " + error->localizedDescription);
            return ExitStatus::failed;
        }
        if (const std::optional<std::string> fault = faultOfList(std::get<std::string>(list)))
            return refuseUsage(*fault, &command);
        paths = pathsInList(std::get<std::string>(list));
    }
    if (arguments.has(hexOption.name))
        if (const std::optional<std::string> fault = decode(paths))
            return refuseUsage(*fault, &command);
    return paths;
}

} // namespace brimvale::commandLine
