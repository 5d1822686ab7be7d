#pragma once

#include "Base/Published.h"

#include <type_traits>
#include <utility>

namespace brimvale {

/// Writes a published field in its owner's place, so that a page shows what a test wants to see.
struct PublishedWriter {
    template<class Owner, class T, void (Owner::*changed)()>
    static void set(Published<Owner, T, changed> &field, std::type_identity_t<T> value) {
        field.set(std::move(value));
    }

    template<class Owner, class T, void (Owner::*changed)(), class Change>
    static void update(Published<Owner, T, changed> &field, Change change) {
        field.update(std::move(change));
    }
};

} // namespace brimvale
