#pragma once

#include <QObject>
#include <type_traits>
#include <utility>

namespace brimvale {

struct PublishedWriter;

/// The signal of all parts: their state has changed.
class AnnouncingPart : public QObject {
    Q_OBJECT

signals:
    void changed();
};

/// A part of the application model. Everyone can read its state; only the part writes it. Belongs to the main
/// thread; work runs in the background and returns its results there.
template<class State>
class Part : public AnnouncingPart {
public:
    const State &operator*() const { return state_; }
    const State *operator->() const { return &state_; }

protected:
    explicit Part(State state = {}) : state_(std::move(state)) {}

    [[nodiscard]] const State &state() const { return state_; }

    /// Changes the state with `change` and announces it once, unless `change` returns false.
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

    /// The state, for a change that another signal announces.
    [[nodiscard]] State &unannounced() { return state_; }

private:
    friend PublishedWriter; // lets a test set any state

    State state_;
};

} // namespace brimvale
