#include "Views/Window/Launch.h"

#include "Base/Result.h"
#include "Platform/Folder.h"

#include <QChar>
#include <QString>
#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace brimvale {

namespace {

constexpr std::string_view help =
    "Usage: brimvale [OPTION]… [FOLDER]\n"
    "\n"
    "Shows where disk space has gone and gets it back safely. With a folder, scans it at once.\n"
    "\n"
    "Options:\n"
    "  --system macos|linux  Look with the catalogs of that system.\n"
    "  --help                Print this help.\n"
    "  --version             Print the version.\n"
    "\n"
    "\"--\" ends options. For scripts and terminals there is brimvalectl.\n";

/// What was typed, without what would steer a terminal.
std::string printable(std::string_view typed) {
    QString text = QString::fromUtf8(typed.data(), static_cast<qsizetype>(typed.size()));
    std::replace_if(
        text.begin(), text.end(),
        [](QChar character) { return !character.isPrint() && !character.isSurrogate(); }, QChar(u'?'));
    return text.toStdString();
}

Launch::Refusal wrongUsage(const std::string &fault) {
    return {.exitStatus = 2, .text = "brimvale: " + fault + " (see \"brimvale --help\")\n"};
}

std::optional<System> systemNamed(std::string_view name) {
    if (name == "macos")
        return System::macOS;
    return name == "linux" ? std::optional(System::linux) : std::nullopt;
}

using Words = std::span<const char *const>;

std::string_view takeFirst(Words &words) {
    const std::string_view first = words.empty() ? std::string_view() : words.front();
    words = words.subspan(words.empty() ? 0 : 1);
    return first;
}

/// The value of the option `name` if `word` is that option: what follows "=" in it, else the next word, which
/// is taken. Nothing where `word` is something else.
std::optional<std::string_view> valueOf(std::string_view name, std::string_view word, Words &rest) {
    if (!word.starts_with(name))
        return std::nullopt;
    word.remove_prefix(name.size());
    if (word.empty())
        return takeFirst(rest);
    return word.starts_with('=') ? std::optional(word.substr(1)) : std::nullopt;
}

/// The folder that `typed` means, or what keeps it from being looked at.
Result<FileURL> folderAt(std::string_view typed) {
    if (typed.empty())
        return FileError::posix(ENOENT);
    std::string base = "/";
    if (!typed.starts_with('/')) {
        std::error_code error;
        base = std::filesystem::current_path(error).native();
        if (error)
            return FileError::posix(error.value());
    }
    const FileURL url = FileURL::resolving(typed, FileURL(base)).standardized();
    if (Folder::at(url.path(), Folder::Links::follow).isOpen() || errno == EACCES || errno == EPERM)
        return url;
    return FileError::posix(errno);
}

} // namespace

std::variant<Launch, Launch::Refusal> Launch::read(Words words, std::string_view version) {
    Launch launch;
    std::optional<std::string_view> folder;
    bool isPastOptions = false;
    while (!words.empty()) {
        const std::string_view word = takeFirst(words);
        if (isPastOptions || !word.starts_with('-')) {
            if (folder)
                return wrongUsage("one folder at a time, not also \"" + printable(word) + "\"");
            folder = word;
        } else if (word == "--") {
            isPastOptions = true;
        } else if (word == "--help") {
            return Refusal{.text = std::string(help)};
        } else if (word == "--version") {
            return Refusal{.text = "brimvale " + std::string(version) + "\n"};
        } else if (const auto name = valueOf("--system", word, words)) {
            launch.system = systemNamed(*name);
            if (!launch.system)
                return wrongUsage("--system takes macos or linux, not \"" + printable(*name) + "\"");
        } else {
            return wrongUsage("unknown option \"" + printable(word) + "\"");
        }
    }
    if (!folder)
        return launch;
    Result<FileURL> place = folderAt(*folder);
    if (const auto *error = std::get_if<FileError>(&place))
        return Refusal{.exitStatus = 1,
                       .text = "brimvale: " + printable(*folder) + ": " + error->localizedDescription + "\n"};
    launch.folder = std::get<FileURL>(std::move(place));
    return launch;
}

} // namespace brimvale
