#include "Platform/Host.h"

#include "Platform/Confinement.h"

#include <atomic>
#include <memory>
#include <mutex>
#include <utility>

namespace brimvale {

namespace {

std::atomic<std::optional<System>> chosenSystem;

struct Root {
    std::mutex mutex;
    std::string folder = "/";
};

Root &chosenRoot() {
    static Root root;
    return root;
}

} // namespace

Host Host::current() {
    const std::shared_ptr<const Confinement> confined = confinement();
    Root &root = chosenRoot();
    const std::lock_guard lock(root.mutex);
    return {currentSystem(), homeFolder(), confined ? confined->tools : platformTools(), root.folder};
}

std::string Host::placeOf(std::string_view path) const {
    if (root == "/" || !path.starts_with('/'))
        return expandingTilde(path, home.path());
    return path == "/" ? root : root + std::string(path);
}

System Host::currentSystem() {
    return chosenSystem.load().value_or(platformSystem());
}

void Host::useSystem(std::optional<System> system) {
    chosenSystem = system;
}

void Host::useRoot(std::string folder) {
    Root &root = chosenRoot();
    const std::lock_guard lock(root.mutex);
    root.folder = std::move(folder);
}

} // namespace brimvale
