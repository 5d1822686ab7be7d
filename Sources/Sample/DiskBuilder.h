#pragma once

#include "Base/Date.h"
#include "Base/FileError.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace brimvale::sample {

inline constexpr std::int64_t kilobyte = 1000; // bytes

/// A file that takes space. Files of one name and size are duplicates; all others differ in their contents.
struct SizedFile {
    const char *path; ///< "~" is the home folder
    std::int64_t kilobytes;
    int days; ///< since it was modified
};

/// Many files of one size in one folder.
struct ManyFiles {
    const char *folder;
    const char *before; ///< of the number in each name
    const char *after;
    int count;
    std::int64_t kilobytes; ///< of each
    int newestDays;         ///< since the last of them was modified
    int oldestDays;
};

/// All files of a disk that only take space.
struct SpaceFiles {
    std::span<const SizedFile> sized;
    std::span<const ManyFiles> many;

    /// The bytes that they take undivided.
    [[nodiscard]] std::int64_t bytes() const;
};

/// Makes the entries of a disk in a folder. The first failure is kept, and nothing is made after it.
class DiskBuilder {
public:
    /// `root` exists. `home` is a path on the disk, such as "/home/sam". Sizes of a megabyte and more, and
    /// the numbers of many files, are divided by `divisor`.
    DiskBuilder(std::string root, std::string home, Date now, std::int64_t divisor = 1);

    /// The moment from which days are counted back.
    [[nodiscard]] Date today() const { return now_; }

    /// Where a path of the disk is.
    [[nodiscard]] std::string placeOf(std::string_view path) const;

    /// Makes files whose space is all allocated, and their missing folders.
    void makeFiles(std::span<const SizedFile> files);
    void makeFiles(const SpaceFiles &files);
    void makeFile(std::string_view path, std::int64_t bytes, int days);

    void writeFile(std::string_view path, std::string_view content, int days);
    /// A script that can be started, for a POSIX shell.
    void writeScript(std::string_view path, std::string_view commands, int days);
    void makeFolder(std::string_view path, int days);
    /// A symbolic link with this target, taken as it is.
    void makeLink(std::string_view path, const std::string &target);
    /// Closes a folder to everyone.
    void closeFolder(std::string_view path);

    /// Gives every folder the date of the newest entry that was made in it. Call it last.
    void dateFolders();

    [[nodiscard]] const std::optional<FileError> &failure() const { return failure_; }

private:
    void makeParents(const std::string &place, int days);
    /// Makes a file of so many bytes that starts with the content, or is only the content if that is longer.
    void make(const std::string &place, std::string_view content, std::int64_t bytes, int days);
    void setDate(const std::string &place, int days);
    void noteFailure(const std::string &place);

    std::string root_;
    std::string home_;
    Date now_;
    std::int64_t divisor_;
    std::map<std::string, int, std::less<>> folders_; ///< the days since the newest entry was made in each
    std::optional<FileError> failure_;
};

} // namespace brimvale::sample
