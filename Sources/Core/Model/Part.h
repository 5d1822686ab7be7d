#pragma once

#include <QObject>
#include <type_traits>
#include <utility>

namespace brimvale {

struct PublishedWriter;

/// What all parts of the application model have in common: they announce that their state has changed.
class AnnouncingPart : public QObject {
    Q_OBJECT

signals:
    void changed();
};

/// A part of the application model: one state, which everybody may read and only the part writes. Lives on
/// the main thread; work runs in the background and its results come back there.
template<class State>
class Part : public AnnouncingPart {
public:
    const State &operator*() const { return state_; }
    const State *operator->() const { return &state_; }

protected:
    explicit Part(State state = {}) : state_(std::move(state)) {}

    [[nodiscard]] const State &state() const { return state_; }

    /// Changes the state through `change` and announces that once; not if `change` returns false.
    template<class Change>
    void update(Change change) {
        if constexpr (std::is_same_v<std::invoke_result_t<Change &, State &>, bool>) {
            if (!change(state_))
                return;
        } else {
            change(state_);
        }
        emit changed();
    }

    /// For a change that is announced in another way.
    [[nodiscard]] State &unannounced() { return state_; }

private:
    friend PublishedWriter; // by which a test has a page show what it likes

    State state_;
};

} // namespace brimvale
