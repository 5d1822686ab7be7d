#include "Views/Window/RemovalBar.h"

#include "Platform/RemovalProgress.h"
#include "Support/Model.h"
#include "Support/RecordingActions.h"
#include "Support/Window.h"

#include <gtest/gtest.h>
#include <semaphore>

namespace brimvale {

TEST(RemovalBar, TellsHowMuchOfABackupIsCompared) {
    testing::RecordingActions actions;
    CorvelModel model(actions);
    RemovalBar bar(model.removals, nullptr);
    std::binary_semaphore isShown(0);
    model.removals.removeCategoryEntries({}, [&](RemovalProgress &progress, RemovalActions &) {
        progress.bytesToVerify = 3'000'000;
        progress.bytesVerified = 1'200'000;
        isShown.acquire();
        progress.bytesVerified = 3'000'000;
        isShown.acquire();
        return RemovalResult{};
    });
    const auto says = [&](const std::string &text) {
        return testing::eventually([&] { return testing::shown(bar, "removalActivity") == text; });
    };
    EXPECT_TRUE(says("Comparing the backup with its manifest, 1.2 MB of 3 MB"));
    isShown.release();
    EXPECT_TRUE(says("Removing…"));
    isShown.release();
    EXPECT_TRUE(testing::waitUntilRemoved(model));
}

} // namespace brimvale
