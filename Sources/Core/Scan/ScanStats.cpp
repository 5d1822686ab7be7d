#include "Core/Scan/ScanStats.h"

#include "Base/Bytes.h"

#include <utility>

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
    return unreadable_.count();
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

void ScanStats::addUnreadable(std::string path, int error) {
    unreadable_.add(std::move(path), error);
}

void ScanStats::setCurrent(const std::string &path) {
    const Guard guard(lock_);
    current_ = path;
}

} // namespace brimvale
