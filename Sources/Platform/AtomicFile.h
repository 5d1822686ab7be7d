#pragma once

#include "Base/FileError.h"
#include "Base/StopFlag.h"
#include "Base/TextSink.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>

namespace brimvale {

// A file appears under its name all at once. It is written under another name in the same folder, and renamed
// when it is complete and on the disk. On failure nothing has changed.

/// Who can read a new file.
enum class Readers {
    usual, ///< as the umask allows
    owner
};

/// Puts a file with this content, which only its owner can read, at an absolute path, in the place of any
/// file or link that is there. The error is ECANCELED if `cancelled` is set.
[[nodiscard]] std::optional<FileError> writeFileAtomically(const std::string &path, std::string_view content,
                                                           const StopFlag &cancelled = {});

/// The same, but a link is followed, and a file that is replaced passes on its permissions. What is no file
/// (a pipe, a device) is written to directly.
[[nodiscard]] std::optional<FileError>
replaceFileAtomically(const std::string &path, std::string_view content, Readers readers = Readers::usual);

/// What becomes of a file that has the name already.
enum class Existing {
    stays,     ///< EEXIST
    isReplaced ///< as by `replaceFileAtomically`
};

/// A file that is written piece by piece, for content that is not wanted in memory at once. What was not
/// finished leaves nothing.
class GrowingFile final : public TextSink {
public:
    /// Begins a file for an absolute path. `readers`: of a new one; one that is replaced passes on its
    /// permissions.
    GrowingFile(std::string path, Existing existing, Readers readers = Readers::usual);
    ~GrowingFile() override;
    GrowingFile(const GrowingFile &) = delete;
    GrowingFile &operator=(const GrowingFile &) = delete;

    /// After a failure, nothing more is written.
    void write(std::string_view text) override;

    /// Gives the file its name; call it last. The first failure since the beginning.
    [[nodiscard]] std::optional<FileError> finish();

private:
    void pass();

    struct Place;
    std::unique_ptr<Place> place_;
    std::string buffer_;
    std::optional<FileError> failure_;
};

} // namespace brimvale
