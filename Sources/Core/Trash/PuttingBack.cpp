#include "Core/Trash/PuttingBack.h"

#include "Base/Text.h"
#include "Core/Removal/RemovalGate.h"
#include "Core/Trash/TrashTexts.h"
#include "Platform/PutBack.h"
#include "Platform/TrashContents.h"

#include <string>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

/// Puts items back, one after the other.
class PuttingBack {
public:
    void putBack(const CleanupEntry &entry);

    [[nodiscard]] PutBackResult takeResult() { return std::move(result_); }

private:
    void putBack(const FileURL &url, const OpenedItem &item, const FileURL &oldPlace);
    void fail(const FileURL &url, std::string reason) { result_.failed.push_back({url, std::move(reason)}); }

    RemovalGate gate_;
    PutBackResult result_;
};

void PuttingBack::putBack(const CleanupEntry &entry) {
    Result<OpenedItem, int> opened =
        entry.pin ? OpenedItem::again(*entry.pin) : OpenedItem::at(entry.url.standardized());
    if (const int *error = std::get_if<int>(&opened))
        return fail(entry.url, TrashTexts::putBackError(*error, entry.url, std::nullopt));
    const auto &item = std::get<OpenedItem>(opened);
    const TrashRecord record = trashRecord(item.place());
    if (!record.oldPlace)
        return fail(entry.url, TrashTexts::whyNotPutBack(record.state));
    putBack(entry.url, item, *record.oldPlace);
}

void PuttingBack::putBack(const FileURL &url, const OpenedItem &item, const FileURL &oldPlace) {
    const auto failWith = [&](int error) { fail(url, TrashTexts::putBackError(error, url, oldPlace)); };
    const Result<PlaceToPutBack, int> found = PlaceToPutBack::at(oldPlace);
    if (const int *error = std::get_if<int>(&found))
        return failWith(*error);
    const auto &place = std::get<PlaceToPutBack>(found);
    if (!gate_.admits(place))
        return fail(url, TrashTexts::protectedPlace(oldPlace));
    const Result<FileURL, int> outcome = brimvale::putBack(item, place);
    if (const int *error = std::get_if<int>(&outcome))
        return failWith(*error);
    const auto &now = std::get<FileURL>(outcome);
    result_.succeeded.push_back({url, now});
    if (now != place.path())
        result_.remarks.push_back(
            {url, "Its folder was moved. It is now “" + displayText(now.path()) + "”."});
    else if (!place.missing().empty())
        result_.remarks.push_back({url, TrashTexts::madeFolder(now.parent())});
}

} // namespace

PutBackResult putBackItems(const std::vector<CleanupEntry> &items) {
    PuttingBack run;
    for (const CleanupEntry &item : items)
        run.putBack(item);
    return run.takeResult();
}

} // namespace brimvale
