#pragma once

#include "Base/FileURL.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace brimvale::testing {

/// A fresh folder that goes with the object, whatever was put into it. Its path is in the plain form, in
/// which `FileURL::standardized` leaves it, and holds no link but those of the system.
class TemporaryFolder {
public:
    TemporaryFolder();
    ~TemporaryFolder();
    TemporaryFolder(const TemporaryFolder &) = delete;
    TemporaryFolder &operator=(const TemporaryFolder &) = delete;

    [[nodiscard]] const std::string &path() const { return path_; }
    [[nodiscard]] std::string path(std::string_view inside) const { return joinPath(path_, inside); }

    /// Makes a folder and its missing ancestors, and returns its path.
    std::string makeFolder(std::string_view inside) const;
    /// Makes a file of `bytes` bytes that are really allocated, and its missing ancestors.
    std::string makeFile(std::string_view inside, std::int64_t bytes = 0) const;
    /// Makes a file with this content, and its missing ancestors.
    std::string writeFile(std::string_view inside, std::string_view content) const;
    /// `name` where a file can be called so here, else the same as text: file systems of Macs take UTF-8
    /// only.
    [[nodiscard]] std::string possibleName(std::string_view name) const;
    /// Makes a program that a shell runs, and its missing ancestors.
    std::string makeScript(std::string_view inside, std::string_view commands) const;
    /// Makes a symbolic link with this target, taken as it stands.
    std::string makeLink(std::string_view inside, std::string_view target) const;

private:
    std::string path_;
};

/// Whether there is anything of that name, be it a link that leads nowhere.
[[nodiscard]] bool isThere(const std::string &path);

/// What is in a file; empty where there is none.
[[nodiscard]] std::string contentOf(const std::string &path);

/// What an entry itself takes on the disk, links not followed.
[[nodiscard]] std::int64_t allocatedBytes(const std::string &path);

} // namespace brimvale::testing
