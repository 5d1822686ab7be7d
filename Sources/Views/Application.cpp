#include "Views/Application.h"

#include "Views/Components/ApplicationFont.h"
#include "Views/Components/WindowStyle.h"

#include <QIcon>

// In a static library a resource must be asked for, outside of any namespace.
static void openResources() {
    Q_INIT_RESOURCE(brimvale);
}

namespace brimvale {

std::string_view Application::version() {
    return BRIMVALE_VERSION;
}

Application::Application(int &argumentCount, char **arguments) {
    QApplication::setStyle(new WindowStyle); // first, lest the toolkit loads a style of its own
    toolkit_.emplace(argumentCount, arguments);
    openResources();
    QApplication::setApplicationName(QStringLiteral("Brimvale"));
    QApplication::setApplicationVersion(QStringLiteral(BRIMVALE_VERSION));
    QApplication::setDesktopFileName(QStringLiteral("brimvale"));
    QApplication::setWindowIcon(QIcon(QStringLiteral(":/brimvale.svg")));
    QApplication::setFont(applicationFont());
    model_.emplace();
    window_.emplace(*model_);
}

void Application::open(const std::optional<FileURL> &folder) {
    window_->show();
    if (!folder)
        return;
    window_->goTo({Section::Kind::browse});
    model_->startScan(folder->path());
}

} // namespace brimvale
