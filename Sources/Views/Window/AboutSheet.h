#pragma once

#include "Views/Components/Sheet.h"

namespace brimvale {

/// Tells what the program is, which version, and whose work it shows.
class AboutSheet : public Sheet {
    Q_OBJECT

public:
    explicit AboutSheet(QWidget *parent);
};

} // namespace brimvale
