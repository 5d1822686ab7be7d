#pragma once

#include "Platform/FileStatus.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// An open folder. Its entries are reached relative to it, so a path may be longer than one system call takes
/// and no link can come between. One descriptor, closed with the object.
class Folder {
public:
    /// A folder that is not open.
    Folder() = default;
    /// Takes over the open descriptor of a folder; not open for a negative one.
    explicit Folder(int descriptor) : descriptor_(descriptor) {}
    Folder(Folder &&other) noexcept;
    Folder &operator=(Folder &&other) noexcept;
    ~Folder();

    /// What to do where the path itself is a link to a folder.
    enum class Links { follow, refuse };

    /// Opens the folder at an absolute path of any length. Not open (with errno set) on failure.
    [[nodiscard]] static Folder at(const std::string &path, Links links);

    /// Opens the subfolder `name`; a link is refused. Not open (with errno set) on failure.
    [[nodiscard]] Folder subfolder(const char *name) const;

    /// The ancestor that many levels up, at its current place. Not open on failure.
    [[nodiscard]] Folder ancestor(std::size_t levels) const;

    /// The same folder with a descriptor of its own. Not open on failure.
    [[nodiscard]] Folder duplicate() const;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    /// For other system calls on the folder; the object keeps it.
    [[nodiscard]] int descriptor() const { return descriptor_; }

    /// Which folder this is; nothing when it is not open.
    [[nodiscard]] std::optional<FileIdentity> identity() const;

    /// Closes it early.
    void close();

    /// The name of the next entry in the system's order, without "." and ".."; null at the end and on a read
    /// error, which sets errno (0 at the end). Valid until the next call.
    [[nodiscard]] const char *nextName();

    /// The status of the entry `name`, links not followed; nothing on failure.
    [[nodiscard]] std::optional<FileStatus> statusOfEntry(const char *name) const;

private:
    int descriptor_ = -1;
    void *names_ = nullptr; ///< the system's state for reading names
};

/// Whether the file system of an open folder keeps the number of an entry as long as the entry exists. FAT,
/// exFAT, Windows shares and some programs that serve storage do not.
[[nodiscard]] bool keepsFileNumbers(const Folder &folder);

/// The names in the folder at an absolute path (a link to a folder is followed) in the system's order,
/// without "." and ".."; nothing when they cannot all be listed.
[[nodiscard]] std::optional<std::vector<std::string>> namesIn(const std::string &path);

/// The number of descriptors this process may have open at once.
[[nodiscard]] std::size_t descriptorLimit();

/// Lets this process have as many open as all walks of folders can use, if the system permits it and permits
/// fewer so far, as a Mac does. Call it once, when the program starts.
void raiseDescriptorLimit();

} // namespace brimvale
