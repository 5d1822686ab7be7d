#include "Views/Window/Application.h"

#include "Base/Version.h"
#include "Platform/Confinement.h"
#include "Views/Components/SystemAppearance.h"
#include "Views/Components/SystemStyle.h"
#include "Views/Components/Theme.h"
#include "Views/Update/SampleFeed.h"
#include "Views/Window/ApplicationIcon.h"
#include "Views/Window/WindowStyle.h"

#include <QEvent>
#include <QFile>
#include <QFileOpenEvent>
#include <QTimer>
#include <QWindow>
#include <functional>
#include <memory>
#include <utility>

namespace brimvale {

namespace {

class WindowedQuit : public ApplicationQuit {
public:
    void closeAllWindows() override { QApplication::closeAllWindows(); }
};

/// With a sample, an update is offered by this program itself, and is only announced.
UpdateEnvironment updateEnvironment() {
    UpdateEnvironment environment = UpdateEnvironment::current();
    environment.quit = std::make_shared<WindowedQuit>();
    if (confinement()) {
        environment.network = []() -> UpdateNetwork & {
            static SampleFeed feed;
            return feed;
        };
        environment.canInstallItself = false;
    }
    return environment;
}

/// Calls `action` once, when the window has been drawn for the first time.
class AfterFirstDrawing : public QObject {
public:
    AfterFirstDrawing(QWindow *window, std::function<void()> action)
        : QObject(window), action_(std::move(action)) {
        window->installEventFilter(this);
    }

    // The window is drawn while it handles the exposure, before the event loop continues.
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

/// Receives folders that are dropped on the icon in the Dock, or opened with the program in the Finder.
class OpenRequests : public QObject {
public:
    OpenRequests(std::function<void(const FileURL &)> open, QObject *parent)
        : QObject(parent), open_(std::move(open)) {}

    bool eventFilter(QObject *watched, QEvent *event) override {
        if (event->type() != QEvent::FileOpen)
            return QObject::eventFilter(watched, event);
        const QByteArray path = QFile::encodeName(static_cast<QFileOpenEvent *>(event)->file());
        if (path.startsWith('/'))
            open_(FileURL(path.toStdString()));
        return true;
    }

private:
    std::function<void(const FileURL &)> open_;
};

} // namespace

Application::Application(int &argumentCount, char **arguments) {
    QApplication::setStyle(new WindowStyle); // first, so Qt loads no other style
    toolkit_.emplace(argumentCount, arguments);
    QApplication::setApplicationName(QStringLiteral("Brimvale"));
    QApplication::setApplicationVersion(QLatin1String(version));
    QApplication::setDesktopFileName(QStringLiteral("brimvale"));
    const SystemFont font = systemFont();
    Type::setScale(font.scale);
    QApplication::setFont(font.font);
    // A program with a single window quits with it, on macOS too.
    QApplication::setQuitOnLastWindowClosed(true);
    model_.emplace();
    updater_.emplace(updateEnvironment());
    window_.emplace(*model_, *updater_);
    toolkit_->installEventFilter(
        new OpenRequests([this](const FileURL &folder) { window_->scan(folder); }, &*toolkit_));
}

void Application::open(const Launch &launch) {
    followSystemAppearance(&*window_, [this] { window_->applyTheme(); });
    window_->show();
    // The start should only show the window.
    new AfterFirstDrawing(window_->windowHandle(), [this] {
        QApplication::setWindowIcon(applicationIcon());
        updater_->check(true);
    });
    if (launch.file)
        window_->showInBrowse(*launch.file);
    else if (launch.folder)
        window_->scan(*launch.folder);
    if (!launch.notice.empty())
        window_->showNotice(QString::fromStdString(launch.notice));
}

} // namespace brimvale
