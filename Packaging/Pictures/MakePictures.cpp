// Draws the pictures of README.md: the window with the sample, without a display. Scripts/pictures runs it.

#include "Base/FileURL.h"
#include "Platform/Host.h"
#include "Sample/Sample.h"
#include "Views/Components/SystemAppearance.h"
#include "Views/Components/Theme.h"
#include "Views/Window/Application.h"
#include "Views/Window/ContentView.h"
#include "Views/Window/Section.h"

#include <QAbstractItemView>
#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QKeyEvent>
#include <QPixmap>
#include <QPushButton>
#include <QSize>
#include <QString>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

constexpr QSize usualSize{1180, 760};
constexpr QSize smallestSize{900, 600};
constexpr int settlingTime = 2500; // milliseconds; the sample is measured in less

void wait(int milliseconds = settlingTime) {
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < milliseconds)
        QApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 50);
}

class Photographer {
public:
    Photographer(ContentView &window, QString folder) : window_(window), folder_(std::move(folder)) {}

    void take(const char *name, Appearance appearance, QSize size = usualSize) {
        Theme::choose(appearance);
        window_.applyTheme();
        window_.resize(size);
        wait(600);
        const QString file = folder_ + QLatin1Char('/') + QLatin1String(name) + QLatin1String(".png");
        isComplete_ = window_.grab().save(file) && isComplete_;
        std::printf("%s\n", qPrintable(file));
    }

    void goTo(Section::Kind kind, const char *category = "") {
        window_.goTo({kind, category});
        wait(600);
    }

    /// Chooses an entry of a menu.
    void trigger(const char *action) {
        window_.findChild<QAction *>(QLatin1String(action))->trigger();
        wait(600);
    }

    /// Measures on the visible page.
    void measure() {
        for (auto *button : window_.findChildren<QPushButton *>(QStringLiteral("measure")))
            if (button->isVisible()) {
                button->click();
                return wait();
            }
        std::fputs("There is no button to measure.\n", stderr);
        isComplete_ = false;
    }

    /// Selects the n-th row of the visible list or outline, and opens it if it is a folder.
    void select(int row, bool opens = false) {
        for (auto *view : window_.findChildren<QAbstractItemView *>()) {
            if (!view->isVisible() || view->objectName() == QLatin1String("pages"))
                continue;
            view->setFocus();
            press(*view, Qt::Key_Home);
            for (int i = 0; i < row; ++i)
                press(*view, Qt::Key_Down);
            if (opens)
                press(*view, Qt::Key_Right);
            return wait(1000);
        }
    }

    [[nodiscard]] bool isComplete() const { return isComplete_; }

private:
    static void press(QWidget &widget, Qt::Key key) {
        for (const QEvent::Type type : {QEvent::KeyPress, QEvent::KeyRelease}) {
            QKeyEvent event(type, key, Qt::NoModifier);
            QApplication::sendEvent(&widget, &event);
        }
    }

    ContentView &window_;
    QString folder_;
    bool isComplete_ = true;
};

bool takeAll(Application &application, const QString &folder) {
    ContentView &window = application.window();
    Photographer photographer(window, folder);
    using Kind = Section::Kind;
    photographer.measure();
    photographer.take("overview-light", Appearance::light);
    photographer.take("overview-dark", Appearance::dark);
    window.scan(homeFolder());
    wait();
    photographer.select(4, true); // the projects
    photographer.take("browse-light", Appearance::light);
    photographer.take("browse-dark", Appearance::dark);
    photographer.take("browse-narrow", Appearance::light, smallestSize);
    photographer.trigger("detailedMap");
    photographer.take("map-light", Appearance::light);
    photographer.take("map-dark", Appearance::dark);
    photographer.trigger("detailedMap");
    photographer.goTo(Kind::cleanup);
    photographer.measure();
    photographer.take("cleanup-light", Appearance::light);
    photographer.take("cleanup-narrow", Appearance::light, smallestSize);
    photographer.goTo(Kind::apps);
    wait();
    photographer.select(1);
    wait();
    photographer.take("apps-light", Appearance::light);
    photographer.goTo(Kind::category, "documents");
    photographer.take("category-light", Appearance::light);
    photographer.take("category-dark", Appearance::dark);
    photographer.goTo(Kind::category, "trash");
    photographer.take("trash-light", Appearance::light);
    return photographer.isComplete();
}

int makePictures(const std::string &folder, char **arguments) {
    const auto sample = sample::useSample(System::linux, true);
    if (const auto *failure = std::get_if<std::string>(&sample)) {
        std::fprintf(stderr, "%s\n", failure->c_str());
        return 1;
    }
    int ownName = 1;
    Application application(ownName, arguments);
    application.window().showSample(std::get<FileURL>(sample));
    application.open({});
    wait();
    return takeAll(application, QString::fromStdString(folder)) ? 0 : 1;
}

} // namespace

} // namespace brimvale

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fputs("Usage: MakePictures FOLDER\n", stderr);
        return 2;
    }
    const int status = brimvale::makePictures(argv[1], argv);
    std::fflush(nullptr);
    std::_Exit(status); // a thread may still be waiting for the system
}
