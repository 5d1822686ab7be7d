// Which system calls are watched, and how each may fail.

#include "Faults/Watched.h"

#include <algorithm>
#include <cerrno>
#include <sys/syscall.h>

namespace brimvale::faults {

namespace {

/// Calls that fail alike, and whose path is the same argument.
struct Family {
    std::vector<int> errors;
    int path;
    std::vector<std::pair<long, const char *>> calls;
};

#define CALL(name)                                                                                           \
    { SYS_##name, #name }

std::vector<Family> families() {
    const std::vector<int> opening = {EACCES, EMFILE, ENOENT, EIO, ELOOP};
    const std::vector<int> looking = {EACCES, ENOENT, EIO, ENOMEM};
    const std::vector<int> removing = {EACCES, EPERM, EBUSY, EIO, EROFS, ENOENT, ENOTEMPTY};
    const std::vector<int> making = {ENOSPC, EDQUOT, EACCES, EIO, EROFS, EEXIST};
    const std::vector<int> renaming = {EXDEV, ENOSPC, EINVAL, EIO, EACCES, EBUSY, EPERM, ENOENT, EEXIST};
    const std::vector<int> writing = {ENOSPC, EIO, EDQUOT, EFBIG, EINTR}, flushing = {EIO, ENOSPC};
    const std::vector<int> changing = {EPERM, EIO, EROFS, EOPNOTSUPP}, reading = {EIO, EINTR};
    const std::vector<int> attributes = {EOPNOTSUPP, EIO};
    return {
        {opening, 1, {CALL(openat)}},
        {looking, 1, {CALL(statx), CALL(newfstatat), CALL(faccessat), CALL(readlinkat)}},
        {removing, 1, {CALL(unlinkat)}},
        {making, 1, {CALL(mkdirat), CALL(mknodat), CALL(linkat)}},
        {making, 2, {CALL(symlinkat)}},
        {renaming, 1, {CALL(renameat2)}},
        {changing, 1, {CALL(fchmodat), CALL(fchownat), CALL(utimensat)}},
        {changing, 0, {CALL(setxattr), CALL(lsetxattr)}},
        {changing, -1, {CALL(fchmod), CALL(fchown), CALL(fsetxattr)}},
        {attributes, 0, {CALL(getxattr), CALL(lgetxattr), CALL(listxattr), CALL(llistxattr)}},
        {attributes, -1, {CALL(fgetxattr), CALL(flistxattr)}},
        {{EACCES, EIO}, 0, {CALL(statfs)}},
        {{EIO, ENOSYS}, -1, {CALL(fstatfs)}},
        {{EIO, ENOENT, ENOMEM}, -1, {CALL(getdents64)}},
        {reading, -1, {CALL(read), CALL(pread64), CALL(close)}},
        {writing, -1, {CALL(write), CALL(pwrite64)}},
        {flushing, -1, {CALL(fsync), CALL(fdatasync), CALL(syncfs), CALL(ftruncate)}},
        {{ENOSPC, EOPNOTSUPP}, -1, {CALL(fallocate)}},
        {{ENOSPC, EIO, EXDEV, EINVAL}, -1, {CALL(copy_file_range)}},
        {{EIO}, -1, {CALL(fstat)}},
        {{EMFILE}, -1, {CALL(pipe2)}},
        {{EACCES, ENOENT, EIO}, 0, {CALL(execve), CALL(chdir)}},
#ifdef SYS_openat2
        {{EACCES, EMFILE, ENOENT, EIO, ENOSYS, EAGAIN, EXDEV}, 1, {CALL(openat2)}},
#endif
#ifdef SYS_faccessat2
        {looking, 1, {CALL(faccessat2)}},
#endif
#ifdef SYS_renameat
        {renaming, 1, {CALL(renameat)}},
#endif
#ifdef SYS_mkdir // and the other calls that newer processors do not have
        {opening, 0, {CALL(open)}},
        {looking, 0, {CALL(stat), CALL(lstat), CALL(access), CALL(readlink)}},
        {removing, 0, {CALL(unlink), CALL(rmdir)}},
        {making, 0, {CALL(mkdir), CALL(link), CALL(symlink)}},
        {renaming, 0, {CALL(rename)}},
        {changing, 0, {CALL(chmod)}},
#endif
    };
}

#undef CALL

std::vector<CallKind> availableKinds() {
    std::vector<CallKind> kinds;
    for (const Family &family : families())
        for (const auto &[number, name] : family.calls)
            kinds.push_back({number, name, family.path, family.errors});
    return kinds;
}

} // namespace

const std::vector<CallKind> &callKinds() {
    static const std::vector<CallKind> kinds = availableKinds();
    return kinds;
}

const CallKind *callKind(long number) {
    const auto found = std::find_if(callKinds().begin(), callKinds().end(),
                                    [&](const CallKind &kind) { return kind.number == number; });
    return found != callKinds().end() ? &*found : nullptr;
}

} // namespace brimvale::faults
