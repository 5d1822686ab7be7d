#pragma once

#include <utility>

namespace brimvale {

struct PublishedWriter;

/// A field that everyone can read and only its owner can write. The owner's signal `changed` announces every
/// change; setting an equal value announces nothing. Belongs to the main thread.
template<class Owner, class T, void (Owner::*changed)()>
class Published {
public:
    explicit Published(Owner *owner, T value = {}) : owner_(owner), value_(std::move(value)) {}
    Published(const Published &) = delete;
    Published &operator=(const Published &) = delete;

    const T &operator*() const { return value_; }
    const T *operator->() const { return &value_; }

private:
    friend Owner;
    friend PublishedWriter; // lets tests set any value

    void set(T value) {
        if (value == value_)
            return;
        value_ = std::move(value);
        (owner_->*changed)();
    }

    /// Changes the value in place with `change`; always announced.
    template<class Change>
    void update(Change change) {
        change(value_);
        (owner_->*changed)();
    }

    Owner *owner_;
    T value_;
};

} // namespace brimvale
