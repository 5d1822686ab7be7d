#pragma once

#include <QWidget>

namespace brimvale {

class ProgressLine;
class TextLabel;

/// What a page is busy with, and how far it is.
class ProgressNote : public QWidget {
    Q_OBJECT

public:
    explicit ProgressNote(const QString &work, QWidget *parent = nullptr);

    void setWork(const QString &work);
    /// From 0 to 1.
    void setProgress(double progress);

private:
    TextLabel *work_;
    TextLabel *percent_;
    ProgressLine *line_;
};

} // namespace brimvale
