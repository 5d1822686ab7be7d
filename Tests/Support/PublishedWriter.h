#pragma once

#include "Base/Published.h"

#include <type_traits>
#include <utility>

namespace brimvale {

/// Writes what is published in its owner's place, so that a page shows what a test wants to see.
struct PublishedWriter {
    template<class Owner, class T, void (Owner::*changed)()>
    static void set(Published<Owner, T, changed> &field, std::type_identity_t<T> value) {
        field.set(std::move(value));
    }

    /// Writes one member of the state of a part of the model.
    template<class Part, class State, class T>
    static void set(Part &part, T State::*member, std::type_identity_t<T> value) {
        part.update([&](State &state) { state.*member = std::move(value); });
    }

    /// Changes the state of a part of the model in place.
    template<class Part, class Change>
    static void update(Part &part, Change change) {
        part.update(std::move(change));
    }
};

} // namespace brimvale
