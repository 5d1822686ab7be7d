#pragma once

#include <QCoreApplication>
#include <QMetaObject>
#include <QObject>
#include <QPointer>
#include <QThreadPool>
#include <type_traits>
#include <utility>

namespace brimvale {

/// Queues `use` on the main thread. Dropped if `context`, an object of the main thread, is destroyed first.
/// Callable from any thread.
template<class Use>
void onMainThread(QPointer<QObject> context, Use use) {
    // Sent to the application, since the context may be destroyed at any moment while another thread is here.
    QMetaObject::invokeMethod(
        qApp,
        [context = std::move(context), use = std::move(use)]() mutable {
            if (!context.isNull())
                use();
        },
        Qt::QueuedConnection);
}

/// Runs `work` on a thread of the pool and then, on the main thread, `use` with what it returns. `use` is
/// dropped if `context`, an object of the main thread, is destroyed first. Call it on the main thread.
template<class Work, class Use>
void inBackground(QThreadPool &pool, QObject *context, Work work, Use use) {
    pool.start([context = QPointer(context), work = std::move(work), use = std::move(use)]() mutable {
        if constexpr (std::is_void_v<std::invoke_result_t<Work &>>) {
            work();
            onMainThread(std::move(context), std::move(use));
        } else {
            onMainThread(std::move(context),
                         [use = std::move(use), result = work()]() mutable { use(std::move(result)); });
        }
    });
}

} // namespace brimvale
