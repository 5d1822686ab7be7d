#pragma once

#include "Views/Components/Sheet.h"

namespace brimvale {

/// Shows what the program is, its version, and the licenses of the works it includes.
class AboutSheet : public Sheet {
    Q_OBJECT

public:
    explicit AboutSheet(QWidget *parent);
};

} // namespace brimvale
