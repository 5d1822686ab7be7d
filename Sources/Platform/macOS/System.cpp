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
            .settings = "",
            .tmutil = "/usr/bin/tmutil",
            .snapper = "",
            .timeshift = "",
            .fileStatus = "",
            .databaseShell = "/usr/bin/sqlite3",
            .copier = "/usr/bin/ditto",
            .copierOptions = {},
            .shasum = "/usr/bin/shasum",
            .unpacker = "/usr/bin/ditto",
            .codesign = "/usr/bin/codesign",
            .attributeRemover = "/usr/bin/xattr",
            .opener = "/usr/bin/open"};
}

uid_t firstPersonalAccount() {
    return 501;
}

bool isAdministratorGroup(gid_t group) {
    constexpr gid_t wheel = 0;
    constexpr gid_t admin = 80;
    return group == wheel || group == admin;
}

} // namespace brimvale
