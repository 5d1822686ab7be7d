#pragma once

#include "Support/SampleTree.h"
#include "Support/Window.h"
#include "Views/Browse/Treemap/TreemapView.h"

#include <QSignalSpy>

namespace brimvale::testing {

/// A folder, a file and more small files than get a tile, in that order and of falling size.
inline std::shared_ptr<FSNode> makeMixedFolder() {
    std::shared_ptr<FSNode> folder = makeRoot();
    addFolder(*folder, "documents", 600'000'000);
    add(*folder, "film.mov", 300'000'000);
    add(*folder, "a", 40'000'000);
    add(*folder, "b", 30'000'000);
    add(*folder, "c", 30'000'000);
    return folder;
}

/// A shown treemap of 400 × 300 with at most three tiles for single children, and without the focus.
class ShownTreemap {
public:
    explicit ShownTreemap(FSNode *node) {
        view.resize(400, 300);
        view.setMaxTiles(3);
        view.setNode(node);
        view.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&view));
        view.clearFocus();
    }

    [[nodiscard]] QPoint middleOf(std::size_t tile) const { return view.tileArea(tile).center(); }
    void click(std::size_t tile) { QTest::mouseClick(&view, Qt::LeftButton, {}, middleOf(tile)); }
    void doubleClick(std::size_t tile) {
        click(tile);
        QTest::mouseDClick(&view, Qt::LeftButton, {}, middleOf(tile));
    }

    TreemapView view;
    QSignalSpy selected{&view, &TreemapView::selected};
    QSignalSpy drilledIn{&view, &TreemapView::drilledIn};
    QSignalSpy menus{&view, &TreemapView::contextMenuRequested};
};

inline std::vector<const FSNode *> nodesIn(const QSignalSpy &spy) {
    std::vector<const FSNode *> nodes;
    for (const QList<QVariant> &arguments : spy)
        nodes.push_back(arguments.front().value<FSNode *>());
    return nodes;
}

} // namespace brimvale::testing
