#include "Base/Diagnostics.h"
#include "CommandLine/StandardStreams.h"
#include "Core/Storage/LocalSnapshot.h"
#include "Platform/Host.h"
#include "Platform/SystemLog.h"

#include <cstdlib>
#include <string>
#include <vector>

// Deletes one snapshot as root for a user who has been authenticated by pkexec. It does not trust its
// arguments, which only name a snapshot: this must be listed here, too, and its own tool deletes it.

namespace {

using namespace brimvale;

enum class DeletionStatus { deleted = 0, failed = 1, wrongArguments = 2 };

/// The environment is the user's in part. The tools need no more than this.
void replaceEnvironment() {
    clearenv();
    setenv("PATH", "/usr/sbin:/usr/bin:/sbin:/bin", 1);
    setenv("HOME", "/root", 1);
}

DeletionStatus runDeletion(const std::vector<std::string> &arguments) {
    const auto named = NamedSnapshot::fromArguments(arguments);
    if (!named)
        return DeletionStatus::wrongArguments;
    return deleteSnapshotAsRoot(*named, Host::current()) ? DeletionStatus::deleted : DeletionStatus::failed;
}

} // namespace

int main(int argc, char **argv) {
    setDiagnosticLog(writeToSystemLog);
    commandLine::occupyStandardStreams();
    replaceEnvironment();
    return static_cast<int>(runDeletion({argv + (argc > 0 ? 1 : 0), argv + argc}));
}
