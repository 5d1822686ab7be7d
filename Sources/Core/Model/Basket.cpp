#include "Core/Model/Basket.h"

#include "Base/FileURL.h"
#include "Core/Model/Workers.h"
#include "Platform/OpenedItem.h"

#include <algorithm>
#include <utility>

namespace brimvale {

namespace {

bool isIn(const CleanupEntry &item, const CleanupEntry &folder) {
    return isAtOrUnder(item.url.path(), folder.url.path());
}

} // namespace

void Basket::add(const std::vector<CleanupEntry> &entries) {
    std::vector<CleanupEntry> pinned, others;
    for (const CleanupEntry &entry : entries)
        (entry.pin ? pinned : others).push_back(entry);
    if (!pinned.empty())
        addPinned(pinned);
    if (others.empty())
        return;
    // They may wait here for long, and other items may take their places.
    workers_.run(
        this,
        [others = std::move(others)]() mutable {
            for (CleanupEntry &entry : others)
                entry.pin = pinOf(entry.url.standardized());
            return std::move(others);
        },
        [this, emptied = emptied_](const std::vector<CleanupEntry> &now) {
            if (emptied == emptied_)
                addPinned(now);
        });
}

void Basket::addPinned(const std::vector<CleanupEntry> &entries) {
    update([&](BasketState &state) {
        for (const CleanupEntry &entry : entries) {
            const auto isAround = [&](const CleanupEntry &one) {
                return isIn(entry, one) && entry.url != one.url;
            };
            if (std::any_of(state.entries.begin(), state.entries.end(), isAround))
                continue;
            std::erase_if(state.entries, [&](const CleanupEntry &one) { return isIn(one, entry); });
            state.entries.push_back(entry);
        }
    });
}

void Basket::clear() {
    ++emptied_;
    update([](BasketState &state) { state.entries.clear(); });
}

void Basket::drop(const GonePaths &gone) {
    update([&](BasketState &state) {
        return std::erase_if(state.entries, [&](const CleanupEntry &entry) {
                   return gone.contains(entry.url, entry.pin);
               }) > 0;
    });
}

void Basket::dropChanged(const GonePaths &changed) {
    update([&](BasketState &state) {
        return std::erase_if(state.entries, [&](const CleanupEntry &entry) {
                   return changed.touch(entry.url, entry.pin);
               }) > 0;
    });
}

} // namespace brimvale
