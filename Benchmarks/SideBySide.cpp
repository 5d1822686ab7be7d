// Runs commands in turn, A B C A B C …, so that whatever else the machine does meets all of them, and prints
// what they took as a Markdown table.
//
//     SideBySide [OPTION]… + NAME COMMAND… [+ NAME COMMAND…]…
//
// The first command is the subject; the others are compared with it by the median of the rounds' own ratios.
// A command that is not there is listed as not installed. The exit status is 1 where a figure misses its
// target by more than a tenth. Options:
//     --rounds N              how often each command is measured (11), after one run that is not
//     --before SCRIPT         before every run, let the shell make what the command uses up; no run goes
//                             unmeasured
//     --cold                  before every run, let the system forget what it has read (Linux, as root)
//     --at-most RATIO NAME    a target: the subject takes at most RATIO times as long as NAME
//     --faster RATIO NAME     a target: NAME takes at least RATIO times as long as the subject
//     --memory MIB            a target: the subject's peak memory is at most this

#include "MeasuredRun.h"
#include "Targets.h"

#include <algorithm>
#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <string>
#include <string_view>
#include <unistd.h>
#include <utility>
#include <vector>

namespace {

using Figures = std::vector<double>;

constexpr double mebibyte = 1 << 20;

struct Contender {
    std::string name;
    std::vector<std::string> command;
    std::string absence; ///< why it takes no part; empty when it does
    Figures seconds, cpuSeconds, peaks;
};

struct Target {
    enum class Kind { atMost, faster, memory } kind;
    double value;
    std::string name; ///< of the other contender
};

struct Settings {
    int rounds = 11;
    bool isCold = false;
    std::string before; ///< a script; empty where nothing is to be made
    std::vector<Target> targets;
    std::vector<Contender> contenders;
};

[[noreturn]] void failUsage() {
    std::fputs("usage: SideBySide [--rounds N] [--before SCRIPT] [--cold] [--at-most RATIO NAME]… [--faster "
               "RATIO NAME]… "
               "[--memory MIB] + NAME COMMAND… [+ NAME COMMAND…]…\n",
               stderr);
    std::exit(2);
}

/// The words of the command line, one after another.
class Words {
public:
    Words(int count, char **words) : next_(words + 1), end_(words + count) {}

