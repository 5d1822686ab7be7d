#pragma once

namespace brimvale {

/// Treemaps for those who do not see them: each tile is an item of a list, with its name, its size, its share
/// of the folder, its place on the screen, and what can be done with it.
namespace TreemapAccessibility {

/// Makes it known to the application; to be called before the first treemap is asked about.
void install();

} // namespace TreemapAccessibility

} // namespace brimvale
