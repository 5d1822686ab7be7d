#include "Platform/ExtendedAttributes.h"

#include "Platform/Posix/AttributeCalls.h"

#include <cerrno>
#include <optional>
#include <utility>

namespace brimvale {

namespace {

/// Asks for the size first, and tries again a few times if it has grown since.
template<class Call>
std::optional<std::string> bytesOf(Call call) {
    for (int attempt = 0; attempt < 4; ++attempt) {
        const ssize_t size = call(nullptr, 0);
        if (size < 0)
            return std::nullopt;
        std::string bytes(static_cast<std::size_t>(size), '\0');
        const ssize_t count = size == 0 ? 0 : call(bytes.data(), bytes.size());
        if (count >= 0) {
            bytes.resize(static_cast<std::size_t>(count));
            return bytes;
        }
        if (errno != ERANGE)
            return std::nullopt;
    }
    return std::nullopt;
}

std::optional<std::string> valueOf(const std::string &path, const std::string &name) {
    return bytesOf([&](char *buffer, std::size_t size) {
        return readAttribute(path.c_str(), name.c_str(), buffer, size);
    });
}

} // namespace

std::vector<std::string> lostAttributes(const std::string &original, const std::string &copy) {
    const std::string names = bytesOf([&](char *buffer, std::size_t size) {
                                  return listAttributes(original.c_str(), buffer, size);
                              }).value_or("");
    std::vector<std::string> lost;
    for (std::size_t start = 0; start < names.size();) {
        std::string name = names.c_str() + start;
        start += name.size() + 1;
        if (belongsToSystem(name))
            continue;
        const std::optional<std::string> value = valueOf(original, name);
        if (value && valueOf(copy, name) != value)
            lost.push_back(std::move(name));
    }
    return lost;
}

} // namespace brimvale
