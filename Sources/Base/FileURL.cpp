#include "Base/FileURL.h"

#include "Base/Diagnostics.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <system_error>
#include <utility>
#include <vector>

namespace brimvale {

namespace {

using Components = std::vector<std::string_view>;

/// The parts between the slashes, without empty ones and ".".
Components componentsOf(std::string_view path) {
    Components components;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view component = path.substr(0, end);
        if (!component.empty() && component != ".")
            components.push_back(component);
        path.remove_prefix(std::min(end + 1, path.size()));
    }
    return components;
}

std::string pathOf(const Components &components) {
    std::string path;
    for (const std::string_view component : components)
        path.append("/").append(component);
    return path.empty() ? "/" : path;
}

/// The path without "..". Links before a ".." are followed where the folder exists; otherwise ".." drops a
/// component.
std::string resolvingParents(const Components &components) {
    std::string path;
    for (const std::string_view component : components) {
        if (component != "..") {
            path.append("/").append(component);
            continue;
        }
        std::error_code error;
        const std::filesystem::path real = std::filesystem::canonical(path.empty() ? "/" : path, error);
        if (!error)
            path = real.native();
        path.resize(path.empty() ? 0 : path.rfind('/'));
    }
    return path.empty() ? "/" : path;
}

/// Whether the "/private" before `rest` may be dropped: macOS keeps /etc, /tmp and /var as links into
/// /private. Only where both are the same folder, so another folder named /private is left alone.
bool dropsPrivate(const std::string &rest) {
    static constexpr std::array<std::string_view, 12> standing = {
        "/Applications", "/Library", "/System", "/Users",   "/Volumes", "/bin",
        "/cores",        "/dev",     "/opt",    "/private", "/sbin",    "/usr"};
    for (const std::string_view folder : standing)
        if (isAtOrUnder(rest, folder))
            return false;
    std::error_code error;
    const std::string top = rest.substr(0, rest.find('/', 1));
    return std::filesystem::equivalent(top, "/private" + top, error) &&
           std::filesystem::exists(std::filesystem::symlink_status(rest, error));
}

} // namespace

FileURL::FileURL(std::string path) : path_(std::move(path)) {
    if (!path_.starts_with('/'))
        endProgram("not an absolute path: " + path_);
}

FileURL FileURL::resolving(std::string_view path, const FileURL &base) {
    return path.starts_with('/') ? FileURL(std::string(path)) : base.appending(path);
}

std::string_view FileURL::fileName() const {
    std::string_view path = path_;
    while (path.size() > 1 && path.ends_with('/'))
        path.remove_suffix(1);
    return path.size() == 1 ? path : path.substr(path.rfind('/') + 1);
}

bool FileURL::namesEntry() const {
    const std::string_view name = fileName();
    return name != "/" && name != "." && name != ".." && path_.find('\0') == std::string::npos;
}

FileURL FileURL::appending(std::string_view component) const {
    return FileURL(joinPath(path_, component));
}

FileURL FileURL::parent() const {
    const std::string_view last = fileName();
    std::size_t end = static_cast<std::size_t>(last.data() - path_.data());
    while (end > 1 && path_[end - 1] == '/')
        --end;
    return FileURL(path_.substr(0, std::max<std::size_t>(end, 1)));
}

FileURL FileURL::standardized() const {
    const Components components = componentsOf(path_);
    bool hasParents = false;
    for (const std::string_view component : components)
        hasParents = hasParents || component == "..";
    std::string path = hasParents ? resolvingParents(components) : pathOf(components);

    constexpr std::string_view privateFolder = "/private";
    if (path.size() > privateFolder.size() && isAtOrUnder(path, privateFolder)) {
        std::string rest = path.substr(privateFolder.size());
        if (dropsPrivate(rest))
            path = std::move(rest);
    }
    return FileURL(std::move(path));
}

std::string joinPath(std::string_view path, std::string_view name) {
    std::string joined;
    joined.reserve(path.size() + name.size() + 1);
    joined.append(path);
    if (!path.ends_with('/'))
        joined.push_back('/');
    return joined.append(name);
}

bool isAtOrUnder(std::string_view path, std::string_view folder) {
    return path.starts_with(folder) && (path.size() == folder.size() || folder.empty() ||
                                        folder.ends_with('/') || path[folder.size()] == '/');
}

std::string_view deletingPathExtension(std::string_view name) {
    const std::size_t dot = name.rfind('.');
    if (dot == std::string_view::npos || dot == 0 || dot + 1 == name.size() ||
        name.find(' ', dot) != std::string_view::npos)
        return name;
    return name.substr(0, dot);
}

std::string expandingTilde(std::string_view path, std::string_view home) {
    if (path == "~")
        return std::string(home);
    return path.starts_with("~/") ? joinPath(home, path.substr(2)) : std::string(path);
}

} // namespace brimvale
