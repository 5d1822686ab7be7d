#include "Catalogs/Linux/UserFolders.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <fstream>
#include <optional>
#include <string>
#include <system_error>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t settingsLimit = 65'536; // bytes; the file has a few hundred

std::string settingsIn(const FileURL &home) {
    const std::string path = home.appending(".config/user-dirs.dirs").path();
    // Anything but a file might keep its reader waiting.
    std::error_code error;
    if (!std::filesystem::is_regular_file(path, error))
        return {};
    std::ifstream file(path, std::ios::binary);
    std::string text(settingsLimit, '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

/// What stands between double quotes at the start of `text`, where a backslash takes the next character as it
/// is. Nothing where there are no such quotes.
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

/// The folder that one line names: XDG_…_DIR="$HOME/…" or XDG_…_DIR="/…".
std::optional<FileURL> folderNamedIn(std::string_view line, const FileURL &home) {
    line.remove_prefix(std::min(line.find_first_not_of(" \t"), line.size()));
    constexpr std::string_view beforeValue = "_DIR=";
    const std::size_t end = line.find(beforeValue);
    if (!line.starts_with("XDG_") || end == std::string_view::npos)
        return std::nullopt;
    const std::optional<std::string> value = quotedValue(line.substr(end + beforeValue.size()));
    if (!value)
        return std::nullopt;
    constexpr std::string_view homeVariable = "$HOME";
    if (value->starts_with('/'))
        return FileURL(*value).standardized();
    if (value->starts_with("$HOME/"))
        return FileURL(home.path() + value->substr(homeVariable.size())).standardized();
    return std::nullopt;
}

} // namespace

std::vector<FileURL> userFolders(const FileURL &home) {
    std::vector<FileURL> folders;
    for (const char *name :
         {"Desktop", "Documents", "Downloads", "Music", "Pictures", "Public", "Templates", "Videos"})
        folders.push_back(home.appending(name));
    const std::vector<FileURL> named = userFoldersNamedIn(settingsIn(home), home);
    folders.insert(folders.end(), named.begin(), named.end());
    return folders;
}

std::vector<FileURL> userFoldersNamedIn(std::string_view settings, const FileURL &home) {
    std::vector<FileURL> folders;
    while (!settings.empty()) {
        const std::size_t end = std::min(settings.find('\n'), settings.size());
        if (std::optional<FileURL> folder = folderNamedIn(settings.substr(0, end), home))
            folders.push_back(*std::move(folder));
        settings.remove_prefix(std::min(end + 1, settings.size()));
    }
    return folders;
}

} // namespace brimvale::linuxCatalog
