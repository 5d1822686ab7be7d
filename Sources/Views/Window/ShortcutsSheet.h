#pragma once

#include "Views/Components/Sheet.h"

namespace brimvale {

/// Lists what the keys of the window do.
class ShortcutsSheet : public Sheet {
    Q_OBJECT

public:
    explicit ShortcutsSheet(QWidget *parent);
};

} // namespace brimvale
