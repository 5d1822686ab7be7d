#pragma once

#include <functional>
#include <string>
#include <string_view>

namespace brimvale {

/// An absolute path as the bytes of the file system. Nothing here changes those bytes for display, and only
/// `standardized` looks at the disk.
class FileURL {
public:
    /// `path` unchanged; it must begin with a slash (a relative path stops the program, see `resolving`).
    explicit FileURL(std::string path);

    /// `path` itself when it is absolute, else the path inside the folder `base`.
    [[nodiscard]] static FileURL resolving(std::string_view path, const FileURL &base);

    [[nodiscard]] const std::string &path() const { return path_; }

    /// The last component: "b" of "/a/b" and of "/a/b/", "/" of "/".
    [[nodiscard]] std::string_view fileName() const;

    /// Whether the last component names an entry of the parent folder, so that it can be removed or moved: it
    /// is not "/", "." or "..", and the path holds no zero byte, which would cut it short in a system call.
    [[nodiscard]] bool namesEntry() const;

    /// This path, a slash, and `component` (which may hold several components, but no leading slash).
    [[nodiscard]] FileURL appending(std::string_view component) const;

    /// The parent folder; the parent of "/" is "/".
    [[nodiscard]] FileURL parent() const;

    /// The same place without "//", "/./", "..", or a trailing slash. Links are resolved only where a ".."
    /// follows them; where that fails, ".." drops the component before it. A leading "/private" is dropped
    /// when the rest exists, is the same place, and is not inside one of macOS's own top-level folders
    /// (/Users, /Library …).
    [[nodiscard]] FileURL standardized() const;

    friend bool operator==(const FileURL &, const FileURL &) = default;
    friend std::strong_ordering operator<=>(const FileURL &, const FileURL &) = default;

private:
    std::string path_;
};

/// `name` inside the folder `path`, with one slash between them.
[[nodiscard]] std::string joinPath(std::string_view path, std::string_view name);

/// Whether `path` is `folder` or inside it, by their names alone. Both are absolute or both relative, in
/// plain form; every relative path is inside the empty one.
[[nodiscard]] bool isAtOrUnder(std::string_view path, std::string_view folder);

/// A name without its path extension: "a.b" of "a.b.c". The leading dot of ".name" starts no extension, and
/// an extension holds no space ("Dr. Who" has none).
[[nodiscard]] std::string_view deletingPathExtension(std::string_view name);

/// Replaces a leading "~" that stands alone or before a slash by `home`; any other path stays unchanged.
[[nodiscard]] std::string expandingTilde(std::string_view path, std::string_view home);

} // namespace brimvale

template<>
struct std::hash<brimvale::FileURL> {
    std::size_t operator()(const brimvale::FileURL &url) const noexcept {
        return std::hash<std::string>{}(url.path());
    }
};
