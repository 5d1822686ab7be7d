#include "Platform/Linux/BlockDevice.h"

#include "Platform/FileContents.h"

#include <filesystem>
#include <optional>
#include <string>
#include <sys/stat.h>
#include <sys/sysmacros.h>
#include <system_error>

namespace brimvale {

namespace fs = std::filesystem;

namespace {

constexpr int deepestStack = 8;

constexpr std::size_t longestAttribute = 16; // of a device, in bytes

/// Decodes a name of the device manager, which writes unsafe bytes as "\x" and two digits.
std::string unescapedLabel(const std::string &name) {
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const std::string digits = name.substr(i, 2) == "\\x" ? name.substr(i + 2, 2) : "";
        if (digits.size() == 2 && digits.find_first_not_of("0123456789abcdefABCDEF") == std::string::npos) {
            text.push_back(static_cast<char>(std::stoi(digits, nullptr, 16)));
            i += 3;
        } else {
            text.push_back(name[i]);
        }
    }
    return text;
}

/// A device at the bottom of a stack of devices; `device` itself where it is not stacked.
fs::path lowestDevice(fs::path device) {
    std::error_code error;
    for (int depth = 0; depth < deepestStack; ++depth) {
        const fs::directory_iterator below(device / "slaves", error);
        if (error || below == fs::directory_iterator())
            break;
        device = fs::canonical(below->path(), error);
    }
    return device;
}

} // namespace

std::optional<std::string> labelOf(const std::string &device) {
    std::error_code error;
    const fs::path wanted = fs::canonical(device, error);
    if (error)
        return std::nullopt;
    for (fs::directory_iterator label("/dev/disk/by-label", error), end; !error && label != end;
         label.increment(error)) {
        std::error_code dangling;
        if (fs::canonical(label->path(), dangling) == wanted && !dangling)
            return unescapedLabel(label->path().filename().native());
    }
    return std::nullopt;
}

std::optional<bool> isInternalDevice(const std::string &device) {
    struct stat record {};
    if (stat(device.c_str(), &record) != 0 || !S_ISBLK(record.st_mode))
        return std::nullopt;
    const std::string number =
        std::to_string(major(record.st_rdev)) + ":" + std::to_string(minor(record.st_rdev));
    std::error_code error;
    fs::path folder = fs::canonical("/sys/dev/block/" + number, error);
    if (error)
        return std::nullopt;
    folder = lowestDevice(folder);
    if (fs::exists(folder / "partition", error))
        folder = folder.parent_path();
    const std::string &path = folder.native();
    const bool isRemovable =
        contentsOfFile(path + "/removable", longestAttribute).value_or("0").starts_with('1');
    // A disk in a USB case reports itself as not removable.
    const bool isPluggedIn = path.find("/usb") != std::string::npos || path.find("/fw") != std::string::npos;
    return !isRemovable && !isPluggedIn;
}

} // namespace brimvale
