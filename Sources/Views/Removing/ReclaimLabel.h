#pragma once

#include "Base/FileURL.h"
#include "Views/Components/TextLabel.h"

#include <QTimer>
#include <chrono>
#include <memory>
#include <vector>

namespace brimvale {

struct ReclaimProgress;

/// Tells what deleting some items would free, in a few lines. Finds that out in the background, one question
/// at a time, so that a disk that does not answer keeps one thread at most.
class ReclaimLabel : public TextLabel {
    Q_OBJECT

public:
    ReclaimLabel(Type::Size size, QWidget *parent);
    /// Cancels the question.
    ~ReclaimLabel() override;

    /// Asks about these items, at absolute paths, when this long has passed without another question. An
    /// earlier one is dropped. Hidden without items.
    void ask(std::vector<FileURL> items, std::chrono::milliseconds delay = std::chrono::milliseconds(0));

signals:
    /// The text has other lines now.
    void linesChanged();

private:
    void begin();
    void cancel();
    void showProgress();
    void showLines(const QString &lines);

    std::vector<FileURL> items_; ///< of the question that waits; empty for none
    QTimer wait_;
    QTimer ticks_;
    std::shared_ptr<ReclaimProgress> progress_; ///< of the question with the worker, perhaps a dropped one
};

} // namespace brimvale
