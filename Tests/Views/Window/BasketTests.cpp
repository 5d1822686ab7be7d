#include "Core/Model/Basket.h"
#include "Core/Model/Removals.h"
#include "Platform/OpenedItem.h"
#include "Support/PageTest.h"
#include "Views/Entries/EntryList.h"
#include "Views/Removing/RemovalSheet.h"
#include "Views/Window/BasketBar.h"
#include "Views/Window/BasketSheet.h"

#include <gtest/gtest.h>

namespace brimvale {

namespace {

using testing::eventually;

struct ShownBar : BasketBar {
    explicit ShownBar(CorvelModel &model) : BasketBar(model.basket, model.removals) {}
};

class BasketTest : public testing::PageTest<ShownBar> {
protected:
    CleanupEntry entry(const std::string &inHome, std::int64_t size) {
        return {.url = FileURL(home.path(inHome)), .size = size, .isFolder = true};
    }
    [[nodiscard]] std::vector<std::string> contents() const {
        std::vector<std::string> paths;
        for (const CleanupEntry &one : model.basket->entries)
            paths.push_back(one.url.path());
        return paths;
    }
    using Paths = std::vector<std::string>;

    /// Whether the basket soon has these items of the home folder.
    bool holds(const Paths &inHome) {
        Paths paths;
        for (const std::string &one : inHome)
            paths.push_back(home.path(one));
        return eventually([&] { return contents() == paths; });
    }
};

} // namespace

TEST_F(BasketTest, HoldsEachItemOnceAndDropsWhatIsGone) {
    EXPECT_TRUE(page.isHidden());
    model.basket.add({entry("a/b/c", 1), entry("d", 2), entry("a/b/c", 1), entry("a/bc", 4)});
    EXPECT_TRUE(holds({"d", "a/b/c", "a/bc"}));
    model.basket.add({entry("a/b", 8), entry("d/inside", 1)});
    EXPECT_TRUE(holds({"d", "a/bc", "a/b"}));
    EXPECT_FALSE(page.isHidden());
    model.basket.drop(GonePaths({FileURL(home.path("a/b/c"))}));
    EXPECT_EQ(contents().size(), 3U) << "the rest of that folder is still there";
    model.basket.dropChanged(GonePaths({FileURL(home.path("a/b/c"))}));
    EXPECT_EQ(contents(), (Paths{home.path("d"), home.path("a/bc")}));
    model.basket.drop(GonePaths({FileURL(home.path("a"))}));
    EXPECT_EQ(contents(), (Paths{home.path("d")}));
    model.basket.add({entry("late", 1)});
    model.basket.clear();
    model.basket.add({entry("e", 1)});
    EXPECT_TRUE(holds({"e"})) << "what was added before it was emptied does not arrive after";
    model.basket.clear();
    EXPECT_TRUE(page.isHidden());
}

TEST_F(BasketTest, PinsWhatHasNoPin) {
    home.makeFile("file", 10);
    model.basket.add({entry("file", 5'000)});
    ASSERT_TRUE(holds({"file"}));
    EXPECT_EQ(model.basket->entries[0].pin, pinOf(FileURL(home.path("file"))));
}

TEST_F(BasketTest, IsReviewedAndRemovedOnce) {
    home.makeFile("one/file", 10);
    home.makeFile("two/file", 10);
    page.show();
    model.basket.add({entry("one", 5'000), entry("two", 7'000)});
    ASSERT_TRUE(holds({"one", "two"}));
    EXPECT_EQ(text("basketSummary"), "Basket: 2 items, 12 KB");
    click("reviewBasket");
    auto *sheet = page.findChild<BasketSheet *>();
    ASSERT_NE(sheet, nullptr);
    EXPECT_EQ(testing::shown(*sheet, "removeBasket"), "Remove 2 Items, 12 KB…");
    auto &list = testing::find<EntryList>(*sheet, "entries");
    list.model()->setData(list.model()->index(0, 0), Qt::Unchecked, Qt::CheckStateRole);
    EXPECT_EQ(testing::shown(*sheet, "removeBasket"), "Remove 1 Item, 7 KB…");
    testing::click(*sheet, "removeBasket");
    auto *question = sheet->findChild<RemovalSheet *>();
    ASSERT_NE(question, nullptr);
    testing::click(*question, "confirm");
    ASSERT_TRUE(eventually([&] { return !model.removals.isRemoving(); }));
    EXPECT_EQ(actions.calls, Paths{"trash " + home.path("two")});
    EXPECT_EQ(contents(), Paths{home.path("one")});
    click("emptyBasket");
    EXPECT_TRUE(page.isHidden());
}

} // namespace brimvale
