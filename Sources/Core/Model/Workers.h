#pragma once

#include "Base/Background.h"
#include "Base/StopFlag.h"

#include <memory>
#include <utility>

namespace brimvale {

/// The threads on which the parts of the application model do what takes time.
class Workers {
public:
    Workers();
    /// Tells what asks `closing` to end, and waits for everything.
    ~Workers();
    Workers(const Workers &) = delete;
    Workers &operator=(const Workers &) = delete;

    /// Runs `work` on a thread and then, on the main thread, `use` with its result; not if `context` is
    /// destroyed first.
    template<class Work, class Use>
    void run(QObject *context, Work work, Use use) {
        inBackground(pool_, context, std::move(work), std::move(use));
    }

    /// Destroys a value that takes long to free on one of the threads. It is to be the last to own it.
    template<class T>
    void dispose(T value) {
        pool_.start([value = std::make_shared<T>(std::move(value))]() mutable { value.reset(); });
    }

    /// Whether the model is about to be destroyed, for the work to ask on any thread.
    [[nodiscard]] const StopFlag &closing() const { return closing_; }

private:
    StopFlag closing_;
    QThreadPool pool_;
};

} // namespace brimvale
