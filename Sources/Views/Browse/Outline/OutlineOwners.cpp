#include "Views/Browse/Outline/OutlineOwners.h"

#include "Base/Background.h"
#include "Platform/FileOwner.h"
#include "Views/Components/NodeName.h"

#include <QThreadPool>

namespace brimvale {

OutlineOwners::OutlineOwners(QObject *parent) : QObject(parent) {
    soon_.setSingleShot(true);
    connect(&soon_, &QTimer::timeout, this, &OutlineOwners::askNext);
}

OutlineOwners::~OutlineOwners() {
    outdated_.set();
}

QString OutlineOwners::nameFor(const FSNode &node) {
    if (node.isAggregate)
        return {};
    const auto [entry, isNew] = names_.try_emplace(node.path());
    if (isNew) {
        wanted_.push_back(entry->first);
        soon_.start(0);
    }
    return entry->second;
}

void OutlineOwners::forget() {
    outdated_.set();
    soon_.stop();
    names_.clear();
    wanted_.clear();
}

/// One question at a time, so that a disk that does not answer keeps one thread at most.
void OutlineOwners::askNext() {
    if (wanted_.empty() || std::exchange(isAsking_, true))
        return;
    outdated_ = StopFlag();
    inBackground(
        *QThreadPool::globalInstance(), this,
        [paths = std::exchange(wanted_, {}), outdated = outdated_] {
            Names names;
            for (const std::string &path : paths)
                if (!outdated.isSet())
                    names.emplace_back(path, displayedText(ownerOf(path).value_or("")));
            return names;
        },
        [this, outdated = outdated_](const Names &names) {
            isAsking_ = false;
            if (!outdated.isSet()) {
                for (const auto &[path, name] : names)
                    names_[path] = name;
                emit arrived();
            }
            askNext();
        });
}

} // namespace brimvale
