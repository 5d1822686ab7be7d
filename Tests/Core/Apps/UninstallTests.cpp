#include "Core/Apps/Uninstall.h"

#include "Core/Text/Formatting.h"
#include "Support/TemporaryFolder.h"

#include <gmock/gmock.h>

namespace brimvale {

namespace {

using ::testing::IsEmpty;

LeftoverItem leftover(const std::string &path, std::int64_t size) {
    return {FileURL(path), "Cache", MatchConfidence::exact, size, false};
}

AppRow row(const std::string &name, std::vector<LeftoverItem> leftovers, bool isSystemApp = false) {
    AppRow row{.app = {.url = FileURL("/Applications/" + name + ".app"),
                       .name = name,
                       .bundleID = {},
                       .version = {},
                       .isSystemApp = isSystemApp,
                       .isMASApp = false,
                       .lastUsed = {}},
               .bundleSize = 1'000'000,
               .leftovers = std::move(leftovers),
               .analyzed = true};
    return row;
}

const LeftoverItem first = leftover("/first", 200'000);
const LeftoverItem second = leftover("/second", 300'000);

} // namespace

TEST(Uninstall, ConfirmationAndItemsMatchTheSelection) {
    const AppRow app = row("Acme", {first, second});
    const AppRow systemApp = row("System", {first}, true);
    struct Case {
        const AppRow &row;
        std::vector<LeftoverItem> leftovers;
        bool includeBundle;
        std::string what;
        std::int64_t bytes;
        std::vector<FileURL> urls;
    };
    const FileURL &bundle = app.app.url;
    for (const Case &one : {Case{app,
                                 {first, second},
                                 true,
                                 "the app bundle and 2 supporting items",
                                 1'500'000,
                                 {first.url, second.url, bundle}},
                            Case{app, {second}, false, "1 supporting item", 300'000, {second.url}},
                            Case{app, {}, true, "the app bundle and 0 supporting items", 1'000'000, {bundle}},
                            Case{systemApp, {first}, true, "1 supporting item", 200'000, {first.url}}}) {
        EXPECT_EQ(Uninstall::confirmation(one.row, one.leftovers, one.includeBundle),
                  "This removes " + one.what + ", freeing about " + Fmt::byteFormatter(one.bytes));
        std::vector<FileURL> urls;
        std::int64_t bytes = 0;
        for (const CleanupEntry &entry : Uninstall::entries(one.row, one.leftovers, one.includeBundle)) {
            urls.push_back(entry.url);
            bytes += entry.size;
        }
        EXPECT_EQ(urls, one.urls);
        EXPECT_EQ(bytes, one.bytes);
    }
}

TEST(Uninstall, KnowsTheKindOfEveryEntry) {
    const testing::TemporaryFolder folder;
    AppRow app = row("Acme", {});
    const auto kindsOf = [&](const std::string &bundle, const std::vector<LeftoverItem> &leftovers) {
        app.app.url = FileURL(bundle);
        app.app.pin = pinOf(app.app.url);
        std::vector<bool> kinds;
        for (const CleanupEntry &entry : Uninstall::entries(app, leftovers, true))
            kinds.push_back(entry.isFolder);
        return kinds;
    };
    LeftoverItem cache = first;
    cache.isFolder = true;
    EXPECT_EQ(kindsOf(folder.makeFolder("Acme.app"), {cache, second}), std::vector({true, false, true}));
    EXPECT_EQ(kindsOf(folder.makeLink("link.app", "Acme.app"), {}), std::vector({false}));
}

TEST(Uninstall, NamesOtherAppsThatClaimALeftover) {
    const std::vector<AppRow> rows = {row("Acme", {first, second}), row("Pro", {second}),
                                      row("Max", {second})};
    EXPECT_THAT(Uninstall::otherClaims(first, rows[0].app.url, rows), IsEmpty());
    EXPECT_EQ(Uninstall::otherClaims(second, rows[0].app.url, rows), "Also claimed by Pro, Max");
    EXPECT_EQ(Uninstall::otherClaims(second, rows[1].app.url, rows), "Also claimed by Acme, Max");
}

} // namespace brimvale
