#pragma once

#include "Core/Scan/FSNode.h"

#include <QString>
#include <string_view>

namespace brimvale {

/// A name or path for display on one line, in which every character can be seen: `visibleText`.
[[nodiscard]] QString displayedText(std::string_view bytes);
[[nodiscard]] inline QString displayedName(const FSNode &node) {
    return displayedText(node.name);
}

/// A node's size, with "≥" if something inside could not be read, so that it may be larger.
[[nodiscard]] QString nodeSizeText(const FSNode &node);

/// The name of the icon for a node's kind and state.
[[nodiscard]] QString nodeIconName(const FSNode &node);

/// Text for a button or a menu. Escapes "&", which would mark a shortcut.
[[nodiscard]] QString asLabel(QString text);

/// Text for a tool tip. Escapes markup such as "<b>".
[[nodiscard]] QString asToolTip(const QString &text);

} // namespace brimvale
