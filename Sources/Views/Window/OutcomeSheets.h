#pragma once

#include "Core/Removal/RemovalResult.h"

#include <QObject>
#include <QPointer>
#include <deque>

class QDialog;

namespace brimvale {

class Backups;
class Removals;

/// Shows the result of each removal and each backup to review in sheets of the window, on any page: one after
/// another, and only when no other sheet is open.
class OutcomeSheets : public QObject {
    Q_OBJECT

public:
    /// All must outlive it.
    OutcomeSheets(Removals &removals, Backups &backups, QWidget &window);

private:
    void showResult();
    void showNextResult();
    void showReview();

    Removals &removals_;
    Backups &backups_;
    QWidget &window_;
    std::deque<RemovalResult> results_; ///< not shown yet
    // The open sheets, if any.
    QPointer<QDialog> resultSheet_;
    QPointer<QDialog> review_;
};

} // namespace brimvale
