#include "Catalogs/Linux/SystemName.h"

#include "Platform/FileContents.h"

#include <algorithm>
#include <cstddef>
#include <initializer_list>
#include <optional>
#include <string_view>

namespace brimvale::linuxCatalog {

namespace {

constexpr std::size_t releaseFileLimit = 65'536; // bytes; the file has a few hundred
constexpr std::size_t longestName = 80;

/// The value of a line KEY=value or KEY="value"; empty where there is none.
std::string valueOf(const std::string &settings, const std::string &key) {
    const std::string lines = "\n" + settings;
    const std::size_t at = lines.find("\n" + key + "=");
    if (at == std::string::npos)
        return "";
    std::string value = lines.substr(at + key.size() + 2);
    value.resize(std::min(value.find('\n'), value.size()));
    std::erase_if(value, [](char sign) { return sign == '"' || sign == '\'' || sign == '\\'; });
    return value;
}

bool isPlain(const std::string &name) {
    return !name.empty() && name.size() <= longestName &&
           std::all_of(name.begin(), name.end(), [](char sign) { return sign >= ' ' && sign <= '~'; });
}

/// The value of the first of these keys that the system gives.
std::string nameIn(const Host &host, std::initializer_list<const char *> keys) {
    for (const char *file : {"/etc/os-release", "/usr/lib/os-release"}) {
        const std::optional<std::string> settings = contentsOfFile(host.placeOf(file), releaseFileLimit);
        if (!settings)
            continue;
        for (const char *key : keys)
            if (std::string name = valueOf(*settings, key); isPlain(name))
                return name;
    }
    return "The system";
}

} // namespace

std::string systemName(const Host &host) {
    return nameIn(host, {"PRETTY_NAME", "NAME"});
}

std::string distributionName(const Host &host) {
    return nameIn(host, {"NAME", "PRETTY_NAME"});
}

} // namespace brimvale::linuxCatalog
