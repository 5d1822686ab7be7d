#include "Views/Window/Launch.h"

#include "Base/ErrorReason.h"
#include "Base/Options.h"
#include "Base/Result.h"
#include "Platform/FileStatus.h"
#include "Platform/Folder.h"

#include <QChar>
#include <QString>
#include <algorithm>
#include <array>
#include <cerrno>
#include <filesystem>
#include <system_error>

namespace brimvale {

namespace {

constexpr std::array options = {
    Option{"--system", Option::Value::text, "macos|linux", "Use the catalogs of that system."},
    Option{"--sample", Option::Value::attachedText, "new|remove",
           "Show a sample instead of this computer (new: rebuild it)."},
    Option{.name = "--help", .help = "Print this help.", .endsReading = true},
    Option{.name = "--version", .help = "Print the version.", .endsReading = true},
};

std::string help() {
    return "Usage: brimvale [OPTION]… [PATH]\n"
           "\n"
           "Shows where disk space has gone and gets it back safely. With a folder, scans it at once; with "
           "a\n"
           "file, scans its folder and selects it.\n"
           "\n"
           "Options:\n" +
           inColumns(helpRows(options)) +
           "\n\"--\" ends options. For scripts and terminals there is brimvalectl.\n";
}

/// The typed text without characters that act on a terminal.
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

Launch::Refusal wrongSystem(std::string_view name) {
    return wrongUsage("--system takes macos or linux, not \"" + printable(name) + "\"");
}

Launch::Refusal refusalOf(const UsageError &error) {
    const std::string name = printable(error.option.name);
    if (error.kind == UsageError::Kind::unknownOption)
        return wrongUsage("unknown option \"" + name + "\"");
    if (error.kind == UsageError::Kind::takesNoValue)
        return wrongUsage("\"" + name + "\" takes no value");
    return wrongSystem(error.value);
}

/// The absolute path named by `typed`, or the reason why there is none.
Result<FileURL> placeAt(std::string_view typed) {
    if (typed.empty())
        return FileError::posix(ENOENT);
    std::string base = "/";
    if (!typed.starts_with('/')) {
        std::error_code error;
        base = std::filesystem::current_path(error).native();
        if (error)
            return FileError::posix(error.value());
    }
    return FileURL::resolving(typed, FileURL(base)).standardized();
}

void noteMissing(Launch &launch, std::string_view typed, int error) {
    launch.notice = "“";
    launch.notice.append(printable(typed)).append("” can’t be scanned: ");
    launch.notice.append(reasonOfError(error)).append(".");
}

/// What to scan and select for the path typed.
void readPlace(Launch &launch, std::string_view typed) {
    const Result<FileURL> found = placeAt(typed);
    if (const auto *error = std::get_if<FileError>(&found))
        return noteMissing(launch, typed, error->code);
    const auto &place = std::get<FileURL>(found);
    if (Folder::at(place.path(), Folder::Links::follow).isOpen() || errno == EACCES || errno == EPERM) {
        launch.folder = place;
        return;
    }
    const int error = errno;
    const bool isFile = error == ENOTDIR && fileStatus(place.path()) && !typed.ends_with('/');
    if (!isFile)
        return noteMissing(launch, typed, error);
    launch.folder = place.parent();
    launch.file = place;
}

} // namespace

std::variant<Launch, Launch::Refusal> Launch::read(std::span<const char *const> words,
                                                   std::string_view programVersion) {
    const auto parsed = Arguments::parse(words, options, Arguments::Order::mixed);
    if (const auto *error = std::get_if<UsageError>(&parsed))
        return refusalOf(*error);
    const auto &arguments = std::get<Arguments>(parsed);
    if (arguments.has("--help"))
        return Refusal{.text = help()};
    if (arguments.has("--version"))
        return Refusal{.text = "brimvale " + std::string(programVersion) + "\n"};
    Launch launch;
    if (const auto system = arguments.text("--system")) {
        launch.system = systemNamed(*system);
        if (!launch.system)
            return wrongSystem(*system);
    }
    if (const auto sample = arguments.text("--sample")) {
        launch.sample = sample::wishNamed(*sample);
        if (!launch.sample)
            return wrongUsage("--sample takes new or remove, not \"" + printable(*sample) + "\"");
    }
    if (arguments.operands().size() > 1)
        return wrongUsage("only one path can be opened, and not also \"" +
                          printable(arguments.operands()[1]) + "\"");
    if (arguments.operands().empty())
        return launch;
    readPlace(launch, arguments.operands().front());
    return launch;
}

} // namespace brimvale
