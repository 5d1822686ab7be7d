#include "Core/Duplicates/RemovableFiles.h"

#include "Base/Text.h"
#include "Core/Text/Formatting.h"
#include "Platform/FileStatus.h"
#include "Platform/SharedSpace.h"

#include <algorithm>
#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

namespace brimvale {

namespace {

void keep(DuplicateFile &file, const std::string &reason) {
    if (file.keptBecause.empty())
        file.keptBecause = reason;
}

/// A file as every mount shows it: two files are not changed in the same nanosecond, where a file system
/// counts these. Nothing elsewhere.
std::optional<std::string> onAllMounts(const EntryRecord &record) {
    const auto touched = record.touched.time_since_epoch();
    if (touched % std::chrono::seconds(1) == Date::duration{})
        return std::nullopt;
    return std::to_string(touched.count())
        .append(" ")
        .append(std::to_string(record.modified.time_since_epoch().count()));
}

/// Files by something that they have in common, each group in their order.
using Sharing = std::map<std::string, std::vector<std::size_t>>;

constexpr std::size_t mostFolders = 16; ///< each keeps a descriptor

} // namespace

/// Where a file is stored, where its file system may store several files in one place. Notes what that means
/// for the file.
std::optional<std::string> RemovableFiles::placeOf(DuplicateFile &file) {
    const auto known = sharingDevices_.find(file.record.identity.device);
    if (known != sharingDevices_.end() && !known->second)
        return std::nullopt;
    const SteadyFile opened(file.url.path());
    if (!opened.isOpen() || opened.record().identity != file.record.identity)
        return std::nullopt;
    const bool mayShare = mayShareBytes(opened);
    sharingDevices_[file.record.identity.device] = mayShare;
    if (!mayShare)
        return std::nullopt;
    file.mayShare = file.pin.has_value(); // the guards admit it
    const std::optional<StoredBytes> stored = storedBytes(opened);
    if (!stored)
        return std::nullopt;
    file.freesLess = stored->areShared;
    return stored->place();
}

/// Keeps files that take no space of their own. Returns how many files are left without the second of each.
std::size_t RemovableFiles::keepThoseWithoutSpace(std::vector<DuplicateFile> &files) {
    const bool areOnOneDevice = std::all_of(files.begin(), files.end(), [&](const DuplicateFile &file) {
        return file.record.identity.device == files.front().record.identity.device;
    });
    Sharing byPlace;
    Sharing byMount;
    for (std::size_t i = 0; i < files.size(); ++i) {
        if (const std::optional<std::string> place = placeOf(files[i]))
            byPlace[*place].push_back(i);
        else if (const auto self = areOnOneDevice ? std::nullopt : onAllMounts(files[i].record))
            byMount[*self].push_back(i);
    }
    std::size_t count = files.size();
    const auto keepAll = [&](const std::vector<std::size_t> &same, std::string_view reason) {
        for (std::size_t i = 0; i < same.size() && same.size() > 1; ++i) {
            const DuplicateFile &other = files[same[i == 0 ? 1 : 0]];
            keep(files[same[i]], std::string(reason).append(displayText(other.url.path())).append("”."));
        }
        count -= same.size() - 1;
    };
    bool hasLender = false; // files that share already only lend their space, and one of them is enough
    for (const auto &[place, same] : byPlace) {
        keepAll(same, "It already shares its space with “");
        for (const std::size_t i : same)
            if (same.size() > 1) {
                files[i].lends = files[i].mayShare && !std::exchange(hasLender, true);
                files[i].mayShare = files[i].lends;
            }
    }
    for (const auto &[self, same] : byMount) {
        const std::uint64_t device = files[same.front()].record.identity.device;
        if (std::any_of(same.begin(), same.end(),
                        [&](std::size_t i) { return files[i].record.identity.device != device; }))
            keepAll(same, "It may be the same file as “");
    }
    return count;
}

RemovalGate::Answer RemovableFiles::open(const FileURL &file) {
    const std::string folder = file.parent().path();
    const auto known = folders_.find(folder);
    if (known != folders_.end())
        return gate_.openBeside(known->second, file);
    RemovalGate::Answer answer = gate_.open(file, std::nullopt);
    if (const auto *item = std::get_if<OpenedItem>(&answer)) {
        if (folders_.size() == mostFolders)
            folders_.clear();
        if (Result<OpenedItem, int> again = OpenedItem::beside(*item, file.fileName());
            auto *opened = std::get_if<OpenedItem>(&again))
            folders_.emplace(folder, std::move(*opened));
    }
    return answer;
}

void RemovableFiles::admit(DuplicateFile &file) {
    const RemovalGate::Answer answer = open(file.url);
    if (const auto *refusal = std::get_if<std::string>(&answer))
        return keep(file, *refusal);
    const auto *item = std::get_if<OpenedItem>(&answer);
    if (item == nullptr || item->identity().file != file.record.identity)
        return keep(file, "It has changed.");
    file.pin = item->pin();
    if (const std::optional<CategoryPolicy> policy = policies_.ofFile(*item))
        keep(file, policy->title + ": " + policy->warning);
}

bool RemovableFiles::complete(DuplicateGroup &group) {
    for (DuplicateFile &file : group.files) {
        admit(file);
        if (file.names > 1)
            keep(file, "It has " + Fmt::count(file.names) + " names, so removing one of them frees nothing.");
    }
    const std::size_t count = keepThoseWithoutSpace(group.files);
    rule_.sort(group.files);
    return count > 1;
}

} // namespace brimvale
