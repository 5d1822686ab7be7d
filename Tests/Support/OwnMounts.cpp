#include "Support/OwnMounts.h"

#include "Support/ChildProcess.h"

#include <array>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <fstream>
#include <linux/capability.h>
#include <linux/fuse.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

namespace brimvale::testing {

namespace {

bool write(const char *path, const std::string &text) {
    std::ofstream file(path);
    file << text;
    file.close();
    return file.good();
}

/// Gives this process user ids of its own, in which the one user that it is remains: a user that is unknown
/// there could create nothing on what it mounts.
bool ownUsers() {
    const std::string user = std::to_string(geteuid()), group = std::to_string(getegid());
    return unshare(CLONE_NEWUSER) == 0 && write("/proc/self/uid_map", user + " " + user + " 1") &&
           write("/proc/self/setgroups", "deny") && write("/proc/self/gid_map", group + " " + group + " 1");
}

} // namespace

bool ownMounts() {
    return (geteuid() == 0 || ownUsers()) && unshare(CLONE_NEWNS) == 0 &&
           mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
}

bool mountMemory(const std::string &path, long bytes) {
    const std::string size = "size=" + std::to_string(bytes);
    return mount("none", path.c_str(), "tmpfs", 0, bytes > 0 ? size.c_str() : nullptr) == 0;
}

bool mountAlsoAt(const std::string &original, const std::string &path, bool isReadOnly) {
    return mount(original.c_str(), path.c_str(), nullptr, MS_BIND, nullptr) == 0 &&
           (!isReadOnly ||
            mount(nullptr, path.c_str(), nullptr, MS_REMOUNT | MS_BIND | MS_RDONLY, nullptr) == 0);
}

void keepTemporaryFoldersInMemory(const std::string &path) {
    if (ownMounts() && mountMemory(path))
        setenv("TMPDIR", path.c_str(), 1);
}

bool mountSilent(const std::string &path) {
    const int server = open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options = "fd=" + std::to_string(server) +
                                ",rootmode=40000,user_id=" + std::to_string(geteuid()) +
                                ",group_id=" + std::to_string(getegid());
    if (server < 0 || mount("user@host:", path.c_str(), "fuse.sshfs", 0, options.c_str()) != 0)
        return false;
    // The greeting has to be answered, or nobody's question would get through.
    struct {
        fuse_out_header header;
        fuse_init_out greeting;
    } reply{};
    std::array<char, 1 << 17> request{};
    if (read(server, request.data(), request.size()) <= 0)
        return false;
    fuse_in_header question{};
    std::memcpy(&question, request.data(), sizeof(question));
    reply.header = {sizeof(reply), 0, question.unique};
    reply.greeting.major = FUSE_KERNEL_VERSION;
    reply.greeting.minor = FUSE_KERNEL_MINOR_VERSION;
    reply.greeting.max_write = 4096;
    if (::write(server, &reply, sizeof(reply)) != sizeof(reply))
        return false;
    std::thread([server] {
        std::array<char, 1 << 17> ignored{};
        while (read(server, ignored.data(), ignored.size()) > 0) {
        }
    }).detach();
    return true;
}

bool enterRoot(const std::string &root) {
    if ((geteuid() != 0 && !ownUsers()) || chroot(root.c_str()) != 0 || chdir("/") != 0)
        return false;
    becomeOrdinaryUser();
    // Users of one's own come with every capability over one's own files.
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    std::array<__user_cap_data_struct, _LINUX_CAPABILITY_U32S_3> none{};
    return syscall(SYS_capset, &header, none.data()) == 0;
}

} // namespace brimvale::testing
