#include "Core/Storage/StorageFigures.h"

#include "Core/Storage/CleanupRiskTexts.h"

#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::HasSubstr;

MeasuredCategory category(CategoryMeasurement measurement, std::int64_t size) {
    MeasuredCategory one{.category = {.id = "",
                                      .title = "",
                                      .symbol = "",
                                      .colorName = "",
                                      .detail = "",
                                      .measurement = measurement,
                                      .action = RemovableAction{}}};
    one.size = size;
    return one;
}

std::vector<MeasuredCategory> categories(std::int64_t first, std::int64_t second) {
    return {category(CategoryMeasurement::measured, first), category(CategoryMeasurement::remainder, 77),
            category(CategoryMeasurement::measured, second)};
}

VolumeInfo volume(std::int64_t capacity, std::int64_t free) {
    return {.url = FileURL("/"), .name = "", .totalCapacity = capacity, .trueFree = free};
}

} // namespace

TEST(StorageFigures, SystemDataIsTheRemainder) {
    struct Case {
        std::int64_t capacity, free, first, second, expected;
    };
    for (const Case &one :
         {Case{1000, 300, 100, 200, 400}, Case{1000, 300, 0, 0, 700}, Case{1000, 300, 400, 300, 0},
          Case{1000, 300, 800, 1, 0}, Case{1000, 1200, 1, 0, 0}, Case{1000, 1000, 0, 0, 0}}) {
        const auto resolved = StorageFigures::resolvingRemainder(categories(one.first, one.second),
                                                                 volume(one.capacity, one.free));
        EXPECT_EQ(resolved[1].size, one.expected);
        EXPECT_TRUE(resolved[1].measured);
        EXPECT_FALSE(resolved[0].measured);
    }
    const auto untouched = StorageFigures::resolvingRemainder(categories(1, 2), std::nullopt);
    EXPECT_EQ(untouched, categories(1, 2));
    EXPECT_EQ(StorageFigures::categorisedBytes(untouched), 3);
    const std::vector<MeasuredCategory> none = {category(CategoryMeasurement::measured, 5)};
    EXPECT_EQ(StorageFigures::resolvingRemainder(none, volume(10, 0)), none);
    EXPECT_EQ(StorageFigures::systemDataAccounted(none), 0);
    EXPECT_FALSE(StorageFigures::systemDataSentence(none));
}

TEST(StorageFigures, SentenceComparesRowsWithHeadline) {
    EXPECT_FALSE(StorageFigures::systemDataSentence(0, 5'000'000));
    EXPECT_THAT(*StorageFigures::systemDataSentence(2'000'000, 5'000'000),
                HasSubstr("account for 2 MB of the 5 MB. The remaining 3 MB is not attributable"));
    EXPECT_THAT(*StorageFigures::systemDataSentence(2'000'000, 2'000'001),
                HasSubstr("The remaining 0 KB is"));
    for (const std::int64_t headline : {2'000'000, 1'000'000, 0})
        EXPECT_THAT(*StorageFigures::systemDataSentence(2'000'000, headline),
                    HasSubstr("cover all of it, and then some: they total 2 MB against a headline of "));
    std::vector<MeasuredCategory> measured = categories(0, 0);
    measured[1].entries = {{FileURL("/a"), 60}, {FileURL("/b"), 40}};
    EXPECT_EQ(StorageFigures::systemDataAccounted(measured), 100);
    EXPECT_EQ(StorageFigures::systemDataSentence(measured), StorageFigures::systemDataSentence(100, 77));
}

TEST(CleanupRiskTexts, WarningNamesTheRemovalMode) {
    for (const CleanupRisk risk : {CleanupRisk::safe, CleanupRisk::review, CleanupRisk::careful}) {
        EXPECT_THAT(std::string(removalWarning(risk, RemovalMode::trash)), HasSubstr("to the Trash"));
        EXPECT_THAT(std::string(removalWarning(risk, RemovalMode::deleteNow)), HasSubstr("immediately"));
    }
}

} // namespace brimvale
