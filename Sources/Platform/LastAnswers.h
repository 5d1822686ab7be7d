#pragma once

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <functional>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

namespace brimvale {

/// Asks questions that may take long or never be answered, each on a thread of its own, and keeps the last
/// answers. Thread-safe. Must never be destroyed, because a thread may still wait when the program ends.
template<class Answer>
class LastAnswers {
public:
    struct Question {
        std::string key;                            ///< the same for the same question
        std::function<std::optional<Answer>()> ask; ///< called on another thread; nothing where it fails
    };

    /// The last known answer to each question, or nothing, in the order of `questions`. Every one is asked
    /// again unless an earlier one with its key is still open. Waits until all are answered or `patience` has
    /// passed; later answers are used next time.
    [[nodiscard]] std::vector<std::optional<Answer>> to(const std::vector<Question> &questions,
                                                        std::chrono::milliseconds patience) {
        std::unique_lock lock(lock_);
        std::vector<const Known *> asked;
        for (const Question &question : questions)
            asked.push_back(&ask(question));
        arrived_.wait_for(lock, patience, [&] {
            return std::none_of(asked.begin(), asked.end(), [](const Known *one) { return one->isAwaited; });
        });
        std::vector<std::optional<Answer>> answers;
        for (const Known *one : asked)
            answers.push_back(one->last);
        return answers;
    }

private:
    struct Known {
        std::optional<Answer> last;
        bool isAwaited = false;
    };

    /// Call with the lock held.
    const Known &ask(const Question &question) {
        Known &known = known_[question.key];
        if (known.isAwaited)
            return known;
        try {
            std::thread([this, &known, ask = question.ask] {
                std::optional<Answer> answer = ask();
                const std::lock_guard guard(lock_);
                known = {std::move(answer), false};
                arrived_.notify_all();
            }).detach();
            known.isAwaited = true;
        } catch (const std::system_error &) {
            // The system has no thread to spare. Try again next time.
        }
        return known;
    }

    std::mutex lock_;
    std::condition_variable arrived_;
    std::map<std::string, Known> known_; ///< by key; entries stay where they are
};

} // namespace brimvale
