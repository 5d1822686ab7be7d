#include "Core/Trash/PuttingBack.h"

#include "Base/Text.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Removal/Remover.h"
#include "Core/Trash/TrashTexts.h"
#include "Platform/PutBack.h"
#include "Platform/TrashContents.h"

#include <cerrno>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

/// Puts items back, one after the other.
class PuttingBack {
public:
    void putBack(const CleanupEntry &entry);
    void putBack(const MovedToTrash &moved);

    [[nodiscard]] PutBackResult takeResult() { return std::move(result_); }

private:
    /// Why it failed; nothing on success.
    [[nodiscard]] std::optional<std::string> putBack(const FileURL &url, const OpenedItem &item,
                                                     const FileURL &oldPlace,
                                                     const std::optional<FileIdentity> &oldFolder = {});
    void note(const FileURL &url, std::optional<std::string> failure) {
        if (failure)
            result_.failed.push_back({url, *std::move(failure)});
    }

    RemovalGate gate_;
    PutBackResult result_;
};

void PuttingBack::putBack(const CleanupEntry &entry) {
    Result<OpenedItem, int> opened =
        entry.pin ? OpenedItem::again(*entry.pin) : OpenedItem::at(entry.url.standardized());
    if (const int *error = std::get_if<int>(&opened))
        return note(entry.url, TrashTexts::putBackError(*error, entry.url, std::nullopt));
    const auto &item = std::get<OpenedItem>(opened);
    const TrashRecord record = trashRecord(item.place());
    note(entry.url, record.oldPlace ? putBack(entry.url, item, *record.oldPlace)
                                    : TrashTexts::whyNotPutBack(record.state));
}

void PuttingBack::putBack(const MovedToTrash &moved) {
    const Result<OpenedItem, int> opened = OpenedItem::again(moved.now);
    if (const int *error = std::get_if<int>(&opened))
        return note(moved.place, TrashTexts::putBackError(Remover::isGone(moved.now.place) ? ENOENT : *error,
                                                          moved.now.place, moved.place));
    // The number of a folder may change on file systems where items have details.
    const bool keepsNumbers = !moved.now.item.details;
    note(moved.place, putBack(moved.now.place, std::get<OpenedItem>(opened), moved.place,
                              keepsNumbers ? std::optional(moved.folder) : std::nullopt));
}

std::optional<std::string> PuttingBack::putBack(const FileURL &url, const OpenedItem &item,
                                                const FileURL &oldPlace,
                                                const std::optional<FileIdentity> &oldFolder) {
    const Result<PlaceToPutBack, int> found = PlaceToPutBack::at(oldPlace);
    if (const int *error = std::get_if<int>(&found))
        return TrashTexts::putBackError(*error, url, oldPlace);
    const auto &place = std::get<PlaceToPutBack>(found);
    const bool isOtherFolder = oldFolder && place.missing().empty() && place.ancestors().back() != *oldFolder;
    if (isOtherFolder || (oldFolder && place.path() != oldPlace))
        return TrashTexts::otherFolder(oldPlace);
    if (!gate_.admits(place))
        return TrashTexts::protectedPlace(oldPlace);
    const Result<FileURL, int> outcome = brimvale::putBack(item, place);
    if (const int *error = std::get_if<int>(&outcome))
        return TrashTexts::putBackError(*error, url, oldPlace);
    const auto &now = std::get<FileURL>(outcome);
    result_.succeeded.push_back({url, now});
    if (now != place.path())
        result_.remarks.push_back(
            {url, "Its folder was moved. It is now “" + displayText(now.path()) + "”."});
    else if (now != oldPlace.standardized())
        result_.remarks.push_back(
            {url, "A folder on the way is a link. It is now “" + displayText(now.path()) + "”."});
    else if (!place.missing().empty())
        result_.remarks.push_back({url, TrashTexts::madeFolder(now.parent())});
    return std::nullopt;
}

} // namespace

PutBackResult putBackItems(const std::vector<CleanupEntry> &items) {
    PuttingBack run;
    for (const CleanupEntry &item : items)
        run.putBack(item);
    return run.takeResult();
}

PutBackResult putBackItems(const std::vector<MovedToTrash> &items) {
    PuttingBack run;
    for (const MovedToTrash &item : items)
        run.putBack(item);
    return run.takeResult();
}

} // namespace brimvale
