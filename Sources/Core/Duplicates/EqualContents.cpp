#include "Core/Duplicates/EqualContents.h"

#include "Platform/Dataless.h"
#include "Platform/Digest.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string>
#include <utility>

namespace brimvale {

namespace {

/// The first pieces are small, because most files that differ do so early. Later ones are large, so that a
/// hard disk seeks less.
constexpr std::int64_t firstPiece = 1 << 16;
constexpr std::int64_t largestPiece = 1 << 20;

/// Compares the files of a set piece by piece. Members that are equal so far are in one class.
class Comparison {
public:
    Comparison(const FileSet &set, ContentsReader &reader) : reader_(reader) {
        Class all;
        for (const ReadFile *file : set)
            if (std::optional<SteadyFile> opened = reader.openAgain(*file)) {
                length_ = file->record.length;
                all.push_back(members_.size());
                members_.push_back({file, *std::move(opened)});
            } else {
                reader.note(file->record.length);
            }
        classes_.push_back(std::move(all));
    }

    /// Compares up to the end, or until no two files are equal.
    void compareAll() {
        std::int64_t offset = 0;
        dropSingles(offset);
        for (std::int64_t piece = firstPiece; offset < length_; piece = std::min(2 * piece, largestPiece)) {
            if (classes_.empty() || reader_.isStopped())
                break;
            const std::int64_t length = std::min(piece, length_ - offset);
            comparePiece(offset, length);
            offset += length;
            dropSingles(offset);
        }
    }

    [[nodiscard]] std::vector<FileSet> result() {
        std::vector<FileSet> sets;
        for (const Class &one : classes_) {
            FileSet files;
            for (const std::size_t member : one)
                if (reader_.isUnchanged(members_[member].opened))
                    files.push_back(members_[member].file);
            if (files.size() > 1 && !reader_.isStopped())
                sets.push_back(std::move(files));
        }
        return sets;
    }

private:
    using Class = std::vector<std::size_t>; ///< of members
    struct Member {
        const ReadFile *file;
        SteadyFile opened;
    };

    /// Lets go of files that are equal to no other. Their rest need not be read.
    void dropSingles(std::int64_t offset) {
        std::erase_if(classes_, [&](const Class &one) {
            if (one.size() == 1)
                reader_.note(length_ - offset);
            return one.size() < 2;
        });
    }

    void comparePiece(std::int64_t offset, std::int64_t length) {
        std::vector<Class> next;
        for (const Class &one : classes_)
            split(one, offset, static_cast<std::size_t>(length), next);
        classes_ = std::move(next);
    }

    /// Adds the parts of a class that are equal in this piece, too.
    void split(const Class &one, std::int64_t offset, std::size_t length, std::vector<Class> &parts) {
        const std::size_t firstPart = parts.size();
        for (const std::size_t member : one) {
            const std::size_t buffer = parts.size() - firstPart; // the next free one
            if (buffer == buffers_.size())
                buffers_.emplace_back();
            buffers_[buffer].resize(std::max(buffers_[buffer].size(), length));
            const std::span<char> bytes = std::span(buffers_[buffer]).first(length);
            reader_.note(static_cast<std::int64_t>(length));
            if (reader_.isStopped() || !reader_.read(members_[member].opened, offset, bytes)) {
                reader_.note(length_ - offset - static_cast<std::int64_t>(length));
                continue;
            }
            std::size_t part = 0;
            while (part < buffer && std::memcmp(buffers_[part].data(), bytes.data(), length) != 0)
                ++part;
            if (part == buffer)
                parts.emplace_back();
            parts[firstPart + part].push_back(member);
        }
    }

    ContentsReader &reader_;
    std::int64_t length_ = 0;
    std::vector<Member> members_;
    std::vector<Class> classes_;
    std::vector<std::vector<char>> buffers_; ///< the current piece of each part of a class
};

} // namespace

std::vector<FileSet> splitInStep(const FileSet &set, ContentsReader &reader) {
    const NoMaterialization guard;
    Comparison comparison(set, reader);
    comparison.compareAll();
    return comparison.result();
}

std::string digestOfContents(const ReadFile &file, ContentsReader &reader) {
    const NoMaterialization guard;
    const std::int64_t length = file.record.length;
    const std::optional<SteadyFile> opened = reader.openAgain(file);
    Sha256 digest;
    std::vector<char> buffer(static_cast<std::size_t>(std::min(length, largestPiece)));
    std::int64_t offset = 0;
    while (opened && offset < length && !reader.isStopped()) {
        const auto piece =
            std::span(buffer).first(static_cast<std::size_t>(std::min(largestPiece, length - offset)));
        if (!reader.read(*opened, offset, piece))
            break;
        digest.add({piece.data(), piece.size()});
        offset += static_cast<std::int64_t>(piece.size());
        reader.note(static_cast<std::int64_t>(piece.size()));
    }
    if (offset == length && reader.isUnchanged(*opened))
        return digest.finish();
    reader.note(length - offset);
    return {};
}

} // namespace brimvale
