#include "Views/Application.h"

#include "Base/Version.h"
#include "Views/Components/ApplicationFont.h"
#include "Views/Components/WindowStyle.h"

#include <QEvent>
#include <QIcon>
#include <QTimer>
#include <QWindow>
#include <memory>
#include <utility>

// In a static library a resource must be asked for, outside of any namespace.
static void openResources() {
    Q_INIT_RESOURCE(brimvale);
}

namespace brimvale {

namespace {

class WindowedQuit : public ApplicationQuit {
public:
    void closeAllWindows() override { QApplication::closeAllWindows(); }
};

UpdateEnvironment updateEnvironment() {
    UpdateEnvironment environment = UpdateEnvironment::current();
    environment.quit = std::make_shared<WindowedQuit>();
    return environment;
}

/// Calls `action` once, when the window has been drawn for the first time.
class AfterFirstDrawing : public QObject {
public:
    AfterFirstDrawing(QWindow *window, std::function<void()> action)
        : QObject(window), action_(std::move(action)) {
        window->installEventFilter(this);
    }

    // The window draws while it handles the exposure, and goes back to the event loop only then.
    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() == QEvent::Expose) {
            watched->removeEventFilter(this);
            QTimer::singleShot(0, watched, std::move(action_));
            deleteLater();
        }
        return false;
    }

private:
    std::function<void()> action_;
};

} // namespace

Application::Application(int &argumentCount, char **arguments) {
    QApplication::setStyle(new WindowStyle); // first, lest the toolkit loads a style of its own
    toolkit_.emplace(argumentCount, arguments);
    openResources();
    QApplication::setApplicationName(QStringLiteral("Brimvale"));
    QApplication::setApplicationVersion(QLatin1String(version));
    QApplication::setDesktopFileName(QStringLiteral("brimvale"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/brimvale.svg")));
    QApplication::setFont(applicationFont());
    model_.emplace();
    updater_.emplace(updateEnvironment());
    window_.emplace(*model_, *updater_);
}

void Application::open(const std::optional<FileURL> &folder) {
    window_->show();
    // Nothing but the window belongs into the start.
    new AfterFirstDrawing(window_->windowHandle(), [this] { updater_->check(true); });
    if (!folder)
        return;
    window_->goTo({Section::Kind::browse});
    model_->startScan(folder->path());
}

} // namespace brimvale
