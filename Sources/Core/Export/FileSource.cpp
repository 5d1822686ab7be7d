#include "Core/Export/FileSource.h"

#include <cerrno>
#include <cstddef>
#include <filesystem>
#include <system_error>

namespace brimvale {

namespace {

constexpr std::size_t pieceSize = std::size_t{1} << 18;

/// The path without links; the path itself where there is no such file.
std::string withoutLinks(const std::string &path) {
    std::error_code error;
    const std::filesystem::path resolved = std::filesystem::canonical(path, error);
    return error ? path : resolved.native();
}

} // namespace

FileSource::FileSource(const std::string &path) : reader_(withoutLinks(path)), buffer_(pieceSize) {
    if (!reader_.isOpen())
        failure_ = FileError::posix(errno);
}

std::optional<std::string_view> FileSource::next() {
    return reader_.read(buffer_);
}

} // namespace brimvale
