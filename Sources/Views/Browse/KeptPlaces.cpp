#include "Views/Browse/KeptPlaces.h"

#include "Views/Browse/Outline/OutlineMarks.h"
#include "Views/Browse/Outline/OutlineView.h"

#include <QScrollBar>
#include <algorithm>
#include <cstddef>

namespace brimvale {

namespace {

/// More would take long to find again.
constexpr std::size_t mostSelected = 1000;
constexpr std::size_t mostExpanded = 1000;

/// A folder that was not expanded has no expanded row below it.
std::vector<const FSNode *> expandedBelow(const FSNode &folder) {
    std::vector<const FSNode *> found;
    std::vector<const FSNode *> waiting{&folder};
    while (!waiting.empty() && found.size() < mostExpanded) {
        const FSNode *next = waiting.back();
        waiting.pop_back();
        for (const std::unique_ptr<FSNode> &child : next->children())
            if (OutlineMark::has(*child, OutlineMark::expanded)) {
                found.push_back(child.get());
                waiting.push_back(child.get());
            }
    }
    return found;
}

FSNode *childNamed(const FSNode &folder, const std::string &name) {
    const auto children = folder.children();
    const auto found = std::find_if(children.begin(), children.end(), [&](const auto &child) {
        return child->name == name && !child->isAggregate;
    });
    return found == children.end() ? nullptr : found->get();
}

} // namespace

KeptPlaces::KeptPlaces(const OutlineView &outline, const FSNode &folder, const FSNode *focus)
    : scrolled_(outline.verticalScrollBar()->value()) {
    hasFocus_ = focus != &folder && OutlineModel::isWithin(focus, folder);
    if (hasFocus_)
        focus_ = wayTo(*focus, folder);
    for (const FSNode *node : expandedBelow(folder))
        expanded_.push_back(wayTo(*node, folder));
    for (const FSNode *node : outline.selectedNodes())
        if (node != &folder && selected_.size() < mostSelected && OutlineModel::isWithin(node, folder))
            selected_.push_back(wayTo(*node, folder));
}

KeptPlaces::Way KeptPlaces::wayTo(const FSNode &node, const FSNode &folder) {
    Way way;
    for (const FSNode *one = &node; one != &folder; one = one->parent())
        way.push_back(one->name);
    std::reverse(way.begin(), way.end());
    return way;
}

FSNode *KeptPlaces::focusIn(FSNode &folder) const {
    if (!hasFocus_)
        return nullptr;
    FSNode *found = &folder;
    for (const std::string &name : focus_) {
        FSNode *next = childNamed(*found, name);
        if (next == nullptr || next->outlineChildren().empty())
            break;
        found = next;
    }
    return found;
}

std::vector<FSNode *> KeptPlaces::find(const std::vector<Way> &ways, FSNode &folder) {
    std::vector<FSNode *> nodes;
    for (const Way &way : ways) {
        FSNode *node = &folder;
        for (const std::string &name : way)
            node = node == nullptr ? nullptr : childNamed(*node, name);
        if (node != nullptr)
            nodes.push_back(node);
    }
    return nodes;
}

void KeptPlaces::putBack(OutlineView &outline, FSNode &folder) const {
    outline.putBack(find(expanded_, folder), find(selected_, folder));
    outline.verticalScrollBar()->setValue(scrolled_);
}

} // namespace brimvale
