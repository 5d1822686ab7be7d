#pragma once

class QPushButton;
class QScrollArea;
class QString;
class QWidget;

namespace brimvale {

/// Sets the margins of a page for its header, with `gap` points below. The page's layout is vertical.
[[nodiscard]] QWidget *makePageHead(QWidget *header, int gap, QWidget *page);

/// A scroll area for part of a page, which reaches to the right edge of the window. The scroll bar is in
/// the right margin of the layout of `content`, if it has one, so everything on a page ends at the same edge
/// with and without it.
[[nodiscard]] QScrollArea *makeScrollArea(QWidget *content, QWidget *page);

/// A button that Return does not press unless it has the focus.
[[nodiscard]] QPushButton *makeButton(const char *objectName, const QString &title, QWidget *parent);

} // namespace brimvale
