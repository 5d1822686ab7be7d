#include "Support/RealRemovals.h"

#include <utility>

namespace brimvale::testing {

namespace fs = std::filesystem;

void RealRemovals::note(std::string call) {
    calls.push_back(std::move(call));
    if (onChange)
        onChange();
}

std::optional<FileError> RealRemovals::removeItem(const OpenedItem &item, RemovalProgress *progress) {
    const fs::path path = item.place().path();
    if (item.isFolder() && plan_.exchange(Plan::succeed) == Plan::failHalfWay) {
        std::vector<fs::path> children;
        for (const fs::directory_entry &entry : fs::directory_iterator(path))
            children.push_back(entry.path());
        for (std::size_t i = 0; i < children.size(); i += 2)
            progress->entriesRemoved += static_cast<std::int64_t>(fs::remove_all(children[i]));
        note("delete in part " + path.native());
        return FileError{FileError::Domain::cocoa, 513, "no", nullptr};
    }
    progress->entriesRemoved += static_cast<std::int64_t>(fs::remove_all(path));
    note("delete " + path.native());
    return std::nullopt;
}

Result<TrashedItem> RealRemovals::moveToTrash(const OpenedItem &item) {
    fs::create_directories(trash_);
    std::error_code error;
    fs::rename(item.place().path(), trash_ + "/moved " + std::to_string(++trashed_), error);
    if (error) // the Trash itself
        return FileError{FileError::Domain::cocoa, 512, "no", nullptr};
    note("trash " + item.place().path());
    return TrashedItem();
}

Result<KeptReasons, PrivilegedRunError>
RealRemovals::removeAsAdministrator(const std::vector<ItemPin> &items) {
    for (const ItemPin &item : items) {
        fs::remove_all(item.place.path());
        note("administrator " + item.place.path());
    }
    return KeptReasons(items.size());
}

} // namespace brimvale::testing
