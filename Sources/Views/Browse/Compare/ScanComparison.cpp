#include "Views/Browse/Compare/ScanComparison.h"

#include <utility>

namespace brimvale {

void ScanComparison::begin(Earlier earlier, const FSNode &later) {
    earlier_ = std::move(earlier);
    laterPath_ = later.path();
    compareAgain(later);
}

void ScanComparison::end() {
    changes_.reset();
    earlier_ = {};
}

void ScanComparison::compareAgain(const FSNode &later) {
    if (!isOn())
        return;
    if (later.path() != laterPath_)
        return end();
    changes_.emplace(*earlier_.tree, later);
}

void ScanComparison::letGoOf(const FSNode &node) {
    if (changes_)
        changes_->letGoOf(node);
}

NodeChange ScanComparison::of(const FSNode &node) const {
    return changes_ ? changes_->of(node) : NodeChange();
}

} // namespace brimvale
