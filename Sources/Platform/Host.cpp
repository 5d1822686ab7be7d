#include "Platform/Host.h"

#include <atomic>

namespace brimvale {

namespace {

std::atomic<std::optional<System>> chosenSystem;

} // namespace

Host Host::current() {
    return {currentSystem(), homeFolder(), platformTools()};
}

System Host::currentSystem() {
    return chosenSystem.load().value_or(platformSystem());
}

void Host::useSystem(std::optional<System> system) {
    chosenSystem = system;
}

} // namespace brimvale
