#pragma once

#include <QWidget>

namespace brimvale {

class NoteLabel;
class ScanComparison;

/// Tells which earlier scan the page is compared with, whether that is still being done, and how much has
/// changed; and ends the comparison.
class CompareNote : public QWidget {
    Q_OBJECT

public:
    explicit CompareNote(QWidget *parent = nullptr);

    /// Hidden without a comparison.
    void showComparison(const ScanComparison &comparison);

signals:
    void stopAsked();

private:
    NoteLabel *note_;
};

} // namespace brimvale
