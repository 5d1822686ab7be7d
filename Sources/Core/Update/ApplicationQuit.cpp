#include "Core/Update/ApplicationQuit.h"

#include <QCoreApplication>
#include <cstdlib>
#include <thread>

namespace brimvale {

void ApplicationQuit::terminate() {
    QCoreApplication::quit();
}

// Nothing is cleaned up: what the cleaning waits for may be what keeps the application from ending.
void ApplicationQuit::exitNow() {
    std::_Exit(0);
}

void quitForUpdate(const std::shared_ptr<ApplicationQuit> &quit,
                   const std::function<void(const std::string &)> &log, std::chrono::milliseconds patience) {
    // A timer of the main thread would no longer run while the application, having left its event loop, waits
    // for work in the background.
    std::thread([quit, log, patience] {
        std::this_thread::sleep_for(patience);
        log("[Corvel] terminate was refused, exiting directly");
        quit->exitNow();
    }).detach();
    quit->closeAllWindows();
    quit->terminate();
}

} // namespace brimvale
