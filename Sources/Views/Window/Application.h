#pragma once

#include "Core/Model/CorvelModel.h"
#include "Core/Update/Updater.h"
#include "Views/Window/ContentView.h"
#include "Views/Window/Launch.h"

#include <QApplication>
#include <optional>

namespace brimvale {

/// The running program: Qt with the window's style, the model and the window. Needs a display.
class Application {
public:
    /// Creates everything, and shows nothing yet. The arguments are for Qt, which keeps references to them.
    Application(int &argumentCount, char **arguments);

    /// Shows the window; with a folder, on the page that scans it.
    void open(const Launch &launch);

    /// Handles events until the user quits; returns the exit status.
    [[nodiscard]] static int run() { return QApplication::exec(); }

    [[nodiscard]] ContentView &window() { return *window_; }

private:
    // Created in this order, destroyed in reverse.
    std::optional<QApplication> toolkit_;
    std::optional<CorvelModel> model_;
    std::optional<Updater> updater_;
    std::optional<ContentView> window_;
};

} // namespace brimvale
