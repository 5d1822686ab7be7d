// How long the window takes to appear: from just before its process is started until its first picture has
// been handed over. Everything in between is what the program itself does. Prints the median of the rounds.
//
//     StartWindow [--rounds N] [--at-most MS]
//
//     --rounds N      how often it is measured (15), after one start that is not
//     --at-most MS    a target for the median: exit status 1 if it is missed by more than a tenth
//
// Without a display of its own choice (QT_QPA_PLATFORM) the window is opened off screen.

#include "Core/Text/Shell.h"
#include "Targets.h"
#include "Views/Window/Application.h"

#include <QEvent>
#include <QMetaObject>
#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace {

using namespace brimvale;

/// Says to the child when it was started; nothing that a user types.
constexpr std::string_view startedAt = "--started-at";

/// The clock of the whole machine, which parent and child share.
long long nanoseconds() {
    return std::chrono::steady_clock::now().time_since_epoch() / std::chrono::nanoseconds(1);
}

/// Calls back once the window has been painted and its picture handed over.
class FirstPaint : public QObject {
public:
    FirstPaint(QObject &window, std::function<void()> then) : then_(std::move(then)) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject *window, QEvent *event) override {
        if (event->type() == QEvent::Paint) {
            window->removeEventFilter(this);
            // The paint event is one step of a refresh that also shows what was painted. A posted call comes
            // right after that, before any timer and so before what the program has put off until now.
            QMetaObject::invokeMethod(this, then_, Qt::QueuedConnection);
        }
        return false;
    }

private:
    std::function<void()> then_;
};

/// The child: does what the program does, prints the milliseconds that have passed, and ends.
int startWindow(char **arguments, long long start) {
    int ownName = 1;
    Application application(ownName, arguments);
    const FirstPaint firstPaint(application.window(), [start] {
        std::printf("%f\n", static_cast<double>(nanoseconds() - start) / 1e6);
        QApplication::quit();
    });
    application.open(std::nullopt);
    return Application::run();
}

/// The milliseconds that one start took; ends the program where it failed.
double measureStart(const std::string &program) {
    const auto result =
        Shell::runWithStatus(program, {std::string(startedAt), std::to_string(nanoseconds())});
    const double milliseconds = result && result->hasSucceeded() ? std::atof(result->output.c_str()) : 0;
    if (milliseconds > 0)
        return milliseconds;
    std::fputs("StartWindow: the window did not open; brimvale itself would say why\n", stderr);
    std::exit(2);
}

int usage() {
    std::fputs("usage: StartWindow [--rounds N] [--at-most MS]\n", stderr);
    return 2;
}

/// Prints the figures; answers the exit status.
int report(std::vector<double> times, double atMost) {
    std::sort(times.begin(), times.end());
    const double median = times[times.size() / 2];
    std::printf("From starting the process to the first paint: %.1f ms (%.1f to %.1f in %zu rounds)\n",
                median, times.front(), times.back(), times.size());
    Targets targets;
    if (atMost > 0)
        targets.atMost("first paint", atMost, median, " ms", 0);
    return targets.report("start of the window");
}

} // namespace

int main(int argc, char **argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 2 && words[0] == startedAt)
        return startWindow(argv, std::atoll(words[1].c_str()));

    int rounds = 15;
    double atMost = 0;
    for (std::size_t i = 0; i < words.size(); i += 2) {
        const bool hasValue = i + 1 < words.size();
        if (hasValue && words[i] == "--rounds")
            rounds = std::max(1, std::atoi(words[i + 1].c_str()));
        else if (hasValue && words[i] == "--at-most")
            atMost = std::atof(words[i + 1].c_str());
        else
            return usage();
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");

    const std::string program = std::filesystem::absolute(argv[0]).native();
    std::vector<double> times;
    measureStart(program); // so that everything is in memory
    for (int round = 0; round < rounds; ++round)
        times.push_back(measureStart(program));
    return report(std::move(times), atMost);
}
