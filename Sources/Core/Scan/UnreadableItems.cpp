#include "Core/Scan/UnreadableItems.h"

#include "Base/Bytes.h"
#include "Base/ErrorReason.h"
#include "Base/FileURL.h"

#include <algorithm>
#include <string_view>
#include <utility>

namespace brimvale {

std::string reasonFor(const UnreadableItem &item) {
    if (item.error == UnreadableItem::claimsTooMuch)
        return "It claims to be larger than any disk";
    std::string reason = reasonOfError(item.error);
    constexpr std::string_view preposition = "of ";
    if (reason.starts_with(preposition))
        reason.erase(0, preposition.size());
    // All reasons begin with a letter of ASCII.
    if (reason.front() >= 'a' && reason.front() <= 'z')
        reason.front() = static_cast<char>(reason.front() - 'a' + 'A');
    return reason;
}

void UnreadableItems::add(std::string path, int error) {
    const std::lock_guard guard(lock_);
    count_ = checkedAdd(count_, 1);
    if (listed_.size() < mostListed)
        listed_.push_back({std::move(path), error});
}

void UnreadableItems::dropWithin(const std::string &path) {
    const std::lock_guard guard(lock_);
    const bool wasCut = isCut();
    const std::size_t dropped =
        std::erase_if(listed_, [&](const UnreadableItem &item) { return isAtOrUnder(item.path, path); });
    if (!wasCut)
        count_ -= static_cast<std::int64_t>(dropped);
}

void UnreadableItems::add(const UnreadableItems &others) {
    const std::vector<UnreadableItem> more = others.listed();
    const std::int64_t count = others.count();
    const std::lock_guard guard(lock_);
    if (!isCut())
        count_ = checkedAdd(count_, count);
    const std::size_t room = mostListed - listed_.size();
    listed_.insert(listed_.end(), more.begin(),
                   more.begin() + static_cast<std::ptrdiff_t>(std::min(room, more.size())));
}

std::int64_t UnreadableItems::count() const {
    const std::lock_guard guard(lock_);
    return count_;
}

std::vector<UnreadableItem> UnreadableItems::listed() const {
    const std::lock_guard guard(lock_);
    return listed_;
}

bool UnreadableItems::reachInto(const std::string &path) const {
    const std::lock_guard guard(lock_);
    return isCut() || std::any_of(listed_.begin(), listed_.end(),
                                  [&](const UnreadableItem &item) { return isAtOrUnder(item.path, path); });
}

} // namespace brimvale
