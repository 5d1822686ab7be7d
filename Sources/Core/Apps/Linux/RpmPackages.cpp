#include "Core/Apps/Linux/Packages.h"

#include "Platform/ProcessRunner.h"

#include <algorithm>
#include <span>

namespace brimvale::linuxApps {

namespace {

constexpr const char *answerFormat = "%{NAME}\\t%{VERSION}\\t%{SIZE}\\n";
constexpr std::size_t mostAnswerBytes = 4 << 20;

std::vector<std::string> linesOf(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find('\n'), text.size());
        lines.emplace_back(text.substr(0, end));
        text.remove_prefix(std::min(end + 1, text.size()));
    }
    return lines;
}

/// The package in a line of the answer; nothing for a sentence that says that the file has no owner.
std::optional<Package> packageInAnswer(const std::string &line, const PackageDatabases &databases) {
    const std::size_t first = line.find('\t');
    const std::size_t second = line.find('\t', first + 1);
    if (first == std::string::npos || second == std::string::npos)
        return std::nullopt;
    Package package{.name = line.substr(0, first),
                    .version = line.substr(first + 1, second - first - 1),
                    .size = sizeInBytes(std::string_view(line).substr(second + 1))};
    package.removeCommand = databases.rpmCommand + package.name;
    return package;
}

/// Asks for the owners of these files in one call. The answer has a line for each file, in order; where a
/// file has several owners it has more, and then the files are asked for in halves.
void ask(std::span<const std::string> files, const PackageDatabases &databases, Owners &owners) {
    std::vector<std::string> arguments = {"-qf", "--qf", answerFormat};
    arguments.insert(arguments.end(), files.begin(), files.end());
    const std::optional<ProcessResult> result =
        runProcess(databases.rpmProgram, arguments, StandardError::discarded, {}, mostAnswerBytes);
    if (!result || result->isTooLong)
        return;
    const std::vector<std::string> lines = linesOf(result->output);
    if (lines.size() != files.size() && files.size() > 1) {
        ask(files.first(files.size() / 2), databases, owners);
        ask(files.subspan(files.size() / 2), databases, owners);
        return;
    }
    for (std::size_t i = 0; i < std::min(lines.size(), files.size()); ++i)
        if (const std::optional<Package> package = packageInAnswer(lines[i], databases))
            owners.emplace(files[i], *package);
}

} // namespace

Owners rpmOwners(const std::vector<std::string> &paths, const PackageDatabases &databases) {
    Owners owners;
    if (!databases.rpmProgram.empty() && !paths.empty())
        ask(paths, databases, owners);
    return owners;
}

} // namespace brimvale::linuxApps
