#pragma once

#include "Core/Backup/PendingDeletion.h"

#include <QDialog>

class QVBoxLayout;

namespace brimvale {

/// Shows what a backup holds before the originals are removed. `accepted` means that they shall go; closing
/// it in any other way keeps both. Deletes itself when it is closed.
class BackupReviewView : public QDialog {
    Q_OBJECT

public:
    BackupReviewView(const PendingDeletion &pending, QWidget *parent);

private:
    void addHeading(QVBoxLayout &layout);
    void addFolder(QVBoxLayout &layout);
    void addTranscript(QVBoxLayout &layout);
    void addWarnings(QVBoxLayout &layout);
    QWidget *makeButtons();

    PendingDeletion pending_;
};

} // namespace brimvale
