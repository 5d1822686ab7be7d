#include "Core/Model/Basket.h"

#include "Base/FileURL.h"
#include "Platform/OpenedItem.h"

#include <algorithm>

namespace brimvale {

namespace {

bool isIn(const CleanupEntry &item, const CleanupEntry &folder) {
    return isAtOrUnder(item.url.path(), folder.url.path());
}

} // namespace

void Basket::add(const std::vector<CleanupEntry> &entries) {
    update([&](BasketState &state) {
        for (const CleanupEntry &entry : entries) {
            const auto isAround = [&](const CleanupEntry &one) {
                return isIn(entry, one) && entry.url != one.url;
            };
            if (std::any_of(state.entries.begin(), state.entries.end(), isAround))
                continue;
            std::erase_if(state.entries, [&](const CleanupEntry &one) { return isIn(one, entry); });
            state.entries.push_back(entry);
            // It may wait here for long, and another item may take its place.
            if (!entry.pin)
                state.entries.back().pin = pinOf(entry.url.standardized());
        }
    });
}

void Basket::clear() {
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
