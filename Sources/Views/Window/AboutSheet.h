#pragma once

#include <QDialog>

namespace brimvale {

/// Tells what the program is, which version, and whose work it shows. To be opened with `open()`; deletes
/// itself when closed.
class AboutSheet : public QDialog {
    Q_OBJECT

public:
    explicit AboutSheet(QWidget *parent);
};

} // namespace brimvale
