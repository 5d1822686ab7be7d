#pragma once

class QWidget;

namespace brimvale {

/// Puts the children of a widget and of all widgets inside it into the order of their layouts. Screen readers
/// go through them in this order, which is otherwise that of their creation.
void putChildrenInVisualOrder(QWidget &widget);

} // namespace brimvale
