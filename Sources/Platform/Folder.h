#pragma once

#include "Platform/FileStatus.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace brimvale {

/// An open folder: entries are looked at and sub-folders opened relative to it, so a path may be longer than
/// the system takes in one call and a link never stands in between. One descriptor, closed with the object.
class Folder {
public:
    /// A folder that is not open.
    Folder() = default;
    /// Takes over an open descriptor of a folder; not open for a negative one.
    explicit Folder(int descriptor) : descriptor_(descriptor) {}
    Folder(Folder &&other) noexcept;
    Folder &operator=(Folder &&other) noexcept;
    ~Folder();

    /// What to do where the path itself is a link to a folder.
    enum class Links { follow, refuse };

    /// Opens the folder at an absolute path of any length. Not open (with errno set) on failure.
    [[nodiscard]] static Folder at(const std::string &path, Links links);

    /// Opens the sub-folder `name`; a link is refused. Not open (with errno set) on failure.
    [[nodiscard]] Folder subfolder(const char *name) const;

    /// The folder that many levels up, wherever it is by now. Not open on failure.
    [[nodiscard]] Folder ancestor(std::size_t levels) const;

    /// The same folder under a descriptor of its own. Not open on failure.
    [[nodiscard]] Folder duplicate() const;

    [[nodiscard]] bool isOpen() const { return descriptor_ >= 0; }

    /// For what else the system can do with an open folder; still the object's own.
    [[nodiscard]] int descriptor() const { return descriptor_; }

    /// Which folder this is; nothing when it is not open.
    [[nodiscard]] std::optional<FileIdentity> identity() const;

    /// Closes it early.
    void close();

    /// The next entry's name, "." and ".." left out, in the order of the system; null at the end and on a
    /// read error, which sets errno (0 at the end). Valid until the next call.
    [[nodiscard]] const char *nextName();

    /// The status of the entry `name`, links not followed; nothing when it cannot be had.
    [[nodiscard]] std::optional<FileStatus> statusOfEntry(const char *name) const;

private:
    int descriptor_ = -1;
    void *names_ = nullptr; ///< how the system reads names, while they are asked for
};

/// The names in the folder at an absolute path (a link to a folder is followed), "." and ".." left out, in
/// the order of the system; nothing when it cannot be listed to its end.
[[nodiscard]] std::optional<std::vector<std::string>> namesIn(const std::string &path);

/// How many descriptors this process may have open at once.
[[nodiscard]] std::size_t descriptorLimit();

} // namespace brimvale
