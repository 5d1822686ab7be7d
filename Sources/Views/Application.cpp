#include "Views/Application.h"

#include "Base/Version.h"
#include "Views/Components/ApplicationFont.h"
#include "Views/Components/WindowStyle.h"

#include <QIcon>
#include <QTimer>

// In a static library a resource must be asked for, outside of any namespace.
static void openResources() {
    Q_INIT_RESOURCE(brimvale);
}

namespace brimvale {

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
    updater_.emplace();
    window_.emplace(*model_, *updater_);
}

void Application::open(const std::optional<FileURL> &folder) {
    window_->show();
    // Once the window has been drawn: nothing but it belongs into the start.
    QTimer::singleShot(0, &*updater_, [this] { updater_->check(true); });
    if (!folder)
        return;
    window_->goTo({Section::Kind::browse});
    model_->startScan(folder->path());
}

} // namespace brimvale
