#pragma once

#include "Core/Removal/RemovalMode.h"

#include <QComboBox>

namespace brimvale {

/// Lets the user choose how items are removed. The Trash is the default.
class RemovalModePicker : public QComboBox {
    Q_OBJECT

public:
    explicit RemovalModePicker(QWidget *parent = nullptr);

    void setMode(RemovalMode mode);
    [[nodiscard]] RemovalMode mode() const;

signals:
    void modeChanged(RemovalMode mode);
};

} // namespace brimvale
