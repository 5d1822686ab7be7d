#pragma once

class QPushButton;
class QScrollArea;
class QString;
class QWidget;

namespace brimvale {

/// The margins of a page around its header, and `gap` points beneath it. Its layout is vertical.
[[nodiscard]] QWidget *makePageHead(QWidget *header, int gap, QWidget *page);

/// What scrolls a part of a page, which is as wide as there is room.
[[nodiscard]] QScrollArea *makeScrollArea(QWidget *content, QWidget *page);

/// A button that Return does not press unless it has the focus.
[[nodiscard]] QPushButton *makeButton(const char *objectName, const QString &title, QWidget *parent);

} // namespace brimvale
