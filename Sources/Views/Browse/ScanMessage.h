#pragma once

#include "Views/Components/StateMessage.h"

#include <string>

namespace brimvale {

class ScanSession;
class Volumes;

/// What the Browse page says where there is no tree to show: why that is so, and what to do about it.
class ScanMessage : public StateMessage {
    Q_OBJECT

public:
    /// Both must outlive the message.
    ScanMessage(const ScanSession &scan, const Volumes &volumes, QWidget *parent = nullptr);

    /// Says what holds for the scan now. The tree, if there is one, has nothing in it.
    void showState();

private:
    void showWhyItIsEmpty(const std::string &path);
    [[nodiscard]] QString whatHelps() const;

    const ScanSession &scan_;
    const Volumes &volumes_;
};

} // namespace brimvale
