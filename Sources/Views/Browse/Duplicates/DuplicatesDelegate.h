#pragma once

#include "Views/Entries/EntryDelegate.h"

namespace brimvale {

/// Paints the rows of a `DuplicatesModel`: the head of a group on a ground of its own, and its files like the
/// entries of other lists.
class DuplicatesDelegate : public EntryDelegate {
    Q_OBJECT

public:
    using EntryDelegate::EntryDelegate;

    void paint(QPainter *painter, const QStyleOptionViewItem &option,
               const QModelIndex &index) const override;
};

} // namespace brimvale
