#pragma once

#include "Core/Backup/PendingDeletion.h"
#include "Views/Components/Sheet.h"

namespace brimvale {

/// Shows a finished backup before the originals are removed. `accepted` means that they should be; closing it
/// in any other way keeps both.
class BackupReviewView : public Sheet {
    Q_OBJECT

public:
    BackupReviewView(const PendingDeletion &pending, QWidget *parent);

private:
    void addHeading(QVBoxLayout &layout);
    void addFolder(QVBoxLayout &layout);
    void addTranscript(QVBoxLayout &layout);
    void addWarnings(QVBoxLayout &layout);
    void addChoice(QVBoxLayout &layout);

    PendingDeletion pending_;
};

} // namespace brimvale
