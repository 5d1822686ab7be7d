#include "Core/Removal/PlannedRemoval.h"

#include "Core/Removal/Remover.h"
#include "Support/TemporaryFolder.h"

#include <filesystem>
#include <fstream>
#include <functional>
#include <gmock/gmock.h>
#include <memory>
#include <utility>

namespace brimvale {

namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using testing::TemporaryFolder;

CleanupEntry entry(const std::string &path, CleanupNotes notes = {}) {
    return {.url = FileURL(path),
            .pin = pinOf(FileURL(path)),
            .notes = std::make_shared<const CleanupNotes>(std::move(notes))};
}

/// An entry that goes because another file has the same contents.
CleanupEntry duplicate(const std::string &path, const std::string &staying) {
    CleanupNotes notes;
    notes.equal = std::make_shared<const EqualFile>(
        EqualFile{entryRecord(path).value(), FileURL(staying), entryRecord(staying).value()});
    return entry(path, std::move(notes));
}

RemovalPlan planOf(const std::vector<CleanupEntry> &entries) {
    const MadePlan made = planFor(entries, RemovalMode::deleteNow, {});
    EXPECT_THAT(made.leftOut, IsEmpty());
    return made.plan;
}

/// What is removed now, and why the rest is not.
struct Done {
    std::vector<FileURL> removed;
    std::vector<std::string> reasons = {};
};

Done carryOut(
    const RemovalPlan &plan, const std::function<void()> &inBetween = [] {}) {
    std::vector<RemovalResult::Failure> others;
    const std::vector<CleanupEntry> entries = entriesOf(plan, others, {});
    inBetween();
    const RemovalResult result = Remover::remove(entries, plan.mode);
    others.insert(others.end(), result.failed.begin(), result.failed.end());
    Done done{.removed = result.succeeded};
    for (const RemovalResult::Failure &one : others)
        done.reasons.push_back(one.reason);
    return done;
}

/// Writes other bytes without another length or date.
void changeInSecret(const std::string &path) {
    const auto date = std::filesystem::last_write_time(path);
    const std::string contents(testing::contentOf(path).size(), 'y');
    std::fstream(path, std::ios::in | std::ios::out | std::ios::binary) << contents;
    std::filesystem::last_write_time(path, date);
}

} // namespace

