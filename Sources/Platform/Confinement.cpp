#include "Platform/Confinement.h"

#include "Platform/Folder.h"
#include "Platform/Host.h"

#include <algorithm>
#include <mutex>
#include <utility>

namespace brimvale {

namespace {

struct Confined {
    Confinement confinement;
    FileIdentity folder;
};

struct Shared {
    std::mutex mutex;
    std::shared_ptr<const Confined> confined;
};

Shared &shared() {
    static Shared one;
    return one;
}

std::shared_ptr<const Confined> confined() {
    const std::lock_guard lock(shared().mutex);
    return shared().confined;
}

} // namespace

bool confine(std::optional<Confinement> confinement) {
    std::shared_ptr<const Confined> next;
    if (confinement) {
        const std::optional<FileIdentity> folder =
            Folder::at(confinement->folder.path(), Folder::Links::refuse).identity();
        if (!folder)
            return false;
        next = std::make_shared<const Confined>(Confined{*std::move(confinement), *folder});
    }
    Host::useRoot(next ? next->confinement.folder.path() : "/");
    const std::lock_guard lock(shared().mutex);
    shared().confined = std::move(next);
    return true;
}

std::shared_ptr<const Confinement> confinement() {
    const std::shared_ptr<const Confined> found = confined();
    return found ? std::shared_ptr<const Confinement>(found, &found->confinement) : nullptr;
}

bool isWithinConfinement(const std::vector<FileIdentity> &ancestors) {
    const std::shared_ptr<const Confined> found = confined();
    return !found || std::find(ancestors.begin(), ancestors.end(), found->folder) != ancestors.end();
}

std::optional<std::string> pathInConfinement(const std::string &path) {
    const std::shared_ptr<const Confined> found = confined();
    if (!found || !isAtOrUnder(path, found->confinement.folder.path()))
        return std::nullopt;
    const std::string inside = path.substr(found->confinement.folder.path().size());
    return inside.empty() ? "/" : inside;
}

} // namespace brimvale
