#pragma once

#include <QString>
#include <QStringList>
#include <cstdint>

namespace brimvale {

struct RemovalResult;

/// What moving to the Trash has done: "800 MB moved to the Trash. The space is free once the Trash is
/// emptied."
[[nodiscard]] QString trashText(std::int64_t bytes);

/// What a removal has really done to the free space, beyond its summary: a line each. May be empty.
[[nodiscard]] QStringList spaceLines(const RemovalResult &result);

} // namespace brimvale
