#include "Base/Diagnostics.h"
#include "Base/Version.h"
#include "Platform/FileSizeLimit.h"
#include "Platform/Folder.h"
#include "Platform/SystemLog.h"
#include "Views/Window/Application.h"
#include "Views/Window/Launch.h"

#include <cstddef>
#include <cstdio>
#include <cstdlib>
#include <span>
#include <variant>

namespace {

using namespace brimvale;

/// Shows the window until the user quits.
int runWindow(const Launch &launch, char **argv) {
    Host::useSystem(launch.system);
    int ownName = 1; // the other words are not for the toolkit
    Application application(ownName, argv);
    application.open(launch.folder);
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
    const int status = runWindow(std::get<Launch>(read), argv);
    std::fflush(nullptr);
    // A thread that waits in the system may wake up now, and must not find the program's constants destroyed.
    std::_Exit(status);
}
