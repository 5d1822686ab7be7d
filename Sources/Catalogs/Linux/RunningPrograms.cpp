#include "Catalogs/Linux/RunningPrograms.h"

#include "Base/FileURL.h"
#include "Platform/FileContents.h"
#include "Platform/FileReader.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"
#include "Platform/Processes.h"

#include <algorithm>
#include <charconv>
#include <optional>
#include <string_view>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t processFileLimit = 1'048'576; // bytes; a command line may be long
constexpr std::size_t lockFileLimit = 64;           // bytes; a number

std::string_view afterLast(std::string_view text, char mark) {
    return text.substr(text.rfind(mark) + 1);
}

/// The number at the end of a text: "host-1234", "127.0.0.1:+1234". Empty if there is none.
std::string_view numberAtEnd(std::string_view text) {
    text = text.substr(0, text.find_last_not_of(" \n") + 1);
    return text.substr(text.find_last_not_of("0123456789") + 1);
}

} // namespace

RunningPrograms::RunningPrograms(const Host &host, bool knowsOpenFiles) : processes_(host.placeOf("/proc")) {
    for (const std::string &process : processesIn(processes_)) {
        addProcess(process);
        if (knowsOpenFiles)
            addOpenFiles(process);
    }
    addLocks(contentsOfFile(joinPath(processes_, "locks"), processFileLimit).value_or(""));
}

/// A process is known by its own name, its program file, and what it was started as: a script is the second
/// word of its command line, and Java's programs are known by their main class.
void RunningPrograms::addProcess(const std::string &process) {
    const auto contents = [&](const char *name) {
        return contentsOfFile(joinPath(process, name), processFileLimit).value_or("");
    };
    const std::string name = contents("comm");
    names_.emplace(name.substr(0, name.find('\n')));
    if (const std::optional<std::string> program = linkTarget(joinPath(process, "exe")))
        names_.emplace(afterLast(*program, '/'));
    const std::string line = contents("cmdline");
    int words = 0;
    for (std::string_view rest = line; !rest.empty(); ++words) {
        const std::string_view word = rest.substr(0, rest.find('\0'));
        if (words < 2)
            names_.emplace(afterLast(word, '/'));
        else if (name.starts_with("java") && !word.starts_with('-'))
            names_.emplace(afterLast(word, '.'));
        rest.remove_prefix(std::min(word.size() + 1, rest.size()));
    }
    names_.erase("");
}

void RunningPrograms::addOpenFiles(const std::string &process) {
    const std::string descriptors = joinPath(process, "fd");
    for (const std::string &name : namesIn(descriptors).value_or(std::vector<std::string>()))
        if (const std::optional<std::string> file = linkTarget(joinPath(descriptors, name)))
            if (file->starts_with('/'))
                openFiles_.insert(*file);
}

/// Each line ends with a range of bytes, after "DEVICE:INODE". The inode is enough: a wrong match only keeps
/// a file.
void RunningPrograms::addLocks(const std::string &table) {
    for (std::string_view rest = table; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        const std::string_view before = line.substr(0, line.find(' ', line.rfind(':') + 1));
        std::uint64_t inode = 0;
        const std::string_view digits = numberAtEnd(before);
        if (std::from_chars(digits.data(), digits.data() + digits.size(), inode).ec == std::errc())
            lockedInodes_.insert(inode);
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
}

bool RunningPrograms::isHeld(const std::string &lock) const {
    const std::optional<FileStatus> status = fileStatus(lock);
    if (!status)
        return false;
    if (lockedInodes_.contains(status->identity.inode))
        return true;
    const std::optional<std::string> link = linkTarget(lock);
    const std::string text = link ? *link : contentsOfFile(lock, lockFileLimit).value_or("");
    const std::string_view number = numberAtEnd(text);
    return !number.empty() && fileStatus(joinPath(processes_, number)).has_value();
}

bool RunningPrograms::use(const std::string &path) const {
    for (auto file = openFiles_.lower_bound(path); file != openFiles_.end() && file->starts_with(path);
         ++file)
        if (isAtOrUnder(*file, path))
            return true;
    const std::optional<FileStatus> status = fileStatus(path);
    return status && lockedInodes_.contains(status->identity.inode);
}

bool RunningPrograms::has(const ProgramSigns &signs) const {
    return std::any_of(signs.processes.begin(), signs.processes.end(),
                       [this](const std::string &name) { return names_.contains(name); }) ||
           std::any_of(signs.locks.begin(), signs.locks.end(),
                       [this](const std::string &lock) { return isHeld(lock); }) ||
           std::any_of(signs.marks.begin(), signs.marks.end(),
                       [](const std::string &mark) { return fileStatus(mark).has_value(); }) ||
           (!signs.openFolder.empty() && use(signs.openFolder));
}

std::vector<bool> areRunning(const Host &host, const std::vector<ProgramSigns> &programs) {
    const bool needsOpenFiles = std::any_of(programs.begin(), programs.end(), [](const ProgramSigns &signs) {
        return !signs.openFolder.empty();
    });
    const RunningPrograms running(host, needsOpenFiles);
    std::vector<bool> answers;
    for (const ProgramSigns &signs : programs)
        answers.push_back(running.has(signs));
    return answers;
}

} // namespace brimvale::linuxCatalog
