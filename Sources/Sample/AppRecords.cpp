#include "Sample/AppRecords.h"

#include <cstdlib>

namespace brimvale::sample {

namespace {

std::string bytesOfHex(std::string_view hex) {
    std::string bytes;
    for (std::size_t i = 0; i + 1 < hex.size(); i += 2)
        bytes += static_cast<char>(std::strtol(std::string(hex.substr(i, 2)).c_str(), nullptr, 16));
    return bytes;
}

std::string bigEndian(std::int64_t number) {
    std::string bytes;
    for (int shift = 56; shift >= 0; shift -= 8)
        bytes += static_cast<char>(static_cast<std::uint64_t>(number) >> shift & 0xFF);
    return bytes;
}

} // namespace

std::string desktopEntry(std::string_view name, std::string_view command, std::string_view keys) {
    std::string text = "[Desktop Entry]\nType=Application\nName=";
    text.append(name).append("\nExec=").append(command).append("\n").append(keys);
    return text.append("[Desktop Action New]\nName=New Window\nNoDisplay=true\n");
}

/// The tuple of GVariant with the type (ssasta{sv}): origin, commit, subpaths, size, and the rest by name.
std::string flatpakDeploy(std::int64_t bytes) {
    const std::string originAndCommit =
        "666c617468756200616261626162616261626162616261626162616261626162616261626162616261626162616261626162"
        "6162616261626162616261626162616261626162616200";
    const std::string details =
        "6465706c6f792d76657273696f6e00000400000000690f0074696d657374616d700000000000000000f1"
        "53650000000000740a000000000070726576696f75732d696473000000000061730d00000000617070646174612d6e616d65"
        "000000004d6170730000730d617070646174612d76657273696f6e0034372e310000731072756e74696d65006f72672e676e"
        "6f6d652e506c6174666f726d2f7838365f36342f34370000730817334c6880a8";
    const std::string ends = "490049000800";
    return bytesOfHex(originAndCommit + "00000000000000") + bigEndian(bytes) + bytesOfHex(details + ends);
}

std::string iconPicture(std::string_view color, std::string_view shape) {
    std::string picture = "<svg xmlns=\"http://www.w3.org/2000/svg\" viewBox=\"0 0 64 64\">"
                          "<rect x=\"4\" y=\"4\" width=\"56\" height=\"56\" rx=\"13\" fill=\"";
    picture.append(color).append("\"/><g fill=\"none\" stroke=\"#fff\" stroke-width=\"5\" "
                                 "stroke-linecap=\"round\" stroke-linejoin=\"round\">");
    return picture.append("<path d=\"").append(shape).append("\"/></g></svg>\n");
}

std::string infoPropertyList(std::string_view identifier, std::string_view name, std::string_view version) {
    std::string text = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<plist version=\"1.0\"><dict>\n";
    const auto add = [&](std::string_view key, std::string_view value) {
        text.append("<key>").append(key).append("</key><string>").append(value).append("</string>\n");
    };
    add("CFBundleIdentifier", identifier);
    add("CFBundleDisplayName", name);
    add("CFBundleShortVersionString", version);
    add("CFBundlePackageType", "APPL");
    return text.append("</dict></plist>\n");
}

} // namespace brimvale::sample
