#pragma once

#include <QWidget>

namespace brimvale {

class ProgressLine;
class TextLabel;

/// The running work of a page, and its progress.
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
