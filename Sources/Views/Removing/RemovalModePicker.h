#pragma once

#include "Core/Removal/RemovalMode.h"

#include <QComboBox>

namespace brimvale {

/// Chooses how things are removed. The Trash unless the user says otherwise.
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
