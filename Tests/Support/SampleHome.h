#pragma once

#include "Platform/Host.h"
#include "Support/TemporaryFolder.h"

#include <QByteArray>
#include <QtGlobal>

namespace brimvale::testing {

/// An empty folder that is the user's home, on a Mac as far as the catalogs go, while the object lives.
class SampleHome : public TemporaryFolder {
public:
    SampleHome() {
        qputenv("HOME", path().c_str());
        Host::useSystem(System::macOS);
    }
    ~SampleHome() {
        qputenv("HOME", before_);
        Host::useSystem(std::nullopt);
    }
    SampleHome(const SampleHome &) = delete;
    SampleHome &operator=(const SampleHome &) = delete;

private:
    QByteArray before_ = qgetenv("HOME");
};

} // namespace brimvale::testing
