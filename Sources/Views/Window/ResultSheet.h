#pragma once

#include "Base/FileURL.h"
#include "Views/Components/Sheet.h"

#include <vector>

namespace brimvale {

struct RemovalResult;

/// Tells what became of a removal, and offers to try again with an administrator's rights what needs them.
class ResultSheet : public Sheet {
    Q_OBJECT

public:
    ResultSheet(const RemovalResult &result, QWidget *parent);

    /// Whether the offer to try again can be taken at the moment.
    void setCanEscalate(bool can);

signals:
    /// The user wants these removed with an administrator's rights.
    void escalated(std::vector<FileURL> items);

private:
    void addFailures(QVBoxLayout &layout, const RemovalResult &result);
    void addAdminSection(QVBoxLayout &layout, const std::vector<FileURL> &items);
    void addChoice(QVBoxLayout &layout, const std::vector<FileURL> &needsAdmin);

    QPushButton *authenticate_ = nullptr; ///< null where nothing needs it
};

} // namespace brimvale
