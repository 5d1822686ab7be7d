#pragma once

#include "Base/FileURL.h"
#include "Core/Reclaim/Reclaim.h"
#include "Core/Removal/RemovalMode.h"
#include "Views/Components/TextLabel.h"

#include <QDeadlineTimer>
#include <QTimer>
#include <chrono>
#include <memory>
#include <optional>
#include <vector>

namespace brimvale {

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
    void ask(std::vector<FileURL> items, std::chrono::milliseconds delay = std::chrono::milliseconds(0),
             LinkPlaces linkPlaces = {});

    /// Shows an answer that is known already.
    void setAnswer(const Reclaim &answer);

    /// The answer to the latest question; nothing until it is known.
    [[nodiscard]] const std::optional<Reclaim> &answer() const { return answer_; }

    /// The same if it is less than a minute old, for another label.
    [[nodiscard]] std::optional<Reclaim> recentAnswer() const;

    /// How the items would be removed; at first, deleted.
    void setMode(RemovalMode mode);

signals:
    /// The text has other lines now.
    void linesChanged();

private:
    void begin();
    void cancel();
    void showAnswer();
    void announce();
    [[nodiscard]] Reclaim withShortNames(Reclaim reclaim) const;
    void showProgress();
    void showLines(const QString &lines);

    RemovalMode mode_ = RemovalMode::deleteNow;
    std::optional<Reclaim> answer_; ///< to the latest question
    QDeadlineTimer isRecent_;       ///< until then
    std::vector<FileURL> items_;    ///< of the question that waits; empty for none
    LinkPlaces linkPlaces_;         ///< of that question
    QTimer wait_;
    QTimer ticks_;
    std::shared_ptr<ReclaimProgress> progress_; ///< of the question with the worker, perhaps a dropped one
};

} // namespace brimvale
