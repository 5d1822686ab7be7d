#pragma once

#include <QString>
#include <cstdint>

namespace brimvale {

/// The text for the selected rows and their bytes: "3 items selected, 4.2 GB", or "Nothing selected".
[[nodiscard]] QString selectionText(std::int64_t count, std::int64_t bytes);

/// The title of the button that asks for a removal: "Remove 3 Items, 4.2 GB…", or "Remove…" for none.
[[nodiscard]] QString removalTitle(std::int64_t count, std::int64_t bytes);

} // namespace brimvale
