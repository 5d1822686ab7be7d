#pragma once

#include "Platform/Host.h"
#include "Support/EnvironmentVariable.h"
#include "Support/TemporaryFolder.h"

namespace brimvale::testing {

/// An empty folder that is the user's home, on a Mac as far as the catalogs go, while the object lives.
class SampleHome : public TemporaryFolder {
public:
    SampleHome() { Host::useSystem(System::macOS); }
    ~SampleHome() { Host::useSystem(std::nullopt); }
    SampleHome(const SampleHome &) = delete;
    SampleHome &operator=(const SampleHome &) = delete;

private:
    EnvironmentVariable home_{"HOME", path()};
};

} // namespace brimvale::testing
