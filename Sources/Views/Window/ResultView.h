#pragma once

#include "Base/FileURL.h"
#include "Core/Removal/RemovalResult.h"

#include <QWidget>
#include <string>
#include <vector>

class QHBoxLayout;
class QPushButton;
class QVBoxLayout;

namespace brimvale {

struct PutBackResult;

/// Shows the result of a removal, or of putting back what one has moved to the Trash. Offers to retry as
/// administrator if items need that.
class ResultView : public QWidget {
    Q_OBJECT

public:
    explicit ResultView(const RemovalResult &result, QWidget *parent = nullptr);
    explicit ResultView(const PutBackResult &result, QWidget *parent = nullptr);

    /// Whether the user should read it: something failed, or waits for an answer.
    [[nodiscard]] bool needsAttention() const { return needsAttention_; }

    /// The removal; an empty one if something was put back.
    [[nodiscard]] const RemovalResult &removal() const { return removal_; }

    /// Sets whether a retry as administrator is possible now.
    void setCanEscalate(bool can);
    /// Sets whether undoing the removal, or emptying the Trash, is offered, and possible now.
    void setUndo(bool isOffered, bool isPossible);
    void setEmptyTrash(bool isOffered, bool isPossible);

signals:
    /// The user wants to remove these as administrator.
    void escalated(const std::vector<brimvale::FileURL> &items);
    /// The user wants to have back what was moved to the Trash, or to empty it.
    void undoAsked();
    void emptyingAsked();
    void dismissed();

private:
    ResultView(const QString &title, const QString &summary, bool needsAttention, QWidget *parent);
    QPushButton *addButton(const char *objectName, const QString &title);
    void addDismissal();
    void addLine(const char *objectName, const QString &words);
    void addLines(const char *objectName, const std::vector<std::string> &lines);
    void addAdminSection(const RemovalResult &result);
    QWidget *makeAdminList(const RemovalResult &result);
    void addAdminChoice(const RemovalResult &result);

    RemovalResult removal_;
    bool needsAttention_;
    QHBoxLayout *buttons_;
    QVBoxLayout *details_;
    // Null where the result has none.
    QPushButton *authenticate_ = nullptr;
    QPushButton *undo_ = nullptr;
    QPushButton *emptyTrash_ = nullptr;
};

} // namespace brimvale
