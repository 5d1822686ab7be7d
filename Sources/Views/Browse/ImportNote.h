#pragma once

#include "Views/Components/NoteLabel.h"

namespace brimvale {

class ScanSession;

/// Says that the tree on the page was read from a file, and of which machine and day it is. Hidden above a
/// tree of this disk.
class ImportNote : public NoteLabel {
    Q_OBJECT

public:
    /// `scan` must outlive the note.
    explicit ImportNote(const ScanSession &scan, QWidget *parent = nullptr);

private:
    void showOrigin();

    const ScanSession &scan_;
};

} // namespace brimvale
