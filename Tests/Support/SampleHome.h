#pragma once

#include "Platform/Host.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

namespace brimvale::testing {

/// An empty folder that is the user's home, while the object lives. The catalogs are those of a Mac that has
/// nothing else.
class SampleHome : public TemporaryFolder {
public:
    SampleHome() {
        Host::useSystem(System::macOS);
        Host::useRoot(path("nothing"));
    }
    ~SampleHome() {
        Host::useSystem(std::nullopt);
        Host::useRoot("/");
    }
    SampleHome(const SampleHome &) = delete;
    SampleHome &operator=(const SampleHome &) = delete;

private:
    EnvironmentVariable home_{"HOME", path()};
};

/// The same for a user of Linux, whose home is all there is of the disk.
class LinuxHome : public SampleHome {
public:
    LinuxHome() {
        Host::useSystem(System::linux);
        Host::useRoot(path());
    }
};

} // namespace brimvale::testing
