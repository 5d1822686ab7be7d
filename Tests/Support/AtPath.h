#pragma once

#include "Platform/FileOperation.h"
#include "Platform/FileRemoval.h"
#include "Platform/Trash.h"

namespace brimvale::testing {

/// Calls `act` with the item at the path, where links in its ancestors are followed. The error, if any.
template<class Act>
std::optional<FileError> withOpened(FileOperation operation, const FileURL &item, Act act) {
    const Result<OpenedItem, int> found = OpenedItem::at(item);
    if (const int *error = std::get_if<int>(&found))
        return fileError(operation, item, *error);
    return act(std::get<OpenedItem>(found));
}

inline std::optional<FileError> removeItemAt(const FileURL &item, RemovalProgress *progress = nullptr) {
    return withOpened(FileOperation::remove, item,
                      [&](const OpenedItem &opened) { return removeItem(opened, progress); });
}

inline std::optional<FileError> moveToTrashAt(const FileURL &item, TrashedItem *trashed = nullptr) {
    return withOpened(FileOperation::trash, item, [&](const OpenedItem &opened) -> std::optional<FileError> {
        const Result<TrashedItem> result = moveToTrash(opened);
        if (const auto *error = std::get_if<FileError>(&result))
            return *error;
        if (trashed != nullptr)
            *trashed = std::get<TrashedItem>(result);
        return std::nullopt;
    });
}

} // namespace brimvale::testing
