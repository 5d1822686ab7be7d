#pragma once

#include "Views/Browse/Outline/OutlineTree.h"
#include "Views/Browse/Outline/OutlineView.h"

#include <QKeyEvent>
#include <QTest>
#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <vector>

namespace brimvale::testing {

/// An outline in a shown window, with the tree
///
///     root  big  deep  needle   50
///                      thread    5
///                leaf           20
///           small  Needle case  10
///           empty
///           file                30
class OutlineWindow : public ::testing::Test {
protected:
    struct Host : QWidget {
        std::vector<int> keys; ///< that the outline left to it
        void keyPressEvent(QKeyEvent *event) override { keys.push_back(event->key()); }
    };

    OutlineWindow() {
        tree_->sortRecursively();
        model_.setTree(tree_);
        host_.resize(600, 400);
        view_->resize(host_.size());
        host_.show();
        view_->setFocus();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&host_));
        QObject::connect(
            view_, &OutlineView::selectionChangedTo, view_,
            [this](const std::vector<FSNode *> &nodes) { announced_.push_back(namesOf(nodes)); });
        QObject::connect(view_, &OutlineView::opened, view_,
                         [this](FSNode *folder) { opened_.push_back(folder->name); });
    }

    QModelIndex at(const FSNode &node) const { return model_.indexOf(node); }
    std::string current() const {
        return view_->currentIndex().siblingAtColumn(0).data().toString().toStdString();
    }
    std::vector<std::string> selected() const { return namesOf(view_->selectedNodes()); }

    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::keyClick(view_, key, modifiers);
    }
    void click(const FSNode &node, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        QTest::mouseClick(view_->viewport(), Qt::LeftButton, modifiers, view_->visualRect(at(node)).center());
    }
    void filter(const QString &text) {
        model_.setFilter(text);
        EXPECT_TRUE(waitUntilFiltered(model_));
    }
    void detachNode(FSNode &node) { detach(model_, node); }

    std::shared_ptr<FSNode> tree_ = makeRoot();
    FSNode &big_ = addFolder(*tree_, "big");
    FSNode &deep_ = addFolder(big_, "deep");
    FSNode &needle_ = add(deep_, "needle", 50);
    FSNode &thread_ = add(deep_, "thread", 5);
    FSNode &leaf_ = add(big_, "leaf", 20);
    FSNode &small_ = addFolder(*tree_, "small");
    FSNode &otherNeedle_ = add(small_, "Needle case", 10);
    FSNode &empty_ = addFolder(*tree_, "empty");
    FSNode &file_ = add(*tree_, "file", 30);
    OutlineModel model_;
    Host host_;
    OutlineView *view_ = new OutlineView(model_, &host_);
    std::vector<std::vector<std::string>> announced_;
    std::vector<std::string> opened_;
};

} // namespace brimvale::testing
