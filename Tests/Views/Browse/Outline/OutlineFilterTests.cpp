#include "Views/Browse/Outline/OutlineWindow.h"

#include <QSignalSpy>
#include <gmock/gmock.h>

namespace brimvale {

using namespace brimvale::testing;
using ::testing::ElementsAre;

TEST(OutlineModel, FiltersByNameWhateverTheCase) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &folder = addFolder(*root, "Holiday");
    add(folder, "beach.jpg", 3);
    add(folder,
        "U\xCC\x88"
        "bersicht",
        2); // Ü in two characters
    addAggregate(folder, 4, 1);
    add(*root, "not\xFFutf8", 1);
    OutlineModel model;
    model.setTree(root);
    const QModelIndex &top = QModelIndex();
    struct Case {
        const char *filter;
        qint64 matches;
        std::vector<std::string> rows;
        std::vector<std::string> rowsInFolder;
    };
    const std::vector<Case> cases = {
        {"BEACH", 1, {"Holiday"}, {"beach.jpg"}},
        {"übers", 1, {"Holiday"}, {"Übersicht"}},
        {"holi", 1, {"Holiday"}, {"beach.jpg", "Übersicht", "4 smaller items"}}, // with all it holds
        {"\uFFFD", 1, {"not\uFFFDutf8"}, {}},
        {"smaller item", 0, {}, {}}, // an aggregate's words are no name
        {"root", 0, {}, {}},         // nor has the root a row
        {".*", 0, {}, {}},
        {"i", 2, {"Holiday"}, {"beach.jpg", "Übersicht", "4 smaller items"}},
    };
    for (const Case &one : cases) {
        SCOPED_TRACE(one.filter);
        const QSignalSpy done(&model, &OutlineModel::filtered);
        model.setFilter(QString::fromUtf8(one.filter));
        ASSERT_TRUE(waitUntilFiltered(model));
        ASSERT_EQ(done.count(), 1);
        EXPECT_EQ(done.front().front().toLongLong(), one.matches);
        std::vector<std::string> rows = rowsIn(model);
        EXPECT_EQ(rows, one.rows);
        const QModelIndex index = model.indexOf(folder);
        std::vector<std::string> inside;
        if (index.isValid())
            for (const std::string &name : rowsIn(model, index))
                inside.push_back(
                    QString::fromStdString(name).normalized(QString::NormalizationForm_C).toStdString());
        EXPECT_EQ(inside, one.rowsInFolder);
        EXPECT_EQ(index.isValid() && model.hasChildren(index), !one.rowsInFolder.empty());
    }
    model.setFilter({});
    EXPECT_FALSE(model.isFiltering());
    EXPECT_EQ(model.rowCount(top), 2);
}

TEST(OutlineModel, ShowsTheOldRowsUntilAFilterIsDone) {
    const std::shared_ptr<FSNode> root = makeRoot();
    for (const char *name : {"abc", "ab", "b"})
        add(*root, name, 1);
    OutlineModel model;
    model.setTree(root);
    QSignalSpy done(&model, &OutlineModel::filtered);
    model.setFilter("a");
    EXPECT_EQ(model.rowCount(), 3);
    model.setFilter("ab"); // typed on before the first was done
    ASSERT_TRUE(waitUntilFiltered(model));
    EXPECT_EQ(done.count(), 1);
    EXPECT_THAT(rowsIn(model), ElementsAre("ab", "abc"));

    model.setFilter("abc");
    EXPECT_THAT(rowsIn(model), ElementsAre("ab", "abc"));
    model.setFilter("b");
    model.setFilter("abc");
    ASSERT_TRUE(waitUntilFiltered(model));
    EXPECT_THAT(rowsIn(model), ElementsAre("abc"));

    model.setFilter("b");
    model.setFilter({});
    QCoreApplication::processEvents();
    EXPECT_EQ(model.rowCount(), 3) << "an abandoned filter has no effect";

    // The text stays in force for the next tree.
    model.setFilter("new");
    const std::shared_ptr<FSNode> next = makeRoot();
    add(*next, "new", 1);
    add(*next, "old", 1);
    model.setTree(next);
    EXPECT_EQ(model.rowCount(), 2);
    ASSERT_TRUE(waitUntilFiltered(model));
    EXPECT_THAT(rowsIn(model), ElementsAre("new"));
}

TEST(OutlineModel, FoldersLookedIntoMeanwhileShowTheOldFilterToo) {
    const std::shared_ptr<FSNode> root = makeRoot();
    FSNode &folder = addFolder(*root, "box");
    for (int i = 0; i < 100'000; ++i)
        add(folder, i % 1000 == 0 ? "old" : "new", 1);
    OutlineModel model;
    model.setTree(root);
    model.setFilter("OLD");
    ASSERT_TRUE(waitUntilFiltered(model));
    model.setFilter("NEW");
    QCoreApplication::processEvents(); // a part of the search
    EXPECT_TRUE(model.isFiltering());
    EXPECT_EQ(model.rowCount(model.indexOf(folder)), 100);
    ASSERT_TRUE(waitUntilFiltered(model));
    EXPECT_EQ(model.rowCount(model.indexOf(folder)), 99'900);
}

TEST_F(OutlineWindow, LaysFewMatchesOpenAndGoesBackToWhatTheUserHadOpened) {
    view_->expand(at(big_));
    filter("needle");
    EXPECT_TRUE(view_->isExpanded(at(deep_)));
    EXPECT_TRUE(view_->isExpanded(at(small_)));
    filter("file"); // hides the open folder for a while
    filter("");
    EXPECT_TRUE(view_->isExpanded(at(big_)));
    EXPECT_FALSE(view_->isExpanded(at(deep_)));
    EXPECT_FALSE(view_->isExpanded(at(small_)));

    filter("big");
    EXPECT_THAT(rowsIn(model_, at(deep_)), ElementsAre("needle", "thread")) << "is within a match";
    EXPECT_FALSE(view_->isExpanded(at(deep_))) << "but does not lead to one";

    filter("case");
    click(otherNeedle_);
    for (int i = 0; i < 200; ++i)
        add(empty_, "e", 0);
    filter("e"); // matches too many to lay open
    EXPECT_FALSE(view_->isExpanded(at(empty_)));
    EXPECT_TRUE(view_->isExpanded(at(small_))) << "what was found stays in sight";
    filter("");
    EXPECT_TRUE(view_->isExpanded(at(small_)));
    EXPECT_THAT(selected(), ElementsAre("Needle case"));
}

TEST_F(OutlineWindow, StaysFocusedOnAFolderThatAFilterHides) {
    view_->setFocusFolder(&small_);
    filter("leaf");
    EXPECT_EQ(view_->focusFolder(), &small_);
    EXPECT_EQ(model_.rowCount(view_->rootIndex()), 0);
    view_->setFocusFolder(&empty_); // as one may from a treemap, which is not filtered
    EXPECT_EQ(view_->focusFolder(), &empty_);
    view_->setFocusFolder(nullptr);
    EXPECT_THAT(rowsIn(model_), ElementsAre("big"));
    view_->setFocusFolder(&deep_);
    filter("file");
    detachNode(deep_);
    ASSERT_TRUE(waitUntilFiltered(model_));
    EXPECT_THAT(rowsIn(model_), ElementsAre("file"));
    filter("");
    EXPECT_EQ(model_.rowCount(view_->rootIndex()), 4);
}

} // namespace brimvale
