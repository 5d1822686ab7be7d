#include "Core/Trash/TrashRun.h"

#include "Core/Removal/Remover.h"
#include "Core/Storage/StorageCategories.h"
#include "Platform/Host.h"

#include <algorithm>
#include <variant>

namespace brimvale::TrashRun {

std::optional<std::vector<Item>> list(const StopFlag &cancelled) {
    const std::vector<StorageCategory> categories = StorageCategories::all();
    const auto trash =
        std::find_if(categories.begin(), categories.end(), [](const StorageCategory &category) {
            return std::holds_alternative<TrashAction>(category.action);
        });
    if (trash == categories.end())
        return std::nullopt;
    std::vector<Item> items;
    for (CleanupEntry &entry : StorageCategories::measure(*trash, cancelled).entries) {
        TrashRecord record = trashRecord(entry.url);
        items.push_back({std::move(entry), std::move(record)});
    }
    return items;
}

std::unordered_map<FileURL, TrashRecord> records(const std::vector<FileURL> &items,
                                                 const StopFlag &cancelled) {
    std::unordered_map<FileURL, TrashRecord> records;
    for (const FileURL &item : items) {
        if (cancelled.isSet())
            break;
        records.emplace(item, trashRecord(item));
    }
    return records;
}

RemovalResult empty(const std::vector<CleanupEntry> &items, RemovalProgress &progress,
                    RemovalActions &actions) {
    RemovalResult result = Remover::remove(items, RemovalMode::deleteNow, &progress, actions);
    if (!progress.cancelled.isSet())
        for (const FileURL &item : lostItems(Host::current()))
            actions.forgetTrashed(item);
    return result;
}

} // namespace brimvale::TrashRun
