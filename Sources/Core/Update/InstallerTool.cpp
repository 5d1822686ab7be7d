#include "Core/Update/InstallerTool.h"

#include "Core/Text/Shell.h"
#include "Core/Update/CodeSignature.h"
#include "Core/Update/Installer.h"
#include "Platform/EntryMaking.h"
#include "Platform/FileStatus.h"

#include <filesystem>
#include <system_error>

namespace brimvale {

namespace {

namespace fs = std::filesystem;

/// The tool finds its libraries in "../Frameworks", as in the application. A link leads there: they are
/// loaded before the application moves.
std::optional<FileURL> copyTool(const FileURL &staged) {
    const FileURL tool = staged.appending("Contents/MacOS/brimvalectl");
    const std::optional<FileStatus> status = fileStatus(tool.path());
    const FileURL folder = staged.parent().appending("installer");
    const FileURL programs = folder.appending("MacOS");
    if (!status || status->kind != FileKind::regularFile || makePrivateFolder(folder.path()) ||
        makePrivateFolder(programs.path()))
        return std::nullopt;
    FileURL copy = programs.appending(tool.fileName());
    const std::string libraries = "../" + std::string(staged.fileName()) + "/Contents/Frameworks";
    std::error_code error;
    fs::create_directory_symlink(libraries, folder.appending("Frameworks").path(), error);
    if (!error)
        fs::copy_file(tool.path(), copy.path(), error);
    return error ? std::nullopt : std::optional(std::move(copy));
}

/// Whether it starts and knows the command.
bool isUsable(const FileURL &tool) {
    const auto result = Shell::runWithStatus(tool.path(), {installCommandName, "--help"});
    return result && result->hasSucceeded();
}

} // namespace

std::optional<FileURL> makeInstaller(const FileURL &staged, const FileURL &current, const Tools &tools) {
    if (refusalToExchange(staged.standardized(), current.standardized(), tools))
        return std::nullopt;
    std::optional<FileURL> tool = copyTool(staged);
    if (!tool || !isSignedByOurTeam(*tool, tools) || !isUsable(*tool))
        return std::nullopt;
    return tool;
}

std::vector<std::string> installerArguments(const Installation &installation) {
    return {installCommandName, "--", installation.staged.standardized().path(), installation.current.path(),
            std::to_string(installation.process)};
}

} // namespace brimvale
