#pragma once

#include "Views/Components/StateMessage.h"

#include <string>

namespace brimvale {

class CorvelModel;

/// What the Browse page says where there is no tree to show: why that is so, and what to do about it.
class ScanMessage : public StateMessage {
    Q_OBJECT

public:
    /// The model must outlive the message.
    explicit ScanMessage(const CorvelModel &model, QWidget *parent = nullptr);

    /// Says what holds for the model's scan now. The tree, if there is one, has nothing in it.
    void showState();

private:
    void showWhyItIsEmpty(const std::string &path);
    [[nodiscard]] QString whatHelps() const;

    const CorvelModel &model_;
};

} // namespace brimvale
