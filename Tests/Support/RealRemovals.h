#pragma once

#include "Support/RecordingActions.h"

#include <atomic>
#include <filesystem>
#include <string>

namespace brimvale::testing {

/// Removes what it is asked to, on the disk, as the user or in the place of the administrator. The Trash is a
/// plain folder.
class RealRemovals final : public RecordingActions {
public:
    explicit RealRemovals(std::string trash) : trash_(std::move(trash)) {}

    enum class Plan { succeed, failHalfWay };
    /// How the next deletion of a folder ends; those after it succeed.
    void plan(Plan plan) { plan_ = plan; }

    std::function<void()> onChange; ///< after each change of the disk

    std::optional<FileError> removeItem(const OpenedItem &item, RemovalProgress *progress) override;
    Result<TrashedItem> moveToTrash(const OpenedItem &item) override;
    Result<KeptReasons, PrivilegedRunError> removeAsAdministrator(const std::vector<ItemPin> &items) override;

private:
    void note(std::string call);

    std::string trash_;
    std::atomic<Plan> plan_ = Plan::succeed;
    int trashed_ = 0;
};

} // namespace brimvale::testing
