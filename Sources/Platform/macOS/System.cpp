#include "Platform/Host.h"

#include "Platform/Posix/PersonalAccounts.h"

namespace brimvale {

System platformSystem() {
    return System::macOS;
}

Tools platformTools() {
    return {.shell = "/bin/sh",
            .administratorRunner = "",
            .busCaller = "",
            .tmutil = "/usr/bin/tmutil",
            .fileStatus = "",
            .databaseShell = "/usr/bin/sqlite3",
            .copier = "/usr/bin/ditto",
            .copierOptions = {},
            .shasum = "/usr/bin/shasum",
            .unpacker = "/usr/bin/ditto",
            .codesign = "/usr/bin/codesign"};
}

uid_t firstPersonalAccount() {
    return 501;
}

} // namespace brimvale
