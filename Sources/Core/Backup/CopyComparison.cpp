#include "Core/Backup/CopyComparison.h"

#include "Base/FileURL.h"
#include "Core/Scan/FileListing.h"
#include "Core/Scan/ParallelLoop.h"
#include "Platform/Digest.h"
#include "Platform/FileReader.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>
#include <utility>

namespace brimvale {

namespace {

constexpr std::size_t pieceSize = 262'144;

/// `relative` inside `place`; the place itself where `relative` is empty.
std::string within(const std::string &place, const std::string &relative) {
    return relative.empty() ? place : joinPath(place, relative);
}

/// A file that is read beside another one to compare them.
class Twin {
public:
    explicit Twin(const std::string &path) : reader_(path), isSame_(reader_.isOpen()) {}

    void compare(std::string_view piece) {
        buffer_.resize(std::max(buffer_.size(), piece.size()));
        if (isSame_)
            isSame_ = reader_.read(std::span(buffer_).first(piece.size())) == piece;
    }

    /// Whether this file is also at its end.
    [[nodiscard]] bool isSameToTheEnd() {
        std::array<char, 1> rest{};
        return isSame_ && reader_.read(rest) == std::string_view();
    }

private:
    FileReader reader_;
    std::vector<char> buffer_;
    bool isSame_;
};

struct ComparedFile {
    std::optional<BackedUpFile> copy;
    bool isSame = false;
};

ComparedFile compareFile(const std::string &source, const std::string &destination,
                         const std::string &relativePath, const StopFlag &cancelled) {
    Twin original(source);
    ComparedFile result;
    result.copy = readBackedUpFile(destination, relativePath, cancelled,
                                   [&](std::string_view piece) { original.compare(piece); });
    if (!result.copy || result.copy->linkTarget)
        result.isSame = result.copy && result.copy->linkTarget == linkTarget(source);
    else
        result.isSame = original.isSameToTheEnd();
    return result;
}

} // namespace

std::optional<BackedUpFile> readBackedUpFile(const std::string &path, const std::string &relativePath,
                                             const StopFlag &cancelled,
                                             const std::function<void(std::string_view)> &alsoRead) {
    if (std::optional<std::string> target = linkTarget(path))
        return BackedUpFile{.path = relativePath, .linkTarget = std::move(target)};
    FileReader reader(path, FileReader::Source::disk);
    if (!reader.isOpen())
        return std::nullopt;
    BackedUpFile file{.path = relativePath, .modified = reader.modified()};
    // Room for a small file and one byte more, so that one read shows its end.
    std::vector<char> buffer(std::min(pieceSize, static_cast<std::size_t>(reader.length()) + 1));
    Sha256 digest;
    while (!cancelled.isSet()) {
        const std::optional<std::string_view> piece = reader.read(buffer);
        if (!piece)
            return std::nullopt;
        if (piece->empty()) {
            file.sha256 = digest.finish();
            return file;
        }
        digest.add(*piece);
        alsoRead(*piece);
        file.size += static_cast<std::int64_t>(piece->size());
    }
    return std::nullopt;
}

CopyComparison compareCopy(const std::string &source, const std::string &destination,
                           const std::string &relativePath, const StopFlag &cancelled) {
    const FileListing originals = listFiles(source, cancelled);
    std::vector<ComparedFile> files(originals.files.size());
    forEachInParallel(files.size(), threadsForReading(), [&](std::size_t i) {
        const std::string &path = originals.files[i].path;
        files[i] = compareFile(within(source, path), within(destination, path), within(relativePath, path),
                               cancelled);
    });

    CopyComparison comparison;
    for (const std::string &folder : originals.unreadable)
        comparison.differing.push_back(within(source, folder));
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (!files[i].isSame)
            comparison.differing.push_back(within(source, originals.files[i].path));
        if (files[i].copy)
            comparison.copies.push_back(*std::move(files[i].copy));
    }
    return comparison;
}

} // namespace brimvale
