#pragma once

#include "Base/FileURL.h"
#include "Core/Removal/RemovalResult.h"
#include "Core/Trash/PuttingBack.h"
#include "Platform/TrashContents.h"

#include <cstdint>
#include <optional>
#include <string>

namespace brimvale {

/// The texts about items in the Trash, in the window and in the terminal.
namespace TrashTexts {

/// Why an item whose record is of this kind cannot be put back, as one or two sentences; empty where it can.
[[nodiscard]] std::string whyNotPutBack(TrashRecord::State state);

/// Why putting an item back has failed with this errno, as one or two sentences.
[[nodiscard]] std::string putBackError(int errorNumber, const FileURL &item,
                                       const std::optional<FileURL> &oldPlace);

/// The old place is inside a protected folder.
[[nodiscard]] std::string protectedPlace(const FileURL &oldPlace);

/// Another folder is now where the parent of the old place was.
[[nodiscard]] std::string otherFolder(const FileURL &oldPlace);

/// The folder of the old place was missing.
[[nodiscard]] std::string madeFolder(const FileURL &folder);

/// "3 items are back in their old places."
[[nodiscard]] std::string summary(const PutBackResult &result);

/// "2 records in the Trash have no item any more." Empty for none.
[[nodiscard]] std::string lostItems(std::int64_t count);

} // namespace TrashTexts

} // namespace brimvale
