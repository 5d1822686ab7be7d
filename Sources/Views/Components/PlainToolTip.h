#pragma once

#include <QString>

namespace brimvale {

/// `text` for a tool tip that shows it as it stands: without this, "<b>" in a file's name would be taken for
/// markup.
[[nodiscard]] QString plainToolTip(const QString &text);

} // namespace brimvale
