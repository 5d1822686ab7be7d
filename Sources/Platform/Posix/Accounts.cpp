#include "Platform/Accounts.h"

#include "Platform/Posix/PersonalAccounts.h"

#include <algorithm>
#include <mutex>
#include <pwd.h>
#include <unistd.h>

namespace brimvale {

namespace {

bool isOfPerson(const passwd &account) {
    return account.pw_uid == 0 || account.pw_uid == getuid() || account.pw_uid >= firstPersonalAccount();
}

} // namespace

std::vector<FileURL> accountHomes() {
    static std::mutex oneReaderAtATime; // the system keeps one position for the whole program
    const std::lock_guard guard(oneReaderAtATime);
    std::vector<FileURL> homes;
    setpwent();
    while (const passwd *account = getpwent()) {
        if (!isOfPerson(*account) || account->pw_dir == nullptr || account->pw_dir[0] != '/')
            continue;
        FileURL home = FileURL(account->pw_dir).standardized();
        if (home.path() != "/" && std::find(homes.begin(), homes.end(), home) == homes.end())
            homes.push_back(std::move(home));
    }
    endpwent();
    return homes;
}

} // namespace brimvale
