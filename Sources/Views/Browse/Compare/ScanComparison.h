#pragma once

#include "Core/Export/Comparison.h"
#include "Core/Export/ScanOrigin.h"

#include <QObject>
#include <QString>
#include <memory>
#include <string>

namespace brimvale {

/// The earlier scan that the page's tree is compared with, and what has changed since. The trees are compared
/// in the background, and again after every change. The earlier scan is kept while another scan of the same
/// folder runs.
///
/// The comparison reads the page's tree where it is. Before that tree is changed, `leaveTree` has to be
/// called.
class ScanComparison : public QObject {
    Q_OBJECT

public:
    /// A scan or list that was read from a file.
    struct Earlier {
        std::shared_ptr<const FSNode> tree;
        QString file; ///< its name
        ScanOrigin origin;
    };

    using QObject::QObject;
    /// Waits a moment until the later tree is not read any more.
    ~ScanComparison() override;

    /// Compares `later` with an earlier scan from now on.
    void begin(Earlier earlier, const FSNode &later);
    /// Ends that, and drops all pointers.
    void end();
    [[nodiscard]] bool isOn() const { return earlier_.tree != nullptr; }
    [[nodiscard]] const Earlier &earlier() const { return earlier_; }

    /// Compares again if `later` has changed since, or is another tree; `compared` tells the end. Ends the
    /// comparison if it is a tree of another folder.
    void compareAgain(const FSNode &later);
    /// Whether a comparison runs. Until it ends, `changes` are those of before.
    [[nodiscard]] bool isRunning() const { return run_ != nullptr; }

    /// Stops a running comparison, because the later tree is about to change. Waits until that is not read
    /// any more, which takes a moment only.
    void leaveTree();
    /// Drops all pointers into the later tree.
    void letGo();
    /// Drops the pointers to a node and its descendants. Call it before they leave the tree.
    void letGoOf(const FSNode &node);

    /// Null as long as nothing has been compared.
    [[nodiscard]] const TreeComparison *changes() const { return changes_.get(); }
    [[nodiscard]] NodeChange of(const FSNode &node) const;

signals:
    /// `changes` are others now. The earlier ones may be used until all listeners have returned.
    void compared();

private:
    struct Run;

    void take(std::shared_ptr<TreeComparison> found);

    Earlier earlier_;
    std::string laterPath_;
    std::shared_ptr<TreeComparison> changes_;
    std::shared_ptr<Run> run_; ///< null if none is running
    bool isOutdated_ = false;  ///< the later tree has changed since it was compared
};

} // namespace brimvale
