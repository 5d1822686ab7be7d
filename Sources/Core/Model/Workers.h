#pragma once

#include "Base/Background.h"
#include "Base/StopFlag.h"

#include <memory>
#include <utility>

namespace brimvale {

/// The threads for the long work of the model's parts.
class Workers {
public:
    Workers();
    /// Sets `closing`, and waits for all work.
    ~Workers();
    Workers(const Workers &) = delete;
    Workers &operator=(const Workers &) = delete;

    /// Runs `work` on a worker thread and then `use` with its result on the main thread. Drops the result if
    /// `context` is destroyed first.
    template<class Work, class Use>
    void run(QObject *context, Work work, Use use) {
        inBackground(pool_, context, std::move(work), std::move(use));
    }

    /// Destroys a value on a worker thread, because freeing it takes long. The caller must be its only owner.
    template<class T>
    void dispose(T value) {
        pool_.start([value = std::make_shared<T>(std::move(value))]() mutable { value.reset(); });
    }

    /// Set when the model is about to be destroyed. Work may check it on any thread.
    [[nodiscard]] const StopFlag &closing() const { return closing_; }

private:
    StopFlag closing_;
    QThreadPool pool_;
};

} // namespace brimvale
