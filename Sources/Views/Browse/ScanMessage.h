#pragma once

#include "Views/Components/StateMessage.h"

#include <string>

namespace brimvale {

class ScanSession;
class Volumes;

/// The message of the Browse page if there is no tree to show: the reason, and what to do.
class ScanMessage : public StateMessage {
    Q_OBJECT

public:
    /// Both must outlive the message.
    ScanMessage(const ScanSession &scan, const Volumes &volumes, QWidget *parent = nullptr);

    /// Shows the message for the current state of the scan. If there is a tree, it is empty.
    void showState();

private:
    void showWhyItIsEmpty(const std::string &path);
    [[nodiscard]] QString whatHelps() const;

    const ScanSession &scan_;
    const Volumes &volumes_;
};

} // namespace brimvale
