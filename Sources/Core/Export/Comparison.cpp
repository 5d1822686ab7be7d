#include "Core/Export/Comparison.h"

#include "Core/Export/TreeVisit.h"

#include <algorithm>
#include <memory>
#include <optional>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace brimvale {

namespace {

class TreeComparison {
public:
    TreeComparison(const FSNode &before, const FSNode &after) {
        // A volume may have another device number after a restart.
        if (before.identity() && after.identity())
            devices_ = {before.identity()->device, after.identity()->device};
        folders_.emplace_back(&before, &after);
        while (!folders_.empty()) {
            const auto pair = folders_.back();
            folders_.pop_back();
            compareFolders(*pair.first, *pair.second);
        }
        indexGone();
        for (const FSNode *node : new_)
            tellNew(*node);
        for (const FSNode *node : gone_)
            tellGone(*node);
    }

    std::vector<TreeChange> sorted() && {
        std::sort(changes_.begin(), changes_.end(), [](const TreeChange &a, const TreeChange &b) {
            return a.growth() != b.growth() ? a.growth() > b.growth() : a.path < b.path;
        });
        return std::move(changes_);
    }

private:
    void compareFolders(const FSNode &before, const FSNode &after) {
        std::unordered_map<std::string_view, const FSNode *> earlier;
        const FSNode *earlierSmall = nullptr;
        for (const std::unique_ptr<FSNode> &child : before.children())
            if (child->isAggregate)
                earlierSmall = child.get();
            else
                earlier.emplace(child->name, child.get());
        const FSNode *laterSmall = nullptr;
        for (const std::unique_ptr<FSNode> &child : after.children()) {
            if (child->isAggregate) {
                laterSmall = child.get();
                continue;
            }
            const auto found = earlier.find(child->name);
            if (found == earlier.end() || found->second->isDirectory != child->isDirectory) {
                new_.push_back(child.get());
                continue;
            }
            comparePair(*found->second, *child);
            earlier.erase(found);
        }
        for (const std::unique_ptr<FSNode> &child : before.children())
            if (const auto found = earlier.find(child->name);
                !child->isAggregate && found != earlier.end() && found->second == child.get())
                gone_.push_back(child.get());
        compareSmall(earlierSmall, laterSmall, after);
    }

    void comparePair(const FSNode &before, const FSNode &after) {
        if (after.isDirectory)
            folders_.emplace_back(&before, &after);
        else if (before.size != after.size)
            changes_.push_back({.path = after.path(), .before = before.size, .after = after.size});
    }

    void compareSmall(const FSNode *before, const FSNode *after, const FSNode &folder) {
        const std::int64_t earlier = before != nullptr ? before->size : 0;
        const std::int64_t later = after != nullptr ? after->size : 0;
        if (earlier != later)
            changes_.push_back(
                {.path = folder.path(), .isAggregate = true, .before = earlier, .after = later});
    }

    void indexGone() {
        for (const FSNode *top : gone_)
            visitTree(
                *top,
                [this](const FSNode &node) {
                    if (const std::optional<FileIdentity> identity = node.identity())
                        goneByIdentity_.emplace(laterIdentity(*identity), &node);
                },
                [](const FSNode &) {});
    }

    [[nodiscard]] FileIdentity laterIdentity(FileIdentity identity) const {
        if (identity.device == devices_.first)
            identity.device = devices_.second;
        return identity;
    }

    /// The gone item that this new one is; null if it is none of them. Numbers of removed files are used
    /// again, so more must be equal: the length of a file, the name of a folder or of something in it.
    const FSNode *earlierOf(const FSNode &node) const {
        const std::optional<FileIdentity> identity = node.identity();
        const auto found = identity ? goneByIdentity_.find(*identity) : goneByIdentity_.end();
        if (found == goneByIdentity_.end() || found->second->isDirectory != node.isDirectory)
            return nullptr;
        const FSNode &gone = *found->second;
        const bool isSame = node.isDirectory ? gone.name == node.name || shareName(gone, node)
                                             : gone.logicalSize == node.logicalSize && gone.size == node.size;
        return isSame ? &gone : nullptr;
    }

    static bool shareName(const FSNode &a, const FSNode &b) {
        std::unordered_set<std::string_view> names;
        for (const std::unique_ptr<FSNode> &child : a.children())
            names.insert(child->name);
        return std::any_of(b.children().begin(), b.children().end(),
                           [&](const std::unique_ptr<FSNode> &child) { return names.contains(child->name); });
    }

    /// A new item that was elsewhere before is moved; of any other, what was moved into it is told apart.
    void tellNew(const FSNode &top) {
        std::int64_t movedInside = 0;
        const auto isMoved = [&](const FSNode &node) {
            const FSNode *earlier = earlierOf(node);
            if (earlier == nullptr || isTaken(*earlier))
                return false;
            taken_.insert(earlier);
            movedInside += node.size;
            changes_.push_back({.kind = TreeChange::Kind::moved,
                                .path = node.path(),
                                .earlier = earlier->path(),
                                .isFolder = node.isDirectory,
                                .before = earlier->size,
                                .after = node.size});
            return true;
        };
        if (!findMoved(top, isMoved))
            changes_.push_back({.kind = TreeChange::Kind::appeared,
                                .path = top.path(),
                                .isFolder = top.isDirectory,
                                .after = top.size - movedInside});
    }

    void tellGone(const FSNode &top) {
        std::int64_t movedAway = 0;
        const auto isMoved = [&](const FSNode &node) {
            const bool wasTaken = taken_.contains(&node);
            movedAway += wasTaken ? node.size : 0;
            return wasTaken;
        };
        if (!findMoved(top, isMoved))
            changes_.push_back({.kind = TreeChange::Kind::gone,
                                .path = top.path(),
                                .isFolder = top.isDirectory,
                                .before = top.size - movedAway});
    }

    /// Calls `isMoved` for a node and its descendants, except for those of one that is. Returns whether the
    /// node itself is.
    template<class IsMoved>
    static bool findMoved(const FSNode &top, IsMoved isMoved) {
        if (isMoved(top))
            return true;
        std::vector<const FSNode *> waiting{&top};
        while (!waiting.empty()) {
            const FSNode &node = *waiting.back();
            waiting.pop_back();
            for (const std::unique_ptr<FSNode> &child : node.children())
                if (!isMoved(*child))
                    waiting.push_back(child.get());
        }
        return false;
    }

    [[nodiscard]] bool isTaken(const FSNode &gone) const {
        for (const FSNode *node = &gone; node != nullptr; node = node->parent())
            if (taken_.contains(node))
                return true;
        return false;
    }

    std::vector<std::pair<const FSNode *, const FSNode *>> folders_; ///< to compare
    std::vector<const FSNode *> new_;
    std::vector<const FSNode *> gone_;
    std::unordered_map<FileIdentity, const FSNode *> goneByIdentity_; ///< with the later device
    std::unordered_set<const FSNode *> taken_;                        ///< gone items that were moved
    std::pair<std::uint64_t, std::uint64_t> devices_;
    std::vector<TreeChange> changes_;
};

} // namespace

std::vector<TreeChange> compareTrees(const FSNode &before, const FSNode &after) {
    return TreeComparison(before, after).sorted();
}

} // namespace brimvale
