#include "Base/Published.h"

#include <gtest/gtest.h>
#include <vector>

namespace brimvale {

namespace {

class Model {
public:
    void sizesChanged() { ++announcements; }
    int announcements = 0;
    Published<Model, std::vector<int>, &Model::sizesChanged> sizes{this};

    void assign(std::vector<int> values) { sizes.set(std::move(values)); }
    void append(int value) {
        sizes.update([&](std::vector<int> &values) { values.push_back(value); });
    }
};

} // namespace

TEST(Published, AnnouncesOnlyChanges) {
    Model model;
    model.assign({});
    EXPECT_EQ(model.announcements, 0);
    model.assign({1, 2});
    model.assign({1, 2});
    EXPECT_EQ(model.announcements, 1);
    model.append(3);
    EXPECT_EQ(model.announcements, 2);
    EXPECT_EQ(*model.sizes, (std::vector{1, 2, 3}));
}

} // namespace brimvale
