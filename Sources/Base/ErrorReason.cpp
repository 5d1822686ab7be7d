#include "Base/ErrorReason.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string_view>
#include <system_error>
#include <utility>

namespace brimvale {

namespace {

constexpr std::array<std::pair<int, std::string_view>, 25> reasons = {{
    {EACCES, "you don’t have permission to access it"},
    {EPERM, "you don’t have permission to access it"},
    {ENOENT, "it or a folder on the way to it no longer exists"},
    {ENOTDIR, "a part of its path is not a folder"},
    {ENOTEMPTY, "something is still writing to it"},
    {EBUSY, "the system is using it, or a volume is mounted in it"},
    {ETXTBSY, "a program is using it"},
    {EIO, "the disk reported an error"},
    {EMFILE, "too many files are open"},
    {ENFILE, "too many files are open"},
    {ENOMEM, "there isn’t enough memory"},
    {ENOSPC, "there isn’t enough space"},
    {EDQUOT, "there isn’t enough space"},
    {EROFS, "the volume is read only"},
    {ENAMETOOLONG, "its name is too long"},
    {ELOOP, "a link on the way to it belongs to another user, or there are too many links"},
    {EXDEV, "it is on another volume"},
    {ENXIO, "the volume is no longer connected"},
    {ENODEV, "the volume is no longer connected"},
    {ENOTCONN, "the volume is no longer connected"},
    {ESTALE, "the server no longer knows it"},
    {ETIMEDOUT, "the server doesn’t answer"},
    {EHOSTDOWN, "the server doesn’t answer"},
    {EFBIG, "a file would become too large"},
    {ECANCELED, "the operation was cancelled"},
}};

} // namespace

std::string reasonOfError(int errorNumber) {
    const auto found = std::find_if(reasons.begin(), reasons.end(),
                                    [&](const auto &reason) { return reason.first == errorNumber; });
    if (found != reasons.end())
        return std::string(found->second);
    return "of a system error: " + std::generic_category().message(errorNumber);
}

} // namespace brimvale
