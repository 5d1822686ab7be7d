#pragma once

#include <functional>
#include <mutex>
#include <string>
#include <utility>

namespace brimvale {

/// A tree as text. A thread in the background writes it, because that takes a while; but where a part of the
/// tree is about to change, it is written before that.
class TreeText {
public:
    /// `write` keeps the tree alive, and reads nothing else of the main thread.
    explicit TreeText(std::function<std::string()> write) : write_(std::move(write)) {}

    /// The first call writes it; others wait for it.
    const std::string &get() {
        std::call_once(isWritten_, [this] {
            text_ = write_();
            write_ = nullptr; // with the tree, which may have been replaced
        });
        return text_;
    }

private:
    std::function<std::string()> write_;
    std::once_flag isWritten_;
    std::string text_;
};

} // namespace brimvale
