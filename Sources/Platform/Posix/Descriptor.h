#pragma once

#include <unistd.h>
#include <utility>

namespace brimvale {

/// An open descriptor, closed with the object.
class Descriptor {
public:
    Descriptor() = default;
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(Descriptor &&other) noexcept : number_(std::exchange(other.number_, -1)) {}
    Descriptor &operator=(Descriptor &&other) noexcept {
        std::swap(number_, other.number_);
        return *this;
    }
    ~Descriptor() { close(); }

    [[nodiscard]] bool isOpen() const { return number_ >= 0; }
    [[nodiscard]] int number() const { return number_; }

    /// Its number, which the caller closes from now on.
    [[nodiscard]] int release() { return std::exchange(number_, -1); }

    void close() {
        if (number_ >= 0)
            ::close(std::exchange(number_, -1));
    }

private:
    int number_ = -1;
};

} // namespace brimvale
