#pragma once

#include "Core/Scan/FSNode.h"

#include <QString>
#include <string_view>

namespace brimvale {

/// A name or path for display: one line, in which every character that would act instead of being seen (a
/// control, a line separator, a change of the writing direction) is U+FFFD, like bytes that are not UTF-8.
[[nodiscard]] QString displayedText(std::string_view bytes);
[[nodiscard]] inline QString displayedName(const FSNode &node) {
    return displayedText(node.name);
}

/// The name of the icon that stands for a node of its kind and state.
[[nodiscard]] QString nodeIconName(const FSNode &node);

/// Text as it stands for a button or a menu, which would take "&" for the mark of a shortcut.
[[nodiscard]] QString asLabel(QString text);

/// Text as it stands for a tool tip, which would take "<b>" for markup.
[[nodiscard]] QString asToolTip(const QString &text);

} // namespace brimvale
