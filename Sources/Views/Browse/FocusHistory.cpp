#include "Views/Browse/FocusHistory.h"

namespace brimvale {

void FocusHistory::visit(const FileURL &folder) {
    if (!visited_.empty()) {
        if (visited_[current_] == folder)
            return;
        visited_.erase(visited_.begin() + static_cast<std::ptrdiff_t>(current_) + 1, visited_.end());
        if (visited_.size() == most)
            visited_.erase(visited_.begin());
    }
    visited_.push_back(folder);
    current_ = visited_.size() - 1;
}

std::optional<FileURL> FocusHistory::back() {
    if (visited_.empty() || current_ == 0)
        return std::nullopt;
    return visited_[--current_];
}

std::optional<FileURL> FocusHistory::forward() {
    if (current_ + 1 >= visited_.size())
        return std::nullopt;
    return visited_[++current_];
}

} // namespace brimvale
