#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace brimvale {

/// A file of groups with lines "key=value", as desktop entries and Flatpak's metadata are. Lines that are
/// neither are left out.
class KeyFile {
public:
    explicit KeyFile(std::string_view bytes);

    /// The value of a key as it stands; nothing where there is no such key.
    [[nodiscard]] std::optional<std::string_view> raw(std::string_view group, std::string_view key) const;
    /// The value as text, with its escapes resolved; empty where there is no such key.
    [[nodiscard]] std::string text(std::string_view group, std::string_view key) const;
    /// Whether the value is "true".
    [[nodiscard]] bool isTrue(std::string_view group, std::string_view key) const;
    /// The texts of a list with semicolons; those that are empty are left out.
    [[nodiscard]] std::vector<std::string> list(std::string_view group, std::string_view key) const;
    /// The names of all groups, each once.
    [[nodiscard]] std::vector<std::string> groups() const;

private:
    using Group = std::map<std::string, std::string, std::less<>>;
    std::map<std::string, Group, std::less<>> groups_;
};

} // namespace brimvale
