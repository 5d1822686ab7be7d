#pragma once

namespace brimvale {

/// Segmented bars for those who do not see them: each segment is an item of a list, with its name, its size
/// and its place on the screen.
namespace SegmentAccessibility {

/// Makes it known to the application; to be called before the first bar is asked about.
void install();

} // namespace SegmentAccessibility

} // namespace brimvale
