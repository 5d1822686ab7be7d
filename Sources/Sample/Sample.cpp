#include "Sample/Sample.h"

#include "Base/Text.h"
#include "Platform/Confinement.h"
#include "Platform/FileAccess.h"
#include "Sample/SampleFolder.h"
#include "Sample/SampleVolumes.h"

#include <cstdlib>
#include <string>
#include <utility>

namespace brimvale::sample {

namespace {

/// The tools of the platform, but those that change the system are the ones on the sample.
Tools toolsOn(const FileURL &disk) {
    Tools tools = platformTools();
    const auto onDisk = [&](const char *path) {
        return itemExists(disk.path() + path) ? disk.path() + path : std::string();
    };
    tools.administratorRunner = "";
    tools.tmutil = onDisk("/usr/bin/tmutil");
    tools.snapper = onDisk("/usr/bin/snapper");
    tools.timeshift = "";
    return tools;
}

void setIfMissing(const char *variable, const FileURL &place) {
    if (std::getenv(variable) == nullptr && itemExists(place.path()))
        setenv(variable, place.path().c_str(), 1);
}

/// Takes the home on the sample for the user's. What the desktop needs from the real one stays: the settings
/// of its look, and the key to its display.
void moveHome(const FileURL &home) {
    const FileURL real = homeFolder();
    setIfMissing("XAUTHORITY", real.appending(".Xauthority"));
    setIfMissing("XDG_CONFIG_HOME", real.appending(".config"));
    for (const char *variable : {"XDG_DATA_HOME", "XDG_CACHE_HOME", "XDG_STATE_HOME"})
        unsetenv(variable);
    setenv("HOME", home.path().c_str(), 1);
}

} // namespace

std::optional<Wish> wishNamed(std::string_view value) {
    if (value == "new")
        return Wish::useNew;
    if (value == "remove")
        return Wish::remove;
    return value.empty() ? std::optional(Wish::use) : std::nullopt;
}

Result<FileURL, std::string> useSample(System system, bool isNew) {
    Result<FileURL, std::string> prepared = preparedSample(system, sampleFolder(), isNew);
    const auto *disk = std::get_if<FileURL>(&prepared);
    if (disk == nullptr)
        return prepared;
    if (!confine(Confinement{*disk, toolsOn(*disk),
                             [system, disk = *disk] { return sampleVolumes(system, disk); }}))
        return "The sample in “" + displayText(disk->path()) + "” can’t be opened.";
    Host::useSystem(system);
    moveHome(homeOnSample(system, *disk));
    return prepared;
}

std::string noteAbout(const FileURL &disk, std::string_view program) {
    std::string note = "This is a sample, in “" + displayText(disk.path()) + "”. Nothing else is changed. ";
    return note.append("Remove it with: ").append(program).append(" --sample=remove");
}

std::optional<std::string> removeSample() {
    if (const std::optional<std::string> failure = removeSamples(sampleFolder()))
        return "The sample was not removed: " + *failure;
    return std::nullopt;
}

} // namespace brimvale::sample
