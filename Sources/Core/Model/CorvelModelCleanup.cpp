#include "Core/Model/CorvelModel.h"
#include "Core/Removal/EnclosingFolders.h"
#include "Core/Removal/Remover.h"
#include "Core/Scan/Counter.h"
#include "Core/Storage/CleanupCatalog.h"

#include <algorithm>
#include <utility>

namespace brimvale {

void CorvelModel::measureCleanup() {
    if (*isMeasuringCleanup)
        return;
    if (!*isMeasuringCategories)
        goneMeanwhile_.clear();
    isMeasuringCleanup.set(true);
    cleanupProgress.set(0);
    inBackground(
        [this, definitions = CleanupCatalog::definitions(), cancelled = isClosing_] {
            const auto completed = std::make_shared<Counter>();
            const auto total = static_cast<double>(definitions.size());
            const auto finished = [&](CleanupTarget measured) {
                publish([this, measured = std::move(measured), completed, total]() mutable {
                    EnclosingFolders folders(goneMeanwhile_);
                    std::erase_if(measured.entries, [&](const CleanupEntry &entry) {
                        return goneMeanwhile_.contains(entry.url) || folders.enclose(entry.url);
                    });
                    cleanupTargets.update([&](std::vector<CleanupTarget> &targets) {
                        for (CleanupTarget &target : targets)
                            if (target.id == measured.id)
                                target = measured;
                    });
                    cleanupProgress.set(static_cast<double>(completed->add(1)) / total);
                });
            };
            CleanupCatalog::measureAll(definitions, finished, cancelled);
            return true;
        },
        [this](bool) {
            isMeasuringCleanup.set(false);
            cleanupProgress.set(1);
        });
}

void CorvelModel::removeCleanupEntries(const std::vector<CleanupEntry> &entries, RemovalMode mode) {
    beginRemoval(entries, mode, [this](const RemovalResult &result) {
        refreshVolumes();
        forget(result);
        endRemoval();
    });
}

} // namespace brimvale
