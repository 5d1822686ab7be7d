#pragma once

#include <string>
#include <string_view>

namespace brimvale {

/// The name of a local snapshot as tmutil lists it: "com.apple.TimeMachine.2026-01-31-235959.local".
namespace SnapshotName {

/// Whether this is such a name, going by its beginning.
[[nodiscard]] bool isOne(std::string_view name);

/// The part that tells the time: the name without the other two parts, wherever they stand in it.
[[nodiscard]] std::string stamp(std::string name);

} // namespace SnapshotName

} // namespace brimvale
