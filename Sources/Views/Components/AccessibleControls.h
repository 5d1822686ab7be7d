#pragma once

namespace brimvale {

/// Tells screen readers what Qt does not know about the window's controls: the state of a `TickBox`, the
/// value of a `CapacityBar`, which labels are headings, whether a `DisclosureButton` is open, and the name of
/// a combo box beside its value. Call it before the first such control has a name; more calls do nothing.
void makeControlsAccessible();

} // namespace brimvale
