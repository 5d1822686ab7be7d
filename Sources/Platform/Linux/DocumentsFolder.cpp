#include "Platform/DocumentsFolder.h"

#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

namespace brimvale {

namespace {

constexpr std::string_view key = "XDG_DOCUMENTS_DIR=\"";
constexpr std::string_view homeVariable = "$HOME/";

/// What stands between the quotation marks, a backslash before any character taken away.
std::string unquoted(std::string_view text) {
    std::string value;
    for (std::size_t i = 0; i < text.size() && text[i] != '"'; ++i) {
        if (text[i] == '\\' && i + 1 < text.size())
            ++i;
        value += text[i];
    }
    return value;
}

FileURL configurationFolder(const FileURL &home) {
    const char *chosen = std::getenv("XDG_CONFIG_HOME");
    return chosen != nullptr && chosen[0] == '/' ? FileURL(chosen) : home.appending(".config");
}

} // namespace

/// As xdg-user-dirs keeps it: XDG_DOCUMENTS_DIR="$HOME/Documents", or an absolute path.
std::optional<FileURL> documentsFolder(const FileURL &home) {
    std::ifstream file(configurationFolder(home).appending("user-dirs.dirs").path());
    std::optional<FileURL> folder;
    for (std::string line; std::getline(file, line);) {
        if (!line.starts_with(key))
            continue;
        const std::string value = unquoted(std::string_view(line).substr(key.size()));
        // The home itself is how it is said that there is no such folder.
        if (value.starts_with(homeVariable) && value.size() > homeVariable.size())
            folder = home.appending(std::string_view(value).substr(homeVariable.size()));
        else if (value.starts_with('/'))
            folder = FileURL(value);
    }
    return folder;
}

} // namespace brimvale
