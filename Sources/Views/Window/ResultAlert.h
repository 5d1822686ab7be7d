#pragma once

#include "Core/Removal/RemovalResult.h"

#include <QDialog>
#include <vector>

class QPushButton;
class QVBoxLayout;

namespace brimvale {

/// Tells what became of a removal, and offers to try again with an administrator's rights what needs them.
/// Deletes itself when it is closed.
class ResultAlert : public QDialog {
    Q_OBJECT

public:
    ResultAlert(const RemovalResult &result, QWidget *parent);

    /// Whether the offer to try again can be taken at the moment.
    void setCanEscalate(bool can);

signals:
    /// The user wants these removed with an administrator's rights.
    void escalated(std::vector<FileURL> items);

private:
    void addFailures(QVBoxLayout &layout, const RemovalResult &result);
    void addAdminSection(QVBoxLayout &layout, const std::vector<FileURL> &items);
    QWidget *makeButtons(const std::vector<FileURL> &needsAdmin);

    QPushButton *authenticate_ = nullptr; ///< null where nothing needs it
};

} // namespace brimvale
