#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace brimvale {

/// An absolute path, kept as the bytes that the file system knows it by. Nothing here changes those bytes
/// for display, and no operation but `standardized` looks at the disk.
class FileURL {
public:
    /// `path` as it stands; it must begin with a slash (a relative path stops the program: it has no meaning
    /// without a folder, see `resolving`).
    explicit FileURL(std::string path);

    /// `path` itself when it is absolute, else the path inside the folder `base`.
    [[nodiscard]] static FileURL resolving(std::string_view path, const FileURL &base);

    [[nodiscard]] const std::string &path() const { return path_; }

    /// The last component: "b" of "/a/b" and of "/a/b/", "/" of "/".
    [[nodiscard]] std::string_view fileName() const;

    /// Whether the last component names an entry of the enclosing folder, so that it can be removed or moved:
    /// it is not "/", "." or "..", and no zero byte cuts the path short for the system.
    [[nodiscard]] bool namesEntry() const;

    /// This path, a slash, and `component` (which may hold several components, but no leading slash).
    [[nodiscard]] FileURL appending(std::string_view component) const;

    /// The enclosing folder; that of "/" is "/".
    [[nodiscard]] FileURL parent() const;

    /// The same place in its plain form: no "//", no "/./", no trailing slash, no "..". Links are resolved
    /// only where a ".." follows them; where that fails, ".." drops the component before it. A leading
    /// "/private" goes when the rest exists, is the same place, and is not inside a folder that macOS keeps
    /// at the top by itself (/Users, /Library …).
    [[nodiscard]] FileURL standardized() const;

    friend bool operator==(const FileURL &, const FileURL &) = default;
    friend std::strong_ordering operator<=>(const FileURL &, const FileURL &) = default;

private:
    std::string path_;
};

/// `name` inside the folder `path`, with one slash between them.
[[nodiscard]] std::string joinPath(std::string_view path, std::string_view name);

/// A name without its path extension: "a.b" of "a.b.c". A name that only begins with a dot has none, and what
/// holds a space is none ("Dr. Who").
[[nodiscard]] std::string_view deletingPathExtension(std::string_view name);

/// A leading "~" that stands alone or before a slash replaced by `home`; any other path as it is.
[[nodiscard]] std::string expandingTilde(std::string_view path, std::string_view home);

} // namespace brimvale

template<>
struct std::hash<brimvale::FileURL> {
    std::size_t operator()(const brimvale::FileURL &url) const noexcept {
        return std::hash<std::string>{}(url.path());
    }
};
