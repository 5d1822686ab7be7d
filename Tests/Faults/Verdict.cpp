#include "Faults/Verdict.h"

#include "Faults/Scene.h"
#include "Support/TemporaryFolder.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <sys/stat.h>

namespace brimvale::faults {

namespace {

namespace fs = std::filesystem;

std::string described(const fs::path &path, mode_t mode) {
    if (S_ISLNK(mode))
        return "link to " + fs::read_symlink(path).native();
    if (S_ISDIR(mode))
        return "folder";
    return S_ISREG(mode) ? "file " + testing::contentOf(path.native()) : "other";
}

Census censusOfScene() {
    Census census;
    for (const fs::directory_entry &entry : fs::recursive_directory_iterator(Scene::top())) {
        struct stat status {};
        if (lstat(entry.path().c_str(), &status) == 0)
            census[status.st_ino] = {entry.path().native().substr(Scene::top().size()),
                                     described(entry.path(), status.st_mode), status.st_mode};
    }
    return census;
}

const Entry *find(const Census &census, std::uint64_t inode) {
    const auto found = census.find(inode);
    return found != census.end() ? &found->second : nullptr;
}

bool has(const std::string &text, std::string_view part) {
    return text.find(part) != std::string::npos;
}

/// The Trash that an entry was moved into, as path from the top. Empty where it is in none.
std::string trashOf(const Entry &entry) {
    const std::string trash = entry.path.substr(0, entry.path.find("/files/"));
    return trash.ends_with("/Trash") || trash.starts_with("/.Trash") ? trash : "";
}

/// A folder and what is in it, by their paths from there.
std::map<std::string, Entry> tree(const Census &census, const std::string &folder) {
    std::map<std::string, Entry> inside;
    for (const auto &[inode, entry] : census)
        if (entry.path.starts_with(folder + "/") || entry.path == folder) {
            const std::string path = entry.path.substr(folder.size());
            inside[path] = {path, entry.what, entry.mode};
        }
    return inside;
}

std::string lastOf(const Ending &ending) {
    constexpr std::size_t longest = 300;
    const std::string &words = ending.words;
    return "status " + std::to_string(ending.status) + ": " +
           words.substr(words.size() - std::min(words.size(), longest));
}

void judgeEnding(const Ending &ending, Findings &findings) {
    if (ending.isHanging)
        findings.add(Fault::hang, lastOf(ending));
    const bool isSignalled = ending.status < 0 && ending.status != -SIGKILL;
    if (isSignalled || ending.status > 1 || has(ending.words, "Sanitizer") ||
        has(ending.words, "runtime error:") || has(ending.words, "terminate called"))
        findings.add(Fault::crash, lastOf(ending));
}

/// The words that "brimvalectl remove" has only for what it has removed.
bool isToldRemoved(const Ending &ending) {
    return has(ending.words, "removed  ");
}

} // namespace

const char *nameOf(Operation operation) {
    return operation == Operation::deletion ? "delete" : operation == Operation::trash ? "trash" : "backup";
}

std::vector<std::string> argumentsFor(Operation operation, const std::string &path, bool asks) {
    if (operation == Operation::backup)
        return {"backup", "--label", "Copy", "--into", Scene::top() + "/backups", path};
    std::vector<std::string> arguments = {"remove", path};
    if (operation == Operation::deletion)
        arguments.emplace_back("--delete");
    if (!asks)
        arguments.emplace_back("--yes");
    return arguments;
}

Verdict::Verdict(Operation operation) : operation_(operation), others_(censusOfScene()) {
    for (auto one = others_.begin(); one != others_.end();)
        if (one->second.path.starts_with(Scene::itemInside()))
            item_.insert(others_.extract(one++));
        else
            ++one;
    std::erase_if(others_, [](const auto &one) { return one.second.path.starts_with("/fair/"); });
}

bool Verdict::hasTold(const Ending &ending) const {
    return ending.status != -SIGKILL && !wordsAreLost;
}

void Verdict::give(const Ending &ending, Findings &findings) const {
    findings.countRun();
    judgeEnding(ending, findings);
    Scene::unmountInside();
    const Census after = censusOfScene();
    judgeOthers(after, findings);
    const auto left =
        static_cast<std::size_t>(std::count_if(item_.begin(), item_.end(), [&](const auto &one) {
            const Entry *now = find(after, one.first);
            return now != nullptr && now->isAs(one.second);
        }));
    if (operation_ == Operation::backup)
        return judgeBackup(after, left, ending, findings);
    if (hasTold(ending) && isToldRemoved(ending) != (ending.status == 0))
        findings.add(Fault::lie, lastOf(ending));
    if (operation_ == Operation::trash)
        judgeTrash(after, left, ending, findings);
    else if (hasTold(ending))
        judgeDeletion(after, left, ending, findings);
}

void Verdict::judgeOthers(const Census &after, Findings &findings) const {
    for (const auto &[inode, entry] : others_) {
        const Entry *now = find(after, inode);
        if (now == nullptr || !now->isAs(entry))
            return findings.add(Fault::touched, entry.path + (now == nullptr ? " is gone" : " has changed"));
        if (!trashOf(*now).empty())
            return findings.add(Fault::touched, entry.path + " is in the Trash");
    }
}

void Verdict::judgeDeletion(const Census &after, std::size_t left, const Ending &ending,
                            Findings &findings) const {
    const bool isThere = std::any_of(item_.begin(), item_.end(), [&](const auto &one) {
        return one.second.path == Scene::itemInside() && find(after, one.first) != nullptr;
    });
    if (isToldRemoved(ending) && isThere)
        findings.add(Fault::lie, "told as removed, but there, " + lastOf(ending));
    // "Partly" or "no longer exists" are true words for what is gone without being removed as a whole.
    if (!isToldRemoved(ending) && left < item_.size() && !has(ending.words, "partly") &&
        (isThere || !has(ending.words, "no longer exists")))
        findings.add(Fault::lie, std::to_string(item_.size() - left) + " of " + std::to_string(item_.size()) +
                                     " entries are gone, but not told, " + lastOf(ending));
}

void Verdict::judgeTrash(const Census &after, std::size_t left, const Ending &ending,
                         Findings &findings) const {
    if (left < item_.size())
        return findings.add(Fault::lost, "the item is not whole, " + lastOf(ending));
    const auto top = std::find_if(item_.begin(), item_.end(),
                                  [](const auto &one) { return one.second.path == Scene::itemInside(); });
    const Entry &now = after.at(top->first);
    const std::string trash = trashOf(now);
    if (!trash.empty()) {
        const std::string name = now.path.substr(trash.size() + std::string_view("/files/").size());
        const std::string info = tree(after, trash + "/info/" + name + ".trashinfo")[""].what;
        if (!has(info, "[Trash Info]\nPath=") || !has(info, "/place/Documents\nDeletionDate="))
            findings.add(Fault::lost, now.path + " has no good info file: " + info);
    }
    if (hasTold(ending) && isToldRemoved(ending) == trash.empty())
        findings.add(Fault::lie, "it is at " + now.path + ", but " + lastOf(ending));
}

/// The original stays what it is, and a copy that is called good is one.
void Verdict::judgeBackup(const Census &after, std::size_t left, const Ending &ending,
                          Findings &findings) const {
    if (left < item_.size())
        findings.add(Fault::touched, "the original, " + lastOf(ending));
    if (ending.status != 0)
        return;
    std::string copy;
    bool hasManifest = false;
    for (const auto &[inode, entry] : after) {
        if (entry.path.starts_with("/backups/") && entry.path.ends_with("/Documents"))
            copy = entry.path;
        hasManifest = hasManifest || (entry.path.starts_with("/backups/") && entry.path.ends_with(".json"));
    }
    auto original = tree(item_, Scene::itemInside()), copied = tree(after, copy);
    // Lost modes do not make a copy bad, but are told.
    if (has(ending.words, "ermissions"))
        for (auto *entries : {&original, &copied})
            for (auto &[path, entry] : *entries)
                entry.mode = 0;
    if (copy.empty() || !hasManifest || original != copied)
        findings.add(Fault::lie, "the copy is not good, but " + lastOf(ending));
}

} // namespace brimvale::faults
