#pragma once

#include "Core/Export/Comparison.h"
#include "Core/Export/ScanOrigin.h"

#include <QString>
#include <memory>
#include <optional>
#include <string>

namespace brimvale {

/// The earlier scan that the page's tree is compared with, and what has changed since. The earlier scan is
/// kept while another scan of the same folder runs.
class ScanComparison {
public:
    /// A scan or list that was read from a file.
    struct Earlier {
        std::shared_ptr<const FSNode> tree;
        QString file; ///< its name
        ScanOrigin origin;
    };

    /// Compares `later` with an earlier scan from now on.
    void begin(Earlier earlier, const FSNode &later);
    /// Ends that, and drops all pointers.
    void end();
    [[nodiscard]] bool isOn() const { return earlier_.tree != nullptr; }
    [[nodiscard]] const Earlier &earlier() const { return earlier_; }

    /// Compares again, because `later` has changed or is another tree. Ends the comparison if it is a tree of
    /// another folder.
    void compareAgain(const FSNode &later);
    /// Drops all pointers into the later tree.
    void letGo() { changes_.reset(); }
    /// Drops the pointers to a node and its descendants. Call it before they leave the tree.
    void letGoOf(const FSNode &node);

    /// Null while there is no later tree.
    [[nodiscard]] const TreeComparison *changes() const { return changes_ ? &*changes_ : nullptr; }
    [[nodiscard]] NodeChange of(const FSNode &node) const;

private:
    Earlier earlier_;
    std::string laterPath_;
    std::optional<TreeComparison> changes_;
};

} // namespace brimvale
