#pragma once

#include "Base/FileURL.h"
#include "Core/Storage/CategoryPolicy.h"
#include "Platform/FileStatus.h"
#include "Platform/Host.h"
#include "Platform/OpenedItem.h"

#include <cstddef>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

namespace brimvale {

/// The places that storage categories protect. Knows where they are when it is made: make one for each
/// question. Reads the disk; use it off the main thread.
class CategoryPolicies {
public:
    explicit CategoryPolicies(const Host &host = Host::current());

    /// The policy for an item at or in a place of a category that is read-only or backs up first; nothing for
    /// any other. The innermost category decides. A folder with a place of a read-only category inside has
    /// its policy, too. Links and other spellings of a place do not matter.
    [[nodiscard]] std::optional<CategoryPolicy> of(const FileURL &item) const;

    /// The same for an item that was opened and is no folder.
    [[nodiscard]] std::optional<CategoryPolicy> ofFile(const OpenedItem &file) const;

private:
    void add(const std::string &folder, const std::optional<CategoryPolicy> &policy);
    [[nodiscard]] const std::optional<CategoryPolicy> *byPath(const FileURL &item) const;
    [[nodiscard]] const std::optional<CategoryPolicy> *byPlace(const FileURL &item) const;
    [[nodiscard]] const std::optional<CategoryPolicy> *byPlace(const OpenedItem &item) const;
    [[nodiscard]] std::optional<CategoryPolicy> ofContents(const FileURL &item) const;

    using Policies = std::vector<std::optional<CategoryPolicy>>;
    Policies policies_; ///< one for each place; nothing where a place is not protected
    std::unordered_map<FileURL, std::size_t> paths_;
    std::unordered_map<FileIdentity, std::size_t> places_;
    std::unordered_map<FileIdentity, std::size_t> ancestors_; ///< of the read-only places
};

} // namespace brimvale
