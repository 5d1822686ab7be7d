// How long the window takes to appear: from just before its process is started until its first picture has
// been handed over, and how much memory it has taken by then. Everything in between is what the program
// itself does. Also how long brimvalectl takes to print its version. Prints the median of the rounds; the
// exit status is 1 where a target is missed by more than a tenth.
//
//     StartWindow [--rounds N] [--at-most MS] [--memory MIB] [--command PROGRAM MS]
//
//     --rounds N             how often it is measured (15), after one start that is not
//     --at-most MS           a target for the median
//     --memory MIB           a target for the peak memory of the window
//     --command PROGRAM MS   also start this program with "--version", ten times as often; a target for its
//     median
//
// Without a display of its own choice (QT_QPA_PLATFORM) the window is opened off screen.

#include "Core/Text/Shell.h"
#include "MeasuredRun.h"
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
#include <optional>
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
    application.open({});
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

struct Settings {
    int rounds = 15;
    double atMost = 0;        ///< milliseconds; 0: no target
    double memory = 0;        ///< MiB; 0: no target
    std::string command = {}; ///< the path of brimvalectl; empty for none
    double commandAtMost = 0; ///< milliseconds
};

/// Nothing where the words are wrong.
std::optional<Settings> settingsFrom(const std::vector<std::string> &words) {
    Settings settings;
    for (std::size_t i = 0; i < words.size();) {
        const std::string &option = words[i++];
        if (i == words.size())
            return std::nullopt;
        const std::string &value = words[i++];
        if (option == "--rounds")
            settings.rounds = std::max(1, std::atoi(value.c_str()));
        else if (option == "--at-most")
            settings.atMost = std::atof(value.c_str());
        else if (option == "--memory")
            settings.memory = std::atof(value.c_str());
        else if (option == "--command" && i < words.size()) {
            settings.command = value;
            settings.commandAtMost = std::atof(words[i++].c_str());
        } else
            return std::nullopt;
    }
    return settings;
}

/// The median in milliseconds, printed.
double report(const char *what, std::vector<double> times) {
    std::sort(times.begin(), times.end());
    const double median = times[times.size() / 2];
    std::printf("%s: %.2f ms (%.2f to %.2f in %zu rounds)\n", what, median, times.front(), times.back(),
                times.size());
    return median;
}

void measureWindow(const std::string &program, const Settings &settings, Targets &targets) {
    std::vector<double> times;
    measureStart(program); // so that everything is in memory
    for (int round = 0; round < settings.rounds; ++round)
        times.push_back(measureStart(program));
    const double median = report("From starting the window's process to its first paint", std::move(times));
    if (settings.atMost > 0)
        targets.atMost("first paint", settings.atMost, median, " ms", 1);
    const auto run = measure({program, std::string(startedAt), std::to_string(nanoseconds())});
    if (!run)
        return;
    const double peak = static_cast<double>(run->peakBytes) / (1 << 20);
    std::printf("Memory by then: %.1f MiB\n", peak);
    if (settings.memory > 0)
        targets.atMost("memory at the first paint", settings.memory, peak, " MiB", 1);
}

void measureCommand(const Settings &settings, Targets &targets) {
    std::vector<double> times;
    for (int round = 0; round < settings.rounds * 10; ++round)
        if (const auto run = measure({settings.command, "--version"}))
            times.push_back(run->seconds * 1000);
    if (times.empty())
        return targets.notMeasured("brimvalectl --version");
    targets.atMost("brimvalectl --version", settings.commandAtMost,
                   report("brimvalectl --version", std::move(times)), " ms");
}

} // namespace

int main(int argc, char **argv) {
    const std::vector<std::string> words(argv + 1, argv + argc);
    if (words.size() == 2 && words[0] == startedAt)
        return startWindow(argv, std::atoll(words[1].c_str()));
    const std::optional<Settings> settings = settingsFrom(words);
    if (!settings) {
        std::fputs("usage: StartWindow [--rounds N] [--at-most MS] [--memory MIB] [--command PROGRAM MS]\n",
                   stderr);
        return 2;
    }
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    Targets targets;
    measureWindow(std::filesystem::absolute(argv[0]).native(), *settings, targets);
    if (!settings->command.empty())
        measureCommand(*settings, targets);
    return targets.report("start");
}