TEST(PlannedRemoval, AFolderGoesOnlyWithWhatWasInIt) {
    const std::vector<std::pair<const char *, std::function<void(const TemporaryFolder &)>>> changes = {
        {"new", [](const TemporaryFolder &folder) { folder.makeFile("it/deep/new", 10); }},
        {"gone", [](const TemporaryFolder &folder) { std::filesystem::remove(folder.path("it/deep/file")); }},
        {"renamed",
         [](const TemporaryFolder &folder) {
             std::filesystem::rename(folder.path("it/deep/file"), folder.path("it/deep/other"));
         }},
        {"replaced",
         [](const TemporaryFolder &folder) {
             const auto date = std::filesystem::last_write_time(folder.path("it/deep/file"));
             std::filesystem::rename(folder.path("it/deep/file"), folder.path("kept"));
             folder.makeFile("it/deep/file", 5'000);
             std::filesystem::last_write_time(folder.path("it/deep/file"), date);
         }},
        {"written",
         [](const TemporaryFolder &folder) {
             std::filesystem::last_write_time(folder.path("it/deep/file"),
                                              std::filesystem::file_time_type::clock::now());
         }},
    };
    for (const auto &one : changes) {
        const TemporaryFolder folder;
        folder.makeFile("it/deep/file", 5'000);
        const RemovalPlan plan = planOf({entry(folder.path("it"))});
        const Done late = carryOut(plan, [&] { one.second(folder); });
        EXPECT_THAT(late.reasons, ElementsAre("What is in “it” has changed since the plan was made."))
            << one.first;
        EXPECT_THAT(carryOut(plan).reasons, SizeIs(1)) << one.first;
        EXPECT_TRUE(std::filesystem::exists(folder.path("it"))) << one.first;
    }
    const TemporaryFolder folder;
    folder.makeFile("it/deep/file", 5'000);
    const RemovalPlan plan = planOf({entry(folder.path("it"))});
    std::filesystem::create_hard_link(folder.path("it/deep/file"), folder.path("link"));
    std::filesystem::permissions(folder.path("it/deep"), std::filesystem::perms::owner_all);
    EXPECT_THAT(carryOut(plan).removed, SizeIs(1)) << "these change nothing that is in it";
}

TEST(PlannedRemoval, OnlyTheSameUnchangedItemGoes) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000);
    const RemovalPlan plan = planOf({entry(file)});
    std::filesystem::resize_file(file, 6'000);
    EXPECT_THAT(carryOut(plan).reasons, ElementsAre("“file” has changed since the plan was made."));

    const RemovalPlan later = planOf({entry(file)});
    std::filesystem::rename(file, folder.path("kept"));
    folder.makeLink("file", "kept");
    EXPECT_THAT(carryOut(later).reasons,
                ElementsAre("“file” is not the item that the plan names, or it is gone."));
    EXPECT_TRUE(std::filesystem::exists(folder.path("kept")));
}

TEST(PlannedRemoval, ADuplicateGoesOnlyBesideAnEqualFile) {
    const TemporaryFolder folder;
    const std::string contents(3'000'000, 'x');
    const std::string copy = folder.writeFile("copy", contents),
                      staying = folder.writeFile("staying", contents);
    const std::string third = folder.writeFile("third", contents);
    const RemovalPlan plan = planOf({duplicate(copy, staying), duplicate(third, staying)});
    ASSERT_THAT(plan.items, SizeIs(2));
    EXPECT_THAT(carryOut({.mode = plan.mode, .items = {plan.items[0]}}).removed, SizeIs(1));

    changeInSecret(staying);
    EXPECT_THAT(carryOut(plan).reasons.back(),
                "“third” was not removed, because it is no longer equal to the file that stays: " + staying);
    std::filesystem::remove(staying);
    EXPECT_THAT(carryOut(plan).reasons.back(), HasSubstr("the equal file that stays has changed or is gone"));
    EXPECT_TRUE(std::filesystem::exists(third));
}

TEST(PlannedRemoval, NeverRemovesBothOfTwoEqualFiles) {
    const TemporaryFolder folder;
    const std::string copy = folder.writeFile("copy", "same"),
                      staying = folder.writeFile("in/staying", "same");
    const RemovalPlan both = planOf({duplicate(copy, staying), entry(folder.path("in"))});
    EXPECT_THAT(carryOut(both).reasons.front(), HasSubstr("the plan also removes the equal file"));
    EXPECT_TRUE(std::filesystem::exists(copy));

    const std::string a = folder.writeFile("a", "equal"), b = folder.writeFile("b", "equal");
    EXPECT_THAT(carryOut(planOf({duplicate(a, b), duplicate(b, a)})).removed, IsEmpty());
}

TEST(PlannedRemoval, AnItemInsideAnotherGoesOnce) {
    const TemporaryFolder folder;
    const CleanupEntry inner = entry(folder.makeFile("it/file", 5'000)), outer = entry(folder.path("it"));
    const Done done = carryOut(planOf({inner, outer, outer, inner}));
    EXPECT_THAT(done.removed, ElementsAre(FileURL(folder.path("it"))));
    EXPECT_THAT(done.reasons, IsEmpty());
}

TEST(PlannedRemoval, KeepsWhatACatalogKnows) {
    const TemporaryFolder folder;
    const std::string file = folder.makeFile("file", 5'000), small = folder.makeFile("small", 10);
    const std::string mark = folder.path("mark");
    CleanupNotes notes{.companions = {pinOf(FileURL(small)).value()}};
    notes.program = std::make_shared<const ProgramSigns>(
        ProgramSigns{.name = "Writer", .marks = {mark}, .mustNotRun = true});
    const RemovalPlan plan = planOf({entry(file, notes)});

    const std::string saved = folder.path("plan");
    ASSERT_EQ(savePlan(saved, plan), std::nullopt);
    const auto read = planAt(saved);
    ASSERT_TRUE(std::holds_alternative<RemovalPlan>(read)) << std::get<std::string>(read);
    EXPECT_EQ(std::get<RemovalPlan>(read), plan);

    folder.makeFile("mark", 1);
    EXPECT_THAT(carryOut(std::get<RemovalPlan>(read)).reasons,
                ElementsAre("Writer is running. Quit it first."));
    EXPECT_THAT(planFor({entry(file, notes)}, RemovalMode::trash, {}).leftOut, SizeIs(1));
    EXPECT_TRUE(std::filesystem::exists(small)) << "it goes only after the item";
    std::filesystem::remove(mark);
    EXPECT_THAT(carryOut(std::get<RemovalPlan>(read)).removed, SizeIs(2));
    EXPECT_FALSE(std::filesystem::exists(small));
}

} // namespace brimvale
