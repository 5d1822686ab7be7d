#include "Core/Reclaim/LinkNames.h"

#include "Base/FileURL.h"
#include "Core/Scan/FSNode.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Scan/Summing.h"
#include "Platform/Dataless.h"
#include "Platform/DirectoryWalk.h"

#include <chrono>
#include <cstddef>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace brimvale {

namespace {

constexpr std::chrono::seconds longestLookIntoFolders{2};

constexpr std::size_t mostFolders = 5'000;

using Clock = std::chrono::steady_clock;

/// What the walks of one search share.
struct NameSearch {
    const LinkPlaces &places;
    const SelectedNames &selected;
    std::optional<Clock::time_point> end; ///< nothing for no limit
    const SkipList skipped = SkipList(ScanOptions::standard());
    std::unordered_map<FileIdentity, Reclaim::Link *> wanted = {}; ///< not changed by the walks
    std::mutex lock = {};
    std::size_t missing = 0; ///< files without a name so far; protected by the lock

    [[nodiscard]] bool isOver() {
        const std::lock_guard guard(lock);
        return missing == 0 || (end && Clock::now() > *end);
    }
};

class NameWalk final : public WalkVisitor {
public:
    explicit NameWalk(NameSearch &search) : search_(search) {}

    void enter(FolderHandle, const std::string &path, int) override {
        path_ = path;
        isOver_ = search_.isOver();
    }
    [[nodiscard]] bool hasUnseen(const std::string &path) override {
        return isOver_ || search_.skipped.hasUnseen(path);
    }
    [[nodiscard]] bool leavesUnseen(FolderHandle, const std::string &folderPath,
                                    std::string_view name) override {
        return isOver_ || search_.skipped.unseen(joinPath(folderPath, name)).has_value();
    }
    void file(FolderHandle, std::string_view name, const FileStatus &status) override {
        if (!hasOtherNames(status))
            return;
        const auto found = search_.wanted.find(status.identity);
        if (found == search_.wanted.end())
            return;
        const std::string path = joinPath(path_, name);
        const std::lock_guard guard(search_.lock);
        if (!found->second->otherName.empty() || search_.selected.items.contains(FileURL(path)))
            return;
        found->second->otherName = path;
        --search_.missing;
    }
    std::optional<FolderHandle> subfolder(FolderHandle, const std::string &folderPath, std::string_view name,
                                          const FileIdentity &identity, SubfolderKind) override {
        const bool isEntered = search_.places.areDeep && !isOver_ &&
                               !search_.selected.folders.contains(identity) &&
                               !search_.skipped.contains(folderPath, name);
        return isEntered ? std::optional<FolderHandle>(nullptr) : std::nullopt;
    }
    void noStatus(FolderHandle, std::string_view) override {}
    void unreadable(FolderHandle) override {}

private:
    NameSearch &search_;
    std::string path_; ///< of the current folder
    bool isOver_ = false;
};

} // namespace

LinkPlaces foldersWithLinks(const FSNode &root) {
    LinkPlaces places;
    std::vector<const FSNode *> waiting = {&root};
    while (!waiting.empty() && places.folders.size() < mostFolders) {
        const FSNode *folder = waiting.back();
        waiting.pop_back();
        if (!folder->isDirectory || !folder->hasLinkedFiles)
            continue;
        places.folders.push_back(folder->path());
        for (const auto &child : folder->children())
            waiting.push_back(child.get());
    }
    return places;
}

void findNames(std::vector<Reclaim::Link> &files, const LinkPlaces &places, const SelectedNames &selected,
               const StopFlag &cancelled, WalkPool &pool) {
    if (files.empty() || places.folders.empty())
        return;
    const NoMaterialization guard;
    NameSearch search{.places = places,
                      .selected = selected,
                      .end = places.areDeep ? std::nullopt
                                            : std::optional(Clock::now() + longestLookIntoFolders)};
    for (Reclaim::Link &file : files)
        search.wanted.emplace(file.file, &file);
    search.missing = files.size();
    std::vector<PendingFolders> folders;
    for (const std::string &path : places.folders)
        if (const std::optional<FileIdentity> identity = folderIdentity(path);
            identity && !selected.folders.contains(*identity))
            folders.emplace_back(path, nullptr, *identity);
    pool.walk(std::move(folders), false, cancelled, [&search] { return std::make_unique<NameWalk>(search); });
}

} // namespace brimvale
