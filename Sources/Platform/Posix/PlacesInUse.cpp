#include "Platform/PlacesInUse.h"

#include <algorithm>
#include <utility>

namespace brimvale {

void UsedPlaces::add(const std::string &path, PlaceUse use) {
    const Result<OpenedItem, int> found = OpenedItem::at(FileURL(path).standardized());
    const auto *item = std::get_if<OpenedItem>(&found);
    if (item == nullptr)
        return;
    const FileIdentity &identity = item->identity().file;
    byFolder_.insert_or_assign(identity, places_.size()); // itself counts before what it contains
    for (const FileIdentity &folder : item->ancestors())
        byFolder_.try_emplace(folder, places_.size());
    places_.push_back({item->place().path(), use, identity});
}

const UsedPlace *UsedPlaces::in(const OpenedItem &item) const {
    const auto found = byFolder_.find(item.identity().file);
    return found != byFolder_.end() ? &places_[found->second] : nullptr;
}

} // namespace brimvale
