#include "Sample/DiskBuilder.h"

#include "Base/FileURL.h"
#include "Platform/FileAllocation.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <cstddef>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace brimvale::sample {

namespace {

constexpr std::int64_t megabyte = 1'000'000;

/// Files of one day are written over the hours of that day, one after the other.
constexpr std::chrono::minutes betweenFiles{7};

class OpenFile {
public:
    explicit OpenFile(const std::string &path)
        : number_(open(path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC | O_NOFOLLOW, 0644)) {}
    ~OpenFile() {
        if (number_ >= 0)
            close(number_);
    }
    OpenFile(const OpenFile &) = delete;
    OpenFile &operator=(const OpenFile &) = delete;

    [[nodiscard]] int number() const { return number_; }

private:
    int number_;
};

bool writeAll(int file, std::string_view bytes) {
    while (!bytes.empty()) {
        const ssize_t written = write(file, bytes.data(), bytes.size());
        if (written < 0 && errno != EINTR)
            return false;
        bytes.remove_prefix(static_cast<std::size_t>(std::max<ssize_t>(written, 0)));
    }
    return true;
}

bool fill(int file, std::int64_t bytes) {
    if (bytes == 0 || allocateSpace(file, bytes))
        return true;
    static const std::string block(std::size_t{1} << 20, 'x');
    for (std::int64_t rest = bytes; rest > 0; rest -= static_cast<std::int64_t>(block.size())) {
        const std::int64_t length = std::min(rest, static_cast<std::int64_t>(block.size()));
        if (!writeAll(file, std::string_view(block).substr(0, static_cast<std::size_t>(length))))
            return false;
    }
    return true;
}

/// Writes at the start of a file that already has its space.
bool overwriteStart(int file, std::string_view content) {
    return lseek(file, 0, SEEK_SET) == 0 && writeAll(file, content);
}

std::string parentOf(const std::string &place) {
    return place.substr(0, place.rfind('/'));
}

} // namespace

DiskBuilder::DiskBuilder(std::string root, std::string home, Date now, std::int64_t divisor)
    : root_(std::move(root)), home_(std::move(home)), now_(now), divisor_(divisor) {}

std::string DiskBuilder::placeOf(std::string_view path) const {
    const bool isInHome = path.starts_with('~');
    return isInHome ? std::string(root_).append(home_).append(path.substr(1))
                    : std::string(root_).append(path);
}

void DiskBuilder::noteFailure(const std::string &place) {
    if (!failure_) {
        failure_ = FileError::posix(errno);
        failure_->entry = place;
    }
}

void DiskBuilder::makeParents(const std::string &place, int days) {
    std::vector<std::string> missing;
    for (std::string folder = parentOf(place); folder.size() > root_.size(); folder = parentOf(folder)) {
        const auto [known, isNew] = folders_.try_emplace(folder, days);
        known->second = std::min(known->second, days);
        if (!isNew)
            break;
        missing.push_back(folder);
    }
    for (; !missing.empty(); missing.pop_back())
        if (mkdir(missing.back().c_str(), 0755) != 0 && errno != EEXIST)
            return noteFailure(missing.back());
}

void DiskBuilder::setDate(const std::string &place, int days) {
    // A fixed number for each path, so that a disk that is built again has the same dates.
    std::size_t number = 0;
    for (const char byte : place.substr(root_.size()))
        number = (number * 31 + static_cast<unsigned char>(byte)) % 200;
    const Date date = now_ - std::chrono::days(days) - betweenFiles * static_cast<int>(number);
    const auto seconds = std::chrono::floor<std::chrono::seconds>(date).time_since_epoch().count();
    timespec time{};
    time.tv_sec = static_cast<std::time_t>(seconds);
    const std::array<timespec, 2> times = {time, time};
    if (utimensat(AT_FDCWD, place.c_str(), times.data(), AT_SYMLINK_NOFOLLOW) != 0)
        noteFailure(place);
}

void DiskBuilder::make(const std::string &place, std::string_view content, std::int64_t bytes, int days) {
    if (failure_)
        return;
    makeParents(place, days);
    const OpenFile file(place);
    if (file.number() < 0 || !fill(file.number(), bytes) || !overwriteStart(file.number(), content))
        return noteFailure(place);
    setDate(place, days);
}

void DiskBuilder::makeFile(std::string_view path, std::int64_t bytes, int days) {
    const std::int64_t taken = bytes >= megabyte ? bytes / divisor_ : bytes;
    const std::string_view name = path.substr(path.rfind('/') + 1);
    make(placeOf(path), name.substr(0, static_cast<std::size_t>(taken)), taken, days);
}

void DiskBuilder::makeFiles(std::span<const SizedFile> files) {
    for (const SizedFile &file : files)
        makeFile(file.path, file.kilobytes * kilobyte, file.days);
}

void DiskBuilder::makeFiles(const SpaceFiles &files) {
    makeFiles(files.sized);
    for (const ManyFiles &many : files.many) {
        const std::string start = std::string(many.folder).append("/").append(many.before);
        const int span = many.oldestDays - many.newestDays;
        const int count = std::max(many.count / static_cast<int>(divisor_), 1);
        for (int i = 0; i < count; ++i)
            makeFile(std::string(start).append(std::to_string(1001 + i)).append(many.after),
                     many.kilobytes * kilobyte, many.oldestDays - span * i / count);
    }
}

void DiskBuilder::writeFile(std::string_view path, std::string_view content, int days) {
    make(placeOf(path), content, 0, days);
}

void DiskBuilder::writeScript(std::string_view path, std::string_view commands, int days) {
    writeFile(path, std::string("#!/bin/sh\n").append(commands), days);
    if (!failure_ && chmod(placeOf(path).c_str(), 0755) != 0)
        noteFailure(placeOf(path));
}

void DiskBuilder::makeFolder(std::string_view path, int days) {
    if (!failure_)
        makeParents(placeOf(path) + "/", days);
}

void DiskBuilder::makeLink(std::string_view path, const std::string &target) {
    const std::string place = placeOf(path);
    if (failure_)
        return;
    makeParents(place, 100);
    if (symlink(target.c_str(), place.c_str()) != 0)
        noteFailure(place);
}

void DiskBuilder::closeFolder(std::string_view path) {
    if (!failure_ && chmod(placeOf(path).c_str(), 0) != 0)
        noteFailure(placeOf(path));
}

void DiskBuilder::dateFolders() {
    for (const auto &[folder, days] : folders_)
        if (!failure_)
            setDate(folder, days);
}

std::int64_t SpaceFiles::bytes() const {
    std::int64_t kilobytes = 0;
    for (const SizedFile &file : sized)
        kilobytes += file.kilobytes;
    for (const ManyFiles &one : many)
        kilobytes += one.kilobytes * one.count;
    return kilobytes * kilobyte;
}

} // namespace brimvale::sample
