#pragma once

#include <string_view>

namespace brimvale {

/// The style of the page that shows a Messages transcript, as CSS. It follows the browser's light or dark
/// appearance.
extern const std::string_view transcriptStyle;

} // namespace brimvale
