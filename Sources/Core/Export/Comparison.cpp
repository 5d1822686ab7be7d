#include "Core/Export/Comparison.h"

#include "Core/Export/TreeVisit.h"
#include "Core/Scan/ScanOptions.h"
#include "Core/Text/Formatting.h"

#include <algorithm>
#include <cstddef>
#include <memory>
#include <span>
#include <unordered_set>
#include <utility>

namespace brimvale {

/// One comparison of two trees.
class TreeComparison::Pass {
public:
    Pass(TreeComparison &result, const FSNode &before, const FSNode &after, const StopFlag &stopped)
        : stopped_(stopped), changes_(result.changes_), nodes_(result.nodes_) {
        // A volume may have another device number after a restart.
        if (before.identity() && after.identity())
            devices_ = {before.identity()->device, after.identity()->device};
        folders_.emplace_back(&before, &after);
        while (!folders_.empty() && !isStopped()) {
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

private:
    [[nodiscard]] bool isStopped() const { return stopped_.isSet(); }

    /// The children of a folder in both trees.
    struct Children {
        std::unordered_map<std::string_view, const FSNode *> earlier =
            {};                               ///< not found in the later tree yet
        const FSNode *earlierSmall = nullptr; ///< the aggregates
        const FSNode *laterSmall = nullptr;
        std::vector<const FSNode *> appeared = {};
    };

    void compareFolders(const FSNode &before, const FSNode &after) {
        if (before.size != after.size)
            nodes_.emplace(&after, Earlier{NodeChange::Kind::unchanged, before.size});
        Children children;
        const std::size_t first = compareFirst(before, after, children);
        const auto earlier = before.children().subspan(first);
        for (std::size_t i = 0; i < earlier.size() && !isStopped(); ++i)
            if (earlier[i]->isAggregate)
                children.earlierSmall = earlier[i].get();
            else
                children.earlier.emplace(earlier[i]->name, earlier[i].get());
        const auto later = after.children().subspan(first);
        for (std::size_t i = 0; i < later.size() && !isStopped(); ++i)
            if (later[i]->isAggregate)
                children.laterSmall = later[i].get();
            else
                findPartner(*later[i], children);
        if (!isStopped())
            compareRest(children, earlier, after);
    }

    void findPartner(const FSNode &later, Children &children) {
        const auto found = children.earlier.find(later.name);
        if (found == children.earlier.end() || found->second->isDirectory != later.isDirectory) {
            children.appeared.push_back(&later);
            return;
        }
        comparePair(*found->second, later);
        children.earlier.erase(found);
    }

    /// Compares the first children as long as they have the same names in both folders, as most have, because
    /// both are sorted. Returns how many these are.
    std::size_t compareFirst(const FSNode &before, const FSNode &after, Children &children) {
        const std::size_t most = std::min(before.children().size(), after.children().size());
        for (std::size_t i = 0; i < most && !isStopped(); ++i) {
            const FSNode &earlier = *before.children()[i];
            const FSNode &later = *after.children()[i];
            if (earlier.isAggregate && later.isAggregate) {
                children.earlierSmall = &earlier;
                children.laterSmall = &later;
                continue;
            }
            if (earlier.isAggregate != later.isAggregate || earlier.isDirectory != later.isDirectory ||
                earlier.name != later.name)
                return i;
            comparePair(earlier, later);
        }
        return most;
    }

    void comparePair(const FSNode &before, const FSNode &after) {
        if (after.isDirectory) {
            folders_.emplace_back(&before, &after);
        } else if (before.size != after.size) {
            changes_.push_back(
                {.path = after.path(), .before = before.size, .after = after.size, .node = &after});
            nodes_.emplace(&after, Earlier{NodeChange::Kind::unchanged, before.size});
        }
    }

    /// What has no partner of the same name, and the aggregates.
    void compareRest(const Children &children, std::span<const std::unique_ptr<FSNode>> before,
                     const FSNode &after) {
        static const std::int64_t leastListed = ScanOptions().minimumNodeSize;
        const auto isSmall = [](const FSNode &node) { return !node.isDirectory && node.size < leastListed; };
        std::int64_t earlierSmall = children.earlierSmall != nullptr ? children.earlierSmall->size : 0;
        std::int64_t laterSmall = children.laterSmall != nullptr ? children.laterSmall->size : 0;
        const bool isGroupedLater = children.laterSmall != nullptr && children.earlierSmall == nullptr;
        const bool wasGrouped = children.earlierSmall != nullptr && children.laterSmall == nullptr;
        for (const FSNode *node : children.appeared)
            if (wasGrouped && isSmall(*node))
                laterSmall += node->size;
            else
                new_.push_back(node);
        for (const std::unique_ptr<FSNode> &child : before) {
            const auto found = children.earlier.find(child->name);
            if (child->isAggregate || found == children.earlier.end() || found->second != child.get())
                continue;
            if (isGroupedLater && isSmall(*child))
                earlierSmall += child->size;
            else
                gone_.push_back(child.get());
        }
        if (earlierSmall == laterSmall)
            return;
        changes_.push_back({.path = after.path(),
                            .isAggregate = true,
                            .before = earlierSmall,
                            .after = laterSmall,
                            .node = children.laterSmall});
        if (children.laterSmall != nullptr)
            nodes_.emplace(children.laterSmall, Earlier{NodeChange::Kind::unchanged, earlierSmall});
    }

    void indexGone() {
        for (const FSNode *top : gone_)
            visitUnless(*top, [this](const FSNode &node) {
                if (const std::optional<FileIdentity> identity = node.identity())
                    goneByIdentity_.emplace(laterIdentity(*identity), &node);
                return isStopped();
            });
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
            if (isStopped())
                return true;
            const FSNode *earlier = earlierOf(node);
            if (earlier == nullptr || isTaken(*earlier))
                return false;
            taken_.insert(earlier);
            movedInside += node.size;
            nodes_.emplace(&node, Earlier{NodeChange::Kind::moved, earlier->size, earlier->path()});
            changes_.push_back({.kind = TreeChange::Kind::moved,
                                .path = node.path(),
                                .earlier = earlier->path(),
                                .isFolder = node.isDirectory,
                                .before = earlier->size,
                                .after = node.size,
                                .node = &node});
            return true;
        };
        if (visitUnless(top, isMoved))
            return;
        nodes_.emplace(&top, Earlier{NodeChange::Kind::appeared, 0});
        changes_.push_back({.kind = TreeChange::Kind::appeared,
                            .path = top.path(),
                            .isFolder = top.isDirectory,
                            .after = top.size - movedInside,
                            .node = &top});
    }

    void tellGone(const FSNode &top) {
        std::int64_t movedAway = 0;
        const auto isMoved = [&](const FSNode &node) {
            const bool wasTaken = taken_.contains(&node);
            movedAway += wasTaken ? node.size : 0;
            return wasTaken || isStopped();
        };
        if (!visitUnless(top, isMoved))
            changes_.push_back({.kind = TreeChange::Kind::gone,
                                .path = top.path(),
                                .isFolder = top.isDirectory,
                                .before = top.size - movedAway});
    }

    /// Calls `isLeftOut` for a node and its descendants, except for those of one for which that is true.
    /// Returns whether it is true for the node itself.
    template<class IsLeftOut>
    static bool visitUnless(const FSNode &top, IsLeftOut isLeftOut) {
        if (isLeftOut(top))
            return true;
        std::vector<const FSNode *> waiting{&top};
        while (!waiting.empty()) {
            const FSNode &node = *waiting.back();
            waiting.pop_back();
            for (const std::unique_ptr<FSNode> &child : node.children())
                if (!isLeftOut(*child))
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

    const StopFlag &stopped_;
    std::vector<TreeChange> &changes_;
    std::unordered_map<const FSNode *, Earlier> &nodes_;
    std::vector<std::pair<const FSNode *, const FSNode *>> folders_; ///< to compare
    std::vector<const FSNode *> new_;
    std::vector<const FSNode *> gone_;
    std::unordered_map<FileIdentity, const FSNode *> goneByIdentity_; ///< with the later device
    std::unordered_set<const FSNode *> taken_;                        ///< gone items that were moved
    std::pair<std::uint64_t, std::uint64_t> devices_;
};

TreeComparison::TreeComparison(const FSNode &before, const FSNode &after, const StopFlag &stopped,
                               const std::function<void()> &hasRead) {
    const Pass pass(*this, before, after, stopped);
    if (hasRead)
        hasRead();
    if (stopped.isSet())
        return;
    std::sort(changes_.begin(), changes_.end(), [](const TreeChange &a, const TreeChange &b) {
        return a.growth() != b.growth() ? a.growth() > b.growth() : a.path < b.path;
    });
}

NodeChange TreeComparison::of(const FSNode &node) const {
    for (const FSNode *one = &node; one != nullptr; one = one->folder()) {
        const auto found = nodes_.find(one);
        if (found == nodes_.end())
            continue;
        const Earlier &earlier = found->second;
        if (earlier.kind == NodeChange::Kind::appeared)
            return {NodeChange::Kind::appeared, node.size};
        if (earlier.kind == NodeChange::Kind::moved)
            return {NodeChange::Kind::moved, one == &node ? node.size - earlier.size : 0,
                    one == &node ? std::string_view(earlier.path) : std::string_view()};
        const std::int64_t growth = one == &node ? node.size - earlier.size : 0;
        return {growth > 0   ? NodeChange::Kind::grew
                : growth < 0 ? NodeChange::Kind::shrank
                             : NodeChange::Kind::unchanged,
                growth};
    }
    return {};
}

const FSNode *TreeComparison::nodeOf(const TreeChange &change) const {
    return nodes_.contains(change.node) ? change.node : nullptr; // it has an entry as long as it is there
}

void TreeComparison::letGoOf(const FSNode &node) {
    visitTree(
        node, [this](const FSNode &one) { nodes_.erase(&one); }, [](const FSNode &) {});
}

std::string_view wordFor(TreeChange::Kind kind) {
    switch (kind) {
    case TreeChange::Kind::appeared:
        return "new";
    case TreeChange::Kind::gone:
        return "gone";
    case TreeChange::Kind::moved:
        return "moved";
    case TreeChange::Kind::changed:
        break;
    }
    return "changed";
}

std::string signedSize(std::int64_t bytes) {
    const std::string_view sign = bytes < 0 ? "−" : "+";
    return std::string(sign).append(Fmt::byteFormatter(bytes < 0 ? -bytes : bytes));
}

} // namespace brimvale
