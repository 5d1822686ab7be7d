#include "Core/Duplicates/ContentsReader.h"

#include "Platform/Dataless.h"
#include "Platform/Digest.h"

#include <array>
#include <cerrno>
#include <cstddef>
#include <utility>

namespace brimvale {

namespace {

constexpr std::int64_t edgeLength = 4096;

} // namespace

bool ContentsReader::read(const SteadyFile &file, std::int64_t offset, std::span<char> buffer) {
    const std::optional<std::string_view> bytes = file.read(offset, buffer);
    if (bytes && bytes->size() == buffer.size())
        return true;
    ++(bytes ? changed_ : unreadable_);
    return false;
}

bool ContentsReader::isUnchanged(const SteadyFile &file) {
    if (file.isUnchanged())
        return true;
    ++changed_;
    return false;
}

std::optional<ReadFile> ContentsReader::readEdges(const Candidate &candidate) {
    const NoMaterialization guard;
    const SteadyFile file(candidate.path);
    const FileStatus &found = candidate.status;
    if (!file.isOpen()) {
        ++(errno == ENOENT || errno == EINVAL || errno == ELOOP ? changed_ : unreadable_);
        return std::nullopt;
    }
    const EntryRecord &record = file.record();
    if (record.identity != found.identity || record.length != found.length) {
        ++changed_;
        return std::nullopt;
    }
    if (found.allocatedBytes < found.length && file.hasHole()) {
        ++withHoles_;
        return std::nullopt;
    }
    std::array<char, static_cast<std::size_t>(shortLength)> buffer; // NOLINT: filled below
    const bool isShort = found.length <= shortLength;
    const auto firstLength = static_cast<std::size_t>(isShort ? found.length : edgeLength);
    const auto lastLength = static_cast<std::size_t>(isShort ? 0 : edgeLength);
    const std::span<char> first = std::span(buffer).first(firstLength);
    const std::span<char> last = std::span(buffer).subspan(firstLength, lastLength);
    if (!read(file, 0, first) || (!isShort && !read(file, found.length - edgeLength, last)) ||
        !isUnchanged(file))
        return std::nullopt;
    Sha256 digest;
    digest.add({buffer.data(), first.size() + last.size()});
    return ReadFile{&candidate, record, digest.finish()};
}

std::optional<SteadyFile> ContentsReader::openAgain(const ReadFile &file) {
    SteadyFile opened(file.candidate->path);
    if (opened.isOpen() && opened.record() == file.record)
        return std::optional<SteadyFile>(std::move(opened));
    ++(opened.isOpen() || errno == ENOENT ? changed_ : unreadable_);
    return std::nullopt;
}

} // namespace brimvale
