#include "Platform/Linux/BlockDevice.h"

#include "Base/FileURL.h"
#include "Base/Text.h"
#include "Platform/FileContents.h"

#include <algorithm>
#include <cstddef>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <system_error>

namespace brimvale {

namespace fs = std::filesystem;

namespace {

constexpr int deepestStack = 8;

constexpr std::size_t longestAttribute = 4096; // of a device, in bytes

/// What the kernel says about a device in one of its files, without space around it; empty if nothing.
std::string attribute(const std::string &folder, std::string_view name) {
    return std::string(trimmed(contentsOfFile(joinPath(folder, name), longestAttribute).value_or("")));
}

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

/// The device below a stacked one; nothing where it is not stacked.
std::optional<fs::path> deviceBelow(const fs::path &device) {
    std::error_code error;
    const fs::directory_iterator below(device / "slaves", error);
    if (error || below == fs::directory_iterator())
        return std::nullopt;
    fs::path found = fs::canonical(below->path(), error);
    return error ? std::nullopt : std::optional(std::move(found));
}

fs::path lowestDevice(fs::path device) {
    for (int depth = 0; depth < deepestStack; ++depth) {
        std::optional<fs::path> below = deviceBelow(device);
        if (!below)
            break;
        device = *std::move(below);
    }
    return device;
}

/// The disk of a partition; the device itself where it is none.
fs::path diskOf(const fs::path &device) {
    std::error_code error;
    return fs::exists(device / "partition", error) ? device.parent_path() : device;
}

bool isEncrypted(fs::path device) {
    for (int depth = 0; depth < deepestStack; ++depth) {
        if (attribute(device.native(), "dm/uuid").starts_with("CRYPT-"))
            return true;
        std::optional<fs::path> below = deviceBelow(device);
        if (!below)
            return false;
        device = *std::move(below);
    }
    return false;
}

/// "fedora-vg/root" for "fedora--vg-root": the volume manager joins the names of a group and of a volume with
/// a hyphen, and doubles the hyphens in them.
std::string unjoined(const std::string &name) {
    std::string text;
    for (std::size_t i = 0; i < name.size(); ++i) {
        const bool isDoubled = name.compare(i, 2, "--") == 0;
        text.push_back(name[i] == '-' && !isDoubled ? '/' : name[i]);
        i += isDoubled ? 1 : 0;
    }
    return text;
}

/// The desktop names an opened device after a long number. The device below tells people more.
std::string nameInMapper(const fs::path &device) {
    std::string name = attribute(device.native(), "dm/name");
    if (attribute(device.native(), "dm/uuid").starts_with("LVM-"))
        return unjoined(name);
    if (name.empty() || name.starts_with("luks-"))
        return deviceBelow(device).value_or(device).filename().native();
    return name;
}

/// The label of a Btrfs that may be on several devices.
std::optional<std::string> labelOfPool(const std::string &device, const std::string &root) {
    std::error_code error;
    for (fs::directory_iterator pool(joinPath(root, "sys/fs/btrfs"), error), end; !error && pool != end;
         pool.increment(error)) {
        std::error_code unknown;
        if (fs::exists(fs::symlink_status(pool->path() / "devices" / device, unknown)))
            return attribute(pool->path().native(), "label");
    }
    return std::nullopt;
}

std::optional<std::string> labelOfDevice(const fs::path &wanted, const std::string &root) {
    std::error_code error;
    for (fs::directory_iterator label(joinPath(root, "dev/disk/by-label"), error), end;
         !error && label != end; label.increment(error)) {
        std::error_code dangling;
        if (fs::canonical(label->path(), dangling).filename() == wanted && !dangling)
            return unescapedLabel(label->path().filename().native());
    }
    return std::nullopt;
}

} // namespace

std::optional<std::string> deviceFolderOf(const Mount &mount, const std::string &root) {
    std::error_code error;
    const fs::path byNumber = fs::canonical(joinPath(root, "sys/dev/block/" + mount.device), error);
    if (!error)
        return byNumber.native();
    // A Btrfs has a number that is no device's.
    if (!mount.source.starts_with("/dev/"))
        return std::nullopt;
    const fs::path node = fs::canonical(joinPath(root, mount.source.substr(1)), error);
    if (error)
        return std::nullopt;
    const fs::path byName =
        fs::canonical(joinPath(root, "sys/class/block/" + node.filename().native()), error);
    return error ? std::nullopt : std::optional(byName.native());
}

std::optional<std::string> labelOf(const Mount &mount, const std::string &root) {
    const std::optional<std::string> folder = deviceFolderOf(mount, root);
    if (!folder)
        return std::nullopt;
    const fs::path device = fs::path(*folder).filename();
    std::optional<std::string> label =
        mount.type == "btrfs" ? labelOfPool(device.native(), root) : std::nullopt;
    if (!label)
        label = labelOfDevice(device, root);
    return label && !label->empty() ? label : std::nullopt;
}

bool isInternalDevice(const std::string &folder) {
    const std::string path = diskOf(lowestDevice(folder)).native();
    // A disk in a USB case reports itself as not removable.
    const bool isPluggedIn = path.find("/usb") != std::string::npos || path.find("/fw") != std::string::npos;
    return attribute(path, "removable") != "1" && !isPluggedIn;
}

std::optional<std::string> deviceName(const std::string &folder) {
    if (isEncrypted(folder))
        return "Encrypted volume " + nameInMapper(folder);
    if (attribute(folder, "dm/uuid").starts_with("LVM-"))
        return "Volume " + nameInMapper(folder);
    if (isInternalDevice(folder))
        return std::nullopt;
    const std::string disk = diskOf(lowestDevice(folder)).native();
    const std::string maker = attribute(disk, "device/vendor"), model = attribute(disk, "device/model");
    const std::string name = maker.empty() || model.starts_with(maker) ? model : maker + " " + model;
    const std::string card = attribute(disk, "device/name"); // of a memory card
    return !name.empty() ? std::optional(name) : !card.empty() ? std::optional(card) : std::nullopt;
}

} // namespace brimvale
