#pragma once

#include "Base/FileURL.h"
#include "Views/Components/Sheet.h"

#include <string>
#include <vector>

namespace brimvale {

struct RemovalResult;

/// Shows the result of a removal, and offers to retry as administrator if items need that.
class ResultSheet : public Sheet {
    Q_OBJECT

public:
    ResultSheet(const RemovalResult &result, QWidget *parent);

    /// Sets whether a retry is possible now.
    void setCanEscalate(bool can);

signals:
    /// The user wants to remove these as administrator.
    void escalated(std::vector<FileURL> items);

private:
    void addLines(QVBoxLayout &layout, const char *objectName, const std::vector<std::string> &lines);
    void addAdminSection(QVBoxLayout &layout, const RemovalResult &result);
    QWidget *makeAdminList(const RemovalResult &result);
    void addSettingsButton(QVBoxLayout &layout);
    void addChoice(QVBoxLayout &layout, const RemovalResult &result);

    QPushButton *authenticate_ = nullptr; ///< null if no item needs it
};

} // namespace brimvale
