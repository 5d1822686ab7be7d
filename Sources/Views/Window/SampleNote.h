#pragma once

#include <QWidget>

namespace brimvale {

class FileURL;

/// Says that the window shows a sample of a disk, and where that is. The tool tip says how it is removed.
class SampleNote : public QWidget {
    Q_OBJECT

public:
    /// `disk` is the folder with the sample.
    SampleNote(const FileURL &disk, QWidget *parent);

protected:
    void paintEvent(QPaintEvent *event) override;
};

} // namespace brimvale
