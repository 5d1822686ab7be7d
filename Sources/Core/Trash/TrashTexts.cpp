#include "Core/Trash/TrashTexts.h"

#include "Base/FileError.h"
#include "Base/Text.h"
#include "Core/Text/Formatting.h"

#include <cerrno>

namespace brimvale::TrashTexts {

namespace {

std::string pathInQuotes(std::string_view path) {
    return "“" + displayText(path) + "”";
}

} // namespace

std::string whyNotPutBack(TrashRecord::State state) {
    switch (state) {
    case TrashRecord::State::known:
        return "";
    case TrashRecord::State::missing:
        return "The Trash has no record of where it was.";
    case TrashRecord::State::invalid:
        return "Its record in the Trash is damaged, so its old place is unknown.";
    case TrashRecord::State::outside:
        return "Its record in the Trash names a place where it can’t have been.";
    case TrashRecord::State::expunged:
        return "It is left over from emptying the Trash, and may be incomplete.";
    case TrashRecord::State::notInTrash:
        break;
    }
    return "It is not in the Trash.";
}

std::string putBackError(int errorNumber, const FileURL &item, const std::optional<FileURL> &oldPlace) {
    const std::string place = oldPlace ? pathInQuotes(oldPlace->path()) : "its old place";
    switch (errorNumber) {
    case EEXIST:
    case ENOTEMPTY:
        return place + " already exists, and is not replaced.";
    case ESTALE:
        return "Another item is there now under the name " + pathInQuotes(item.fileName()) + ".";
    case ENOENT:
        return pathInQuotes(item.fileName()) + " is no longer in the Trash.";
    case EXDEV:
        return "Its old place " + place + " is on another volume now. Copy it there yourself.";
    case ENOTDIR:
        return "A folder on the way to " + place + " is not a folder any more.";
    case ELOOP:
        return "The way to " + place + " leads through another user’s link, or through too many links.";
    case EACCES:
    case EPERM:
        return "You don’t have permission to put it back to " + place + ".";
    case EROFS:
        return "The volume of " + place + " is read-only.";
    case EAGAIN:
        return "The folders on the way to " + place + " have just changed. Try again.";
    case EINVAL:
        return "It is not in the Trash.";
    default:
        return "It can’t be put back to " + place + ": " + FileError::posix(errorNumber).localizedDescription;
    }
}

std::string protectedPlace(const FileURL &oldPlace) {
    return "Its old place " + pathInQuotes(oldPlace.path()) + " is protected. Nothing is put back there.";
}

std::string otherFolder(const FileURL &oldPlace) {
    return pathInQuotes(oldPlace.parent().path()) + " is another folder now. Nothing is put back there.";
}

std::string madeFolder(const FileURL &folder) {
    return "Its folder " + pathInQuotes(folder.path()) + " was missing, and was made again.";
}

std::string summary(const PutBackResult &result) {
    const auto count = static_cast<std::int64_t>(result.succeeded.size());
    if (count == 0)
        return "Nothing was put back.";
    return Fmt::count(count) +
           (count == 1 ? " item is back in its old place." : " items are back in their old places.");
}

std::string lostItems(std::int64_t count) {
    if (count == 0)
        return "";
    return Fmt::count(count) + (count == 1 ? " record in the Trash has no item any more. It is removed when "
                                             "the Trash is emptied."
                                           : " records in the Trash have no items any more. They are removed "
                                             "when the Trash is emptied.");
}

} // namespace brimvale::TrashTexts
