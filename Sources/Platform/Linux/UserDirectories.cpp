// The settings of xdg-user-dirs, which most desktops fill in in the user's language: a file of lines like
// XDG_MUSIC_DIR="$HOME/Musik" or XDG_MUSIC_DIR="/data/Musik". The home itself as a value means that there is
// no such folder.

#include "Platform/UserDirectories.h"

#include "Platform/Confinement.h"
#include "Platform/FileContents.h"
#include "Platform/Host.h"

#include <algorithm>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <system_error>
#include <utility>

namespace brimvale {

namespace {

constexpr std::size_t settingsLimit = 1'048'576; // bytes; the file has a few hundred
constexpr std::string_view documentsKey = "XDG_DOCUMENTS_DIR";

/// A key and its folder; no folder where the value is the home.
using Setting = std::pair<std::string_view, std::optional<FileURL>>;
using Settings = std::map<std::string, std::optional<FileURL>, std::less<>>;

/// Whether this is the home of the user who runs the program, by any path.
bool isOwnHome(const FileURL &home) {
    std::error_code error;
    return home == homeFolder() || std::filesystem::equivalent(home.path(), homeFolder().path(), error);
}

/// The folder with the user's settings. The environment applies only to the user who runs the program; the
/// base directory standard says to ignore relative paths.
FileURL configurationFolder(const FileURL &home) {
    const char *chosen = std::getenv("XDG_CONFIG_HOME");
    const bool isForHome = chosen != nullptr && chosen[0] == '/' && isOwnHome(home) && !confinement();
    return isForHome ? FileURL(chosen) : home.appending(".config");
}

std::string_view withoutBlanks(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t"), text.size()));
    return text.substr(0, text.find_last_not_of(" \t") + 1);
}

/// The value in double quotes at the start of `text`, where a backslash escapes the next character. Nothing
/// without such quotes.
std::optional<std::string> quotedValue(std::string_view text) {
    if (!text.starts_with('"'))
        return std::nullopt;
    std::string value;
    for (std::size_t i = 1; i < text.size(); ++i) {
        if (text[i] == '"')
            return value;
        if (text[i] == '\\' && i + 1 < text.size())
            ++i;
        value += text[i];
    }
    return std::nullopt;
}

/// The setting in one line; nothing where the line has none or an invalid one.
std::optional<Setting> settingIn(std::string_view line, const FileURL &home) {
    const std::size_t equals = std::min(line.find('='), line.size());
    const std::string_view key = withoutBlanks(line.substr(0, equals));
    if (equals == line.size() || !key.starts_with("XDG_") || !key.ends_with("_DIR"))
        return std::nullopt;
    std::optional<std::string> value = quotedValue(withoutBlanks(line.substr(equals + 1)));
    constexpr std::string_view homeVariable = "$HOME";
    if (value && (*value == homeVariable || value->starts_with("$HOME/")))
        value->replace(0, homeVariable.size(), home.path());
    if (!value || !value->starts_with('/'))
        return std::nullopt;
    FileURL folder = FileURL(*std::move(value)).standardized();
    const bool isHome = folder == home.standardized();
    return Setting(key, isHome ? std::nullopt : std::optional(std::move(folder)));
}

/// The folders that the settings in this folder name, by their keys. The last line of a key counts.
Settings settingsIn(const FileURL &folder, const FileURL &home) {
    const std::string content =
        contentsOfFile(folder.appending("user-dirs.dirs").path(), settingsLimit).value_or("");
    Settings settings;
    for (std::string_view rest = content; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        if (std::optional<Setting> setting = settingIn(line, home))
            settings.insert_or_assign(std::string(setting->first), std::move(setting->second));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
    return settings;
}

void addFolders(const Settings &settings, std::vector<FileURL> &folders) {
    for (const auto &[key, folder] : settings)
        if (folder && std::find(folders.begin(), folders.end(), *folder) == folders.end())
            folders.push_back(*folder);
}

} // namespace

UserDirectories userDirectories(const FileURL &home) {
    const FileURL usual = home.appending(".config");
    const FileURL configuration = configurationFolder(home);
    Settings settings = settingsIn(configuration, home);
    UserDirectories directories;
    if (const auto documents = settings.find(documentsKey); documents != settings.end())
        directories.documents = documents->second;
    addFolders(settings, directories.all);
    // The desktop may have been started without the variable that this program sees.
    if (configuration != usual)
        addFolders(settingsIn(usual, home), directories.all);
    directories.byKey = std::move(settings);
    return directories;
}

} // namespace brimvale
