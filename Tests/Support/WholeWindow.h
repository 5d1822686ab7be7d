#pragma once

#include "Core/Update/Updater.h"
#include "Views/Window/ContentView.h"

namespace brimvale::testing {

struct HasUpdater {
    Updater updater;
};

/// The whole window, with an updater of its own.
class WholeWindow : private HasUpdater, public ContentView {
public:
    explicit WholeWindow(CorvelModel &model) : ContentView(model, updater) {}
};

} // namespace brimvale::testing
