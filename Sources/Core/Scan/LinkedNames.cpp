#include "Core/Scan/LinkedNames.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <utility>

namespace brimvale {

namespace {

std::size_t depthOf(const FSNode *node) {
    std::size_t depth = 0;
    for (; node != nullptr; node = node->parent())
        ++depth;
    return depth;
}

/// A place in the tree: a name in a folder.
struct Place {
    const FSNode *folder;
    std::string_view name;

    void goUp() {
        name = folder->name;
        folder = folder->parent();
    }
};

/// Whether one place comes before another one, by the names where their paths part.
bool precedes(Place one, Place other) {
    const std::size_t depth = depthOf(one.folder), otherDepth = depthOf(other.folder);
    for (std::size_t i = otherDepth; i < depth; ++i)
        one.goUp();
    for (std::size_t i = depth; i < otherDepth; ++i)
        other.goUp();
    while (one.folder != other.folder) {
        one.goUp();
        other.goUp();
    }
    return one.name < other.name;
}

} // namespace

bool LinkedNames::add(FSNode &folder, std::string_view name, const FileStatus &status) {
    const std::lock_guard guard(lock_);
    const auto [found, isNew] = files_.try_emplace(status.identity);
    LinkedName &chosen = found->second;
    if (isNew || (chosen.folder != nullptr && precedes({&folder, name}, {chosen.folder, chosen.name})))
        chosen = {&folder, std::string(name), status};
    return isNew;
}

void LinkedNames::refuse(const FileIdentity &file) {
    const std::lock_guard guard(lock_);
    files_[file].folder = nullptr;
}

std::vector<LinkedName> LinkedNames::take() {
    const std::lock_guard guard(lock_);
    std::vector<LinkedName> names;
    names.reserve(files_.size());
    for (auto &[file, chosen] : files_)
        if (chosen.folder != nullptr)
            names.push_back(std::move(chosen));
    files_.clear();
    std::sort(names.begin(), names.end(), [](const LinkedName &a, const LinkedName &b) {
        return a.folder != b.folder ? std::less<>()(a.folder, b.folder) : a.name < b.name;
    });
    return names;
}

} // namespace brimvale
