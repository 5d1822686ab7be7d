#pragma once

#include "Core/FSNode.h"

#include <QString>

namespace brimvale {

/// A node's name for display: one line, in which every character that would act instead of being seen (a
/// control, a line separator, a change of the writing direction) is U+FFFD, like bytes that are not UTF-8.
[[nodiscard]] QString displayedName(const FSNode &node);

} // namespace brimvale
