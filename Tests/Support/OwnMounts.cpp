#include "Support/OwnMounts.h"

#include "Platform/ProcessRunner.h"
#include "Platform/Tools.h"
#include "Support/ChildProcess.h"

#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <linux/btrfs.h>
#include <linux/capability.h>
#include <linux/fuse.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>
#include <vector>

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

constexpr std::size_t requestSize = 1 << 17;

/// Mounts a file system that this process serves, and answers its greeting, without which no request would
/// get through. The descriptor for the requests; -1 on failure.
int mountServed(const std::string &path) {
    const int server = open("/dev/fuse", O_RDWR | O_CLOEXEC);
    const std::string options = "fd=" + std::to_string(server) +
                                ",rootmode=40000,user_id=" + std::to_string(geteuid()) +
                                ",group_id=" + std::to_string(getegid());
    if (server < 0 || mount("user@host:", path.c_str(), "fuse.sshfs", 0, options.c_str()) != 0)
        return -1;
    struct {
        fuse_out_header header;
        fuse_init_out greeting;
    } reply{};
    std::array<char, requestSize> request{};
    if (read(server, request.data(), request.size()) <= 0)
        return -1;
    fuse_in_header question{};
    std::memcpy(&question, request.data(), sizeof(question));
    reply.header = {sizeof(reply), 0, question.unique};
    reply.greeting.major = FUSE_KERNEL_VERSION;
    reply.greeting.minor = FUSE_KERNEL_MINOR_VERSION;
    reply.greeting.max_write = 4096;
    return ::write(server, &reply, sizeof(reply)) == sizeof(reply) ? server : -1;
}

template<class Record>
void append(std::string &bytes, const Record &record) {
    bytes.append(reinterpret_cast<const char *>(&record), sizeof(record));
}

/// The root folder, or a file that claims more blocks than bytes can be counted.
fuse_attr attributesOf(std::uint64_t node) {
    fuse_attr attributes{};
    attributes.ino = node;
    attributes.mode = node == FUSE_ROOT_ID ? S_IFDIR | 0755 : S_IFREG | 0644;
    attributes.nlink = 1;
    attributes.size = attributes.blocks = node == FUSE_ROOT_ID ? 0 : std::uint64_t{1} << 60;
    return attributes;
}

/// The next names after `last`, as many as go into `room` bytes.
std::string namesAfter(std::uint64_t last, std::size_t room) {
    std::string list;
    while (true) {
        const std::string name = "file " + std::to_string(++last);
        const std::size_t length = FUSE_DIRENT_ALIGN(FUSE_NAME_OFFSET + name.size());
        if (list.size() + length > room)
            return list;
        fuse_dirent entry{};
        entry.ino = last + FUSE_ROOT_ID;
        entry.off = last;
        entry.namelen = static_cast<std::uint32_t>(name.size());
        entry.type = DT_REG;
        const std::size_t end = list.size() + length;
        list.append(reinterpret_cast<const char *>(&entry), FUSE_NAME_OFFSET).append(name).resize(end);
    }
}

/// Answers one request to a folder that has no end.
void answerEndlessly(int server, const char *request) {
    fuse_in_header header{};
    std::memcpy(&header, request, sizeof(header));
    const char *body = request + sizeof(header);
    std::string answer;
    int error = 0;
    if (header.opcode == FUSE_GETATTR) {
        fuse_attr_out found{};
        found.attr = attributesOf(header.nodeid);
        append(answer, found);
    } else if (header.opcode == FUSE_LOOKUP) {
        fuse_entry_out found{};
        found.nodeid = std::stoull(std::string(body).substr(5)) + FUSE_ROOT_ID;
        found.attr = attributesOf(found.nodeid);
        append(answer, found);
    } else if (header.opcode == FUSE_OPENDIR) {
        append(answer, fuse_open_out{});
    } else if (header.opcode == FUSE_READDIR) {
        fuse_read_in range{};
        std::memcpy(&range, body, sizeof(range));
        answer = namesAfter(range.offset, range.size);
    } else if (header.opcode == FUSE_FORGET || header.opcode == FUSE_BATCH_FORGET) {
        return; // these get no answer
    } else {
        error = -ENOSYS;
    }
    std::string reply;
    append(reply, fuse_out_header{static_cast<std::uint32_t>(sizeof(fuse_out_header) + answer.size()), error,
                                  header.unique});
    reply += answer;
    static_cast<void>(::write(server, reply.data(), reply.size()));
}

/// Mounts a new file system at `path`, which `maker` makes in an image of this size beside it.
bool mountImage(const std::string &path, const std::string &size, const std::string &maker) {
    const std::string commands = "PATH=$PATH:/usr/sbin:/sbin; set -e; truncate -s \"$2\" \"$1.image\"; "
                                 "\"$3\" -q \"$1.image\"; mount -o loop \"$1.image\" \"$1\"";
    const auto run = runProcess(platformTools().shell, {"-c", commands, "sh", path, size, maker},
                                StandardError::withOutput);
    return run && run->exitStatus == 0;
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

bool mountBtrfs(const std::string &path) {
    return mountImage(path, "128M", "mkfs.btrfs");
}

bool mountXfs(const std::string &path) {
    return mountImage(path, "320M", "mkfs.xfs"); // the least that it takes
}

bool mountExt4(const std::string &path) {
    return mountImage(path, "128M", "mkfs.ext4");
}

bool makeSubvolume(const std::string &folder, const std::string &name) {
    btrfs_ioctl_vol_args arguments{};
    name.copy(arguments.name, sizeof(arguments.name) - 1);
    const int descriptor = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const bool isMade = ioctl(descriptor, BTRFS_IOC_SUBVOL_CREATE, &arguments) == 0;
    close(descriptor);
    return isMade;
}

bool makeSnapshot(const std::string &original, const std::string &folder, const std::string &name,
                  bool isReadOnly) {
    btrfs_ioctl_vol_args_v2 arguments{};
    name.copy(arguments.name, sizeof(arguments.name) - 1);
    arguments.flags = isReadOnly ? BTRFS_SUBVOL_RDONLY : 0;
    const int source = open(original.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    const int parent = open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    arguments.fd = source;
    const bool isMade = ioctl(parent, BTRFS_IOC_SNAP_CREATE_V2, &arguments) == 0;
    close(source);
    close(parent);
    return isMade;
}

void keepTemporaryFoldersInMemory(const std::string &path) {
    if (ownMounts() && mountMemory(path))
        setenv("TMPDIR", path.c_str(), 1);
}

bool mountSilent(const std::string &path) {
    const int server = mountServed(path);
    if (server < 0)
        return false;
    std::thread([server] {
        std::array<char, requestSize> ignored{};
        while (read(server, ignored.data(), ignored.size()) > 0) {
        }
    }).detach();
    return true;
}

bool mountEndless(const std::string &path) {
    const int server = mountServed(path);
    if (server < 0)
        return false;
    std::thread([server] {
        std::vector<char> request(requestSize);
        while (read(server, request.data(), request.size()) > 0)
            answerEndlessly(server, request.data());
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
