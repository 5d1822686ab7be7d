#include "Base/KeyFile.h"

#include "Base/Text.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

/// The character that an escape stands for.
char unescaped(char letter) {
    switch (letter) {
    case 's':
        return ' ';
    case 'n':
        return '\n';
    case 't':
        return '\t';
    case 'r':
        return '\r';
    default:
        return letter;
    }
}

} // namespace

KeyFile::KeyFile(std::string_view bytes) {
    Group *group = nullptr;
    while (!bytes.empty()) {
        const std::size_t end = std::min(bytes.find('\n'), bytes.size());
        const std::string_view line = trimmed(bytes.substr(0, end));
        bytes.remove_prefix(std::min(end + 1, bytes.size()));
        if (line.size() > 2 && line.starts_with('[') && line.ends_with(']')) {
            group = &groups_[std::string(line.substr(1, line.size() - 2))];
            continue;
        }
        const std::size_t equals = line.find('=');
        if (group != nullptr && !line.starts_with('#') && equals != std::string_view::npos)
            group->insert_or_assign(std::string(trimmed(line.substr(0, equals))),
                                    std::string(trimmed(line.substr(equals + 1))));
    }
}

std::optional<std::string_view> KeyFile::raw(std::string_view group, std::string_view key) const {
    const auto keys = groups_.find(group);
    if (keys == groups_.end())
        return std::nullopt;
    const auto value = keys->second.find(key);
    return value == keys->second.end() ? std::nullopt : std::optional<std::string_view>(value->second);
}

std::string KeyFile::text(std::string_view group, std::string_view key) const {
    const std::string_view value = raw(group, key).value_or(std::string_view());
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i)
        text += value[i] == '\\' && i + 1 < value.size() ? unescaped(value[++i]) : value[i];
    return text;
}

bool KeyFile::isTrue(std::string_view group, std::string_view key) const {
    return raw(group, key) == "true";
}

std::vector<std::string> KeyFile::list(std::string_view group, std::string_view key) const {
    std::vector<std::string> texts;
    std::string_view rest = raw(group, key).value_or(std::string_view());
    while (!rest.empty()) {
        const std::size_t end = std::min(rest.find(';'), rest.size());
        if (end > 0)
            texts.emplace_back(rest.substr(0, end));
        rest.remove_prefix(std::min(end + 1, rest.size()));
    }
    return texts;
}

std::vector<std::string> KeyFile::groups() const {
    std::vector<std::string> names;
    for (const auto &[name, keys] : groups_)
        names.push_back(name);
    return names;
}

} // namespace brimvale