    [[nodiscard]] bool areLeft() const { return next_ != end_; }
    [[nodiscard]] bool areLeftOfContender() const { return areLeft() && *next_ != std::string_view("+"); }
    std::string take() { return areLeft() ? *next_++ : (failUsage(), ""); }
    double takeNumber() {
        const double number = std::strtod(take().c_str(), nullptr);
        return number > 0 ? number : (failUsage(), 0);
    }

private:
    char **next_;
    char **end_;
};

Settings settingsFrom(Words words) {
    Settings settings;
    while (words.areLeft()) {
        const std::string word = words.take();
        if (word == "+") {
            Contender contender;
            contender.name = words.take();
            contender.command.push_back(words.take());
            while (words.areLeftOfContender())
                contender.command.push_back(words.take());
            settings.contenders.push_back(std::move(contender));
        } else if (word == "--rounds") {
            settings.rounds = std::max(1, static_cast<int>(words.takeNumber()));
        } else if (word == "--before") {
            settings.before = words.take();
        } else if (word == "--cold") {
            settings.isCold = true;
        } else if (word == "--memory") {
            settings.targets.push_back({Target::Kind::memory, words.takeNumber(), ""});
        } else if (word == "--at-most" || word == "--faster") {
            const auto kind = word == "--faster" ? Target::Kind::faster : Target::Kind::atMost;
            const double ratio = words.takeNumber();
            settings.targets.push_back({kind, ratio, words.take()});
        } else {
            failUsage();
        }
    }
    if (settings.contenders.empty())
        failUsage();
    return settings;
}

double median(Figures figures) {
    std::sort(figures.begin(), figures.end());
    const std::size_t middle = figures.size() / 2;
    return figures.size() % 2 == 1 ? figures[middle] : (figures[middle - 1] + figures[middle]) / 2;
}

/// The median over all rounds of how many times as long `one` took as `other` in that round.
double medianRatio(const Contender &one, const Contender &other) {
    Figures ratios;
    for (std::size_t round = 0; round < one.seconds.size(); ++round)
        ratios.push_back(one.seconds[round] / other.seconds[round]);
    return median(std::move(ratios));
}

/// Makes the system forget what it has read from disk. False where it does not let us.
bool dropCaches() {
    sync();
    const int file = open("/proc/sys/vm/drop_caches", O_WRONLY | O_CLOEXEC);
    if (file < 0)
        return false;
    const bool isDropped = write(file, "3", 1) == 1;
    close(file);
    return isDropped;
}

/// One run. A contender that cannot be run, or fails, is out from then on.
void run(Contender &contender, bool isMeasured) {
    const std::optional<MeasuredRun> result = measure(contender.command);
    if (!result)
        contender.absence = "not installed";
    else if (!result->succeeded)
        contender.absence = "failed";
    else if (isMeasured) {
        contender.seconds.push_back(result->seconds);
        contender.cpuSeconds.push_back(result->cpuSeconds);
        contender.peaks.push_back(static_cast<double>(result->peakBytes));
    }
}

void runAll(Settings &settings) {
    for (int round = settings.before.empty() ? 0 : 1; round <= settings.rounds; ++round)
        for (Contender &contender : settings.contenders) {
            if (!contender.absence.empty())
                continue;
            if (!settings.before.empty() && std::system(settings.before.c_str()) != 0) {
                contender.absence = "could not be prepared";
                continue;
            }
            if (settings.isCold && round > 0)
                dropCaches();
            run(contender, round > 0);
        }
}

void printTable(const Settings &settings) {
    const Contender &subject = settings.contenders.front();
    std::printf("| %s, %d rounds | median time | × %s | fastest – slowest | CPU time | peak memory |\n",
                settings.isCold ? "cold" : "warm", settings.rounds, subject.name.c_str());
    std::puts("|---|---:|---:|---:|---:|---:|");
    for (const Contender &one : settings.contenders) {
        if (!one.absence.empty()) {
            std::printf("| %s | %s | | | | |\n", one.name.c_str(), one.absence.c_str());
            continue;
        }
        const auto [fastest, slowest] = std::minmax_element(one.seconds.begin(), one.seconds.end());
        std::printf("| %s | %.2f s | %.2f | %.2f – %.2f s | %.2f s | %.1f MiB |\n", one.name.c_str(),
                    median(one.seconds), medianRatio(one, subject), *fastest, *slowest,
                    median(one.cpuSeconds), median(one.peaks) / mebibyte);
    }
}

void addTarget(Targets &targets, const Target &target, const Contender &subject, const Contender *other) {
    if (target.kind == Target::Kind::memory) {
        const double peak = *std::max_element(subject.peaks.begin(), subject.peaks.end()) / mebibyte;
        targets.atMost("peak memory", target.value, peak, " MiB", 1);
    } else if (other == nullptr || !other->absence.empty()) {
        targets.notMeasured("compared with " + target.name);
    } else if (target.kind == Target::Kind::atMost) {
        targets.atMost("time, as a multiple of " + target.name, target.value, medianRatio(subject, *other),
                       " ×");
    } else {
        targets.atLeast("time of " + target.name + ", as a multiple of ours", target.value,
                        medianRatio(*other, subject), " ×");
    }
}

/// Prints what was measured beside the targets; returns the exit status.
int reportTargets(const Settings &settings) {
    Targets targets;
    for (const Target &target : settings.targets) {
        const auto other =
            std::find_if(settings.contenders.begin(), settings.contenders.end(),
                         [&](const Contender &contender) { return contender.name == target.name; });
        addTarget(targets, target, settings.contenders.front(),
                  other == settings.contenders.end() ? nullptr : &*other);
    }
    return targets.report(settings.isCold ? "cold" : "warm");
}

} // namespace

int main(int argumentCount, char **arguments) {
    Settings settings = settingsFrom(Words(argumentCount, arguments));
    if (settings.isCold && !dropCaches()) {
        std::puts("No cold figures: the system forgets what it has read only for root, and only on Linux.");
        return 0;
    }
    runAll(settings);
    const Contender &subject = settings.contenders.front();
    if (!subject.absence.empty()) {
        std::fprintf(stderr, "SideBySide: %s: %s\n", subject.name.c_str(), subject.absence.c_str());
        return 1;
    }
    printTable(settings);
    return reportTargets(settings);
}
