#pragma once

#include <QObject>
#include <QPointer>

class QDialog;
class QWidget;

namespace brimvale {

class Backups;

/// Shows each backup to review in a sheet of the window, on any page, when no other sheet is open.
class BackupReviews : public QObject {
    Q_OBJECT

public:
    /// All must outlive it.
    BackupReviews(Backups &backups, QWidget &window);

private:
    void showReview();

    Backups &backups_;
    QWidget &window_;
    QPointer<QDialog> review_; ///< null unless open
};

} // namespace brimvale
