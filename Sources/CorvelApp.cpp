#include "Base/Diagnostics.h"
#include "Base/Version.h"
#include "Platform/FileSizeLimit.h"
#include "Platform/Folder.h"
#include "Platform/SystemLog.h"
#include "Sample/Sample.h"
#include "Views/Window/Application.h"
#include "Views/Window/Launch.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <optional>
#include <span>
#include <string>
#include <variant>

namespace {

using namespace brimvale;

int fail(const std::string &sentence) {
    std::fprintf(stderr, "brimvale: %s\n", sentence.c_str());
    return 1;
}

int removeSample() {
    if (const std::optional<std::string> failure = sample::removeSample())
        return fail(*failure);
    std::puts("The sample is removed");
    return 0;
}

/// Shows the window until the user quits.
int runWindow(const Launch &launch, char **argv) {
    Host::useSystem(launch.system);
    std::optional<FileURL> sampleDisk;
    if (launch.sample) {
        const auto used = sample::useSample(Host::currentSystem(), *launch.sample == sample::Wish::useNew);
        if (const auto *failure = std::get_if<std::string>(&used))
            return fail(*failure);
        sampleDisk = std::get<FileURL>(used);
    }
    int ownName = 1; // the other words are not for the toolkit
    Application application(ownName, argv);
    if (sampleDisk)
        application.window().showSample(*sampleDisk);
    application.open(launch);
    return Application::run();
}

} // namespace

int main(int argc, char **argv) {
    setDiagnosticLog(writeToSystemLog);
    failAtFileSizeLimit();
    raiseDescriptorLimit();
    const std::span<const char *const> words(argv, static_cast<std::size_t>(argc));
    const auto read = Launch::read(words.subspan(1), version);
    if (const auto *refusal = std::get_if<Launch::Refusal>(&read)) {
        std::fputs(refusal->text.c_str(), refusal->exitStatus == 0 ? stdout : stderr);
        return refusal->exitStatus;
    }
    const auto &launch = std::get<Launch>(read);
    const bool removesSample = launch.sample == sample::Wish::remove;
    const int status = removesSample ? removeSample() : runWindow(launch, argv);
    std::fflush(nullptr);
    // A thread that waits in the system may wake up now, and must not find the program's constants destroyed.
    std::_Exit(status);
}
