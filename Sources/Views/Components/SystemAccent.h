#pragma once

#include <QColor>
#include <optional>

namespace brimvale {

/// The colour that the user has chosen for what is selected or can be pressed, in all applications; nothing
/// where the system has no such choice.
[[nodiscard]] std::optional<QColor> systemAccent();

} // namespace brimvale
