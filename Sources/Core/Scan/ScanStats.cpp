#include "Core/Scan/ScanStats.h"

#include "Base/Bytes.h"

namespace brimvale {

using Guard = std::lock_guard<std::mutex>;

std::int64_t ScanStats::files() const {
    const Guard guard(lock_);
    return files_;
}

std::int64_t ScanStats::bytes() const {
    const Guard guard(lock_);
    return bytes_;
}

std::int64_t ScanStats::unreadable() const {
    const Guard guard(lock_);
    return unreadable_;
}

std::string ScanStats::current() const {
    const Guard guard(lock_);
    return current_;
}

void ScanStats::add(std::int64_t files, std::int64_t bytes) {
    const Guard guard(lock_);
    files_ = checkedAdd(files_, files);
    bytes_ = checkedAdd(bytes_, bytes);
}

void ScanStats::addUnreadable() {
    const Guard guard(lock_);
    unreadable_ = checkedAdd(unreadable_, 1);
}

void ScanStats::setCurrent(const std::string &path) {
    const Guard guard(lock_);
    current_ = path;
}

bool InodeSet::insert(std::uint64_t device, std::uint64_t inode) {
    const std::uint64_t key = inode ^ (device * 0x9E3779B97F4A7C15U);
    const Guard guard(lock_);
    return seen_.insert(key).second;
}

std::int64_t Counter::add(std::int64_t amount) {
    const Guard guard(lock_);
    value_ = checkedAdd(value_, amount);
    return value_;
}

std::int64_t Counter::value() const {
    const Guard guard(lock_);
    return value_;
}

} // namespace brimvale
