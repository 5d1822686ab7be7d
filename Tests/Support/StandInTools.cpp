#include "Support/StandInTools.h"

#include "Core/Text/Shell.h"
#include "Support/PropertyLists.h"

#include <QByteArray>
#include <QCryptographicHash>
#include <filesystem>
#include <unistd.h>

namespace brimvale::testing {

namespace fs = std::filesystem;

namespace {

// Unpacks a tar archive where the real one takes a zip archive, since every system has tar.
constexpr std::string_view ditto = R"sh(
case $1 in
    -x) [ "$2" = -k ] && tar -xf "$3" -C "$4" ;;
    *) mkdir -p "$2" && cp -R "$1/." "$2" ;;
esac
)sh";

// An application is whole when its last file is there. A program names its team in a comment. Says nothing
// about one that is not, and prints the details to standard error. The certificate is from the system's maker
// if it names a team.
constexpr std::string_view codesign = R"sh(
case $1 in
    -dv)
        printf 'Executable=%s\nFormat=app bundle\n' "$2" >&2
        printf 'TeamIdentifier=%s\n' "$(cat "$2/Contents/team")" >&2
        ;;
    --verify)
        requirement= before=
        for app; do
            [ "$before" != -R ] || requirement=$app
            before=$app
        done
        if [ -f "$app" ]; then
            team=$(sed -n 's/^# team //p' "$app")
        else
            [ -e "$app/Contents/last" ] || exit 1
            team=$(cat "$app/Contents/team")
        fi
        [ -z "$requirement" ] ||
            [ "$requirement" = "=anchor apple generic and certificate leaf[subject.OU] = \"$team\"" ] || exit 3
        ;;
esac
)sh";

} // namespace

std::string makeApp(const TemporaryFolder &folder, std::string_view inside, const SampleApp &app) {
    const std::string path(inside);
    folder.makeScript(path + "/Contents/MacOS/" + app.executable, "exit 0");
    if (app.tool)
        folder.makeScript(path + "/Contents/MacOS/brimvalectl", "# team " + app.team + "\n" + *app.tool);
    folder.writeFile(path + "/Contents/content", app.content);
    folder.writeFile(path + "/Contents/team", app.team);
    BundleInfo info;
    info.identifier = app.identifier;
    info.version = app.build;
    folder.writeFile(path + "/Contents/Info.plist", infoPlist(info));
    if (app.isWhole)
        folder.makeFile(path + "/Contents/last");
    return folder.path(path);
}

std::optional<std::string> workingContent(const std::string &path) {
    std::error_code error;
    bool hasExecutable = false;
    for (const auto &file : fs::directory_iterator(path + "/Contents/MacOS", error))
        hasExecutable = hasExecutable || access(file.path().c_str(), X_OK) == 0;
    if (!hasExecutable || !fs::exists(path + "/Contents/last"))
        return std::nullopt;
    return contentOf(path + "/Contents/content");
}

std::string archiveOf(const std::string &folder) {
    const TemporaryFolder place;
    const std::string file = place.path("archive");
    const auto result = Shell::runWithStatus("/bin/sh", {"-c", "tar -cf \"$0\" -C \"$1\" .", file, folder});
    return result && result->hasSucceeded() ? contentOf(file) : "";
}

std::string sha256Of(const std::string &bytes) {
    return QCryptographicHash::hash(QByteArray::fromStdString(bytes), QCryptographicHash::Sha256)
        .toHex()
        .toStdString();
}

std::string makeTool(const TemporaryFolder &folder, std::string_view name, std::string_view body) {
    return folder.makeScript("tools/" + std::string(name), body);
}

Tools makeUpdateTools(const TemporaryFolder &folder) {
    Tools tools = platformTools();
    tools.attributeRemover = makeTool(folder, "xattr", "exit 1");
    tools.opener = makeTool(folder, "open", "printf '%s' \"$1\" >'" + folder.path("opened") + "'");
    tools.shasum = makeTool(folder, "shasum",
                            "[ \"$1 $2\" = '-a 256' ] || exit 64\n"
                            "sha256sum \"$3\" 2>/dev/null || /usr/bin/shasum -a 256 \"$3\"");
    tools.unpacker = makeTool(folder, "ditto", ditto);
    tools.codesign = makeTool(folder, "codesign", codesign);
    return tools;
}

} // namespace brimvale::testing
