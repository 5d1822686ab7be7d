#pragma once

#include "Core/Removal/RemovalResult.h"

#include <QObject>
#include <QPointer>
#include <deque>

class QDialog;

namespace brimvale {

class Backups;
class Removals;

/// Tells in sheets of the window what became of each removal, and which backup waits for the user, whatever
/// page they came from: one after the other, and none while another sheet is open.
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
    // Those that are open, if any.
    QPointer<QDialog> resultSheet_;
    QPointer<QDialog> review_;
};

} // namespace brimvale
