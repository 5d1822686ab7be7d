#include "Catalogs/Linux/CloudFolders.h"

#include "Platform/FileContents.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <string_view>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t cloudSettingsLimit = 1'048'576; // bytes; such files have a few thousand

std::string settingsAt(const std::string &path) {
    return contentsOfFile(path, cloudSettingsLimit).value_or("");
}

void appendUTF8(std::string &text, unsigned code) {
    if (code < 0x80) {
        text += static_cast<char>(code);
    } else if (code < 0x800) {
        text += static_cast<char>(0xC0 | code >> 6);
        text += static_cast<char>(0x80 | (code & 0x3F));
    } else {
        text += static_cast<char>(0xE0 | code >> 12);
        text += static_cast<char>(0x80 | (code >> 6 & 0x3F));
        text += static_cast<char>(0x80 | (code & 0x3F));
    }
}

/// The code in four hexadecimal digits; nothing for half of a pair, which no usual folder name needs.
std::optional<unsigned> codeIn(std::string_view digits) {
    unsigned code = 0;
    for (const char digit : digits) {
        const std::size_t value = std::string_view("0123456789abcdef").find(static_cast<char>(digit | 0x20));
        if (value == std::string_view::npos)
            return std::nullopt;
        code = code * 16 + static_cast<unsigned>(value);
    }
    const bool isHalf = code >= 0xD800 && code < 0xE000;
    return digits.size() == 4 && !isHalf ? std::optional(code) : std::nullopt;
}

/// The text of a JSON string after its opening quote; empty if it is not well-formed.
std::string jsonText(std::string_view json) {
    std::string text;
    for (std::size_t i = 0; i < json.size() && json[i] != '"'; ++i) {
        if (json[i] != '\\') {
            text += json[i];
            continue;
        }
        if (++i >= json.size())
            return "";
        if (json[i] != 'u') {
            text += json[i]; // a quote, a slash or a backslash: other signs are in no path
            continue;
        }
        const std::optional<unsigned> code = codeIn(json.substr(i + 1, 4));
        if (!code)
            return "";
        appendUTF8(text, *code);
        i += 4;
    }
    return text;
}

/// The values of "path" in Dropbox's info.json, which has one for each account.
void addDropbox(const std::string &json, std::vector<std::string> &folders) {
    constexpr std::string_view key = "\"path\"";
    for (std::size_t at = json.find(key); at != std::string::npos; at = json.find(key, at + 1)) {
        const std::size_t colon = json.find_first_not_of(" \t\r\n", at + key.size());
        if (colon == std::string::npos || json[colon] != ':')
            continue;
        const std::size_t quote = json.find_first_not_of(" \t\r\n", colon + 1);
        if (quote != std::string::npos && json[quote] == '"')
            folders.push_back(jsonText(std::string_view(json).substr(quote + 1)));
    }
}

/// The value of a line like "KEY=value" or "key = "value""; empty if it is none. The key may be the end of a
/// longer one: settings of Nextcloud have lines such as "0\Folders\1\localPath=/home/u/Nextcloud/".
std::string valueIn(std::string_view line, std::string_view key) {
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos)
        return "";
    std::string_view name = line.substr(0, equals);
    name = name.substr(0, name.find_last_not_of(" \t") + 1);
    if (name != key && !name.ends_with("\\" + std::string(key)))
        return "";
    std::string_view value = line.substr(equals + 1);
    value.remove_prefix(std::min(value.find_first_not_of(" \t\""), value.size()));
    return std::string(value.substr(0, value.find_last_not_of(" \t\r\"") + 1));
}

void addValues(const std::string &settings, std::string_view key, std::vector<std::string> &folders) {
    for (std::string_view rest = settings; !rest.empty();) {
        const std::string_view line = rest.substr(0, rest.find('\n'));
        folders.push_back(valueIn(line, key));
        rest.remove_prefix(std::min(line.size() + 1, rest.size()));
    }
}

} // namespace

std::vector<std::string> cloudFolders(const Places &places) {
    std::vector<std::string> folders;
    for (const std::string &path : places.pathsOf("~/.dropbox/info.json"))
        addDropbox(settingsAt(path), folders);
    for (const char *place : {"$CONFIG/Nextcloud/nextcloud.cfg", "$CONFIG/ownCloud/owncloud.cfg"})
        for (const std::string &path : places.pathsOf(place))
            addValues(settingsAt(path), "localPath", folders);
    for (const std::string &path : places.pathsOf("$CONFIG/onedrive/config"))
        addValues(settingsAt(path), "sync_dir", folders);
    for (const std::string &path : places.pathsOf("$CONFIG/onedrive"))
        if (fileStatus(path)) // its settings need not name the usual folder
            folders.emplace_back("~/OneDrive");
    std::erase_if(folders, [](const std::string &folder) {
        return !folder.starts_with('/') && !folder.starts_with("~/");
    });
    for (std::string &folder : folders)
        if (folder.starts_with('/'))
            folder = FileURL(folder).standardized().path();
    return folders;
}

} // namespace brimvale::linuxCatalog
