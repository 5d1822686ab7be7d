#pragma once

#include "Catalogs/ProgramSigns.h"
#include "Platform/Host.h"

#include <cstdint>
#include <set>
#include <string>
#include <vector>

namespace brimvale::linuxCatalog {

/// The programs that were running, and the files that were open, when this was made. Other users' open files
/// are visible to the administrator only.
class RunningPrograms {
public:
    /// Reads the processes of the host. Without `knowsOpenFiles` it is faster.
    RunningPrograms(const Host &host, bool knowsOpenFiles);

    [[nodiscard]] bool has(const ProgramSigns &signs) const;

    /// Whether a process has a file open at or inside an absolute path, or holds a lock on it.
    [[nodiscard]] bool use(const std::string &path) const;

private:
    void addProcess(const std::string &process);
    void addOpenFiles(const std::string &process);
    void addLocks(const std::string &table);
    [[nodiscard]] bool isHeld(const std::string &lock) const;

    std::string processes_; ///< the folder with one subfolder for each
    std::set<std::string, std::less<>> names_;
    std::set<std::string, std::less<>> openFiles_;
    std::set<std::uint64_t> lockedInodes_;
};

/// Which of these programs are running on the host.
[[nodiscard]] std::vector<bool> areRunning(const Host &host, const std::vector<ProgramSigns> &programs);

} // namespace brimvale::linuxCatalog
