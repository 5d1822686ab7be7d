#pragma once

#include <QDialog>

namespace brimvale {

/// Lists what the keys of the window do. To be opened with `open()`; deletes itself when closed.
class ShortcutsSheet : public QDialog {
    Q_OBJECT

public:
    explicit ShortcutsSheet(QWidget *parent);
};

} // namespace brimvale
