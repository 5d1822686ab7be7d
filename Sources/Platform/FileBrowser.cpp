#include "Platform/FileBrowser.h"

#include <string_view>

namespace brimvale {

std::string FileBrowser::fileURI(const FileURL &item) {
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789/-._~";
    constexpr std::string_view digits = "0123456789ABCDEF";
    std::string uri = "file://";
    for (const char byte : item.path()) {
        const auto value = static_cast<unsigned char>(byte);
        if (plain.find(byte) != std::string_view::npos)
            uri.push_back(byte);
        else
            uri.append({'%', digits[value >> 4U], digits[value & 15U]});
    }
    return uri;
}

} // namespace brimvale
