#pragma once

#include "Base/FileURL.h"
#include "Core/Model/CorvelModel.h"
#include "Core/Update/Updater.h"
#include "Views/Window/ContentView.h"

#include <QApplication>
#include <optional>

namespace brimvale {

/// The running program: the toolkit, set up in the window's style, the one model, the one window. Needs a
/// display.
class Application {
public:
    /// Makes everything, and shows nothing yet. The arguments are for the toolkit, which keeps referring to
    /// them.
    Application(int &argumentCount, char **arguments);

    /// Shows the window; with a folder, on the page that scans it.
    void open(const std::optional<FileURL> &folder);

    /// Handles events until the user quits; answers the exit status.
    [[nodiscard]] static int run() { return QApplication::exec(); }

    [[nodiscard]] ContentView &window() { return *window_; }

private:
    void scan(const FileURL &folder);

    // Made one after the other in the constructor; the last goes first.
    std::optional<QApplication> toolkit_;
    std::optional<CorvelModel> model_;
    std::optional<Updater> updater_;
    std::optional<ContentView> window_;
};

} // namespace brimvale
