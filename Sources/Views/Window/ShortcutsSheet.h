#pragma once

#include "Views/Components/Sheet.h"

namespace brimvale {

/// Lists the keyboard shortcuts of the window.
class ShortcutsSheet : public Sheet {
    Q_OBJECT

public:
    explicit ShortcutsSheet(QWidget *parent);
};

} // namespace brimvale
