#include "Core/Storage/StorageCategories.h"

#include "Catalogs/Catalog.h"
#include "Core/Storage/CleanupEntries.h"

#include <algorithm>
#include <array>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

/// Smaller folders do not explain a large System Data.
constexpr std::int64_t smallestSystemDataRow = 10'000'000;

struct NamedColor {
    std::string_view name;
    Color color;
};

constexpr Color gray = {0.55, 0.56, 0.60};
constexpr std::array<NamedColor, 14> colors = {{{"blue", {0.36, 0.52, 0.80}},
                                                {"orange", {0.84, 0.62, 0.36}},
                                                {"pink", {0.78, 0.51, 0.60}},
                                                {"green", {0.45, 0.67, 0.49}},
                                                {"indigo", {0.49, 0.49, 0.74}},
                                                {"red", {0.79, 0.46, 0.43}},
                                                {"cyan", {0.41, 0.67, 0.74}},
                                                {"purple", {0.60, 0.49, 0.74}},
                                                {"teal", {0.39, 0.65, 0.62}},
                                                {"yellow", {0.83, 0.72, 0.40}},
                                                {"brown", {0.64, 0.55, 0.45}},
                                                {"magenta", {0.72, 0.47, 0.69}},
                                                {"olive", {0.59, 0.64, 0.39}},
                                                {"gray", gray}}};

std::string standardised(const std::string &path) {
    return FileURL(path).standardized().path();
}

/// Whether the contents of a folder in the home, or at the top of the disk, are rows themselves.
bool isDividedFurther(const std::string &folder, const std::vector<std::string> &roots, const Host &host) {
    const bool isInHome = folder != host.home.path() && isAtOrUnder(folder, host.home.path());
    return (isInHome || FileURL(folder).parent().path() == host.placeOf("/")) &&
           std::any_of(roots.begin(), roots.end(),
                       [&](const std::string &root) { return isAtOrUnder(root, folder); });
}

/// The folders that may become rows of System Data.
std::vector<std::string> systemDataCandidates(const Host &host) {
    const PathSet claimed = StorageCategories::claimedPaths(host);
    const std::vector<std::string> roots = StorageCategories::systemDataRoots(host);
    const bool listsWholeHome = catalogOf(host.system).systemDataListsWholeHome;
    std::vector<std::string> candidates;
    for (const std::string &root : roots) {
        const bool isHome = root == host.home.path();
        for (const std::string &name : CleanupEntries::names(root)) {
            // The visible folders in the home and the Trash belong to other categories.
            if (isHome && !listsWholeHome && (!name.starts_with('.') || name == ".Trash"))
                continue;
            std::string path = standardised(joinPath(root, name));
            if (!claimed.contains(path) && !isDividedFurther(path, roots, host))
                candidates.push_back(std::move(path));
        }
    }
    return candidates;
}

std::vector<CleanupEntry> systemDataEntries(const std::vector<std::string> &candidates,
                                            const std::vector<MeasuredItem> &items,
                                            const std::optional<FileURL> &volume) {
    std::vector<CleanupEntry> entries = CleanupEntries::measured(candidates, items, smallestSystemDataRow);
    // One folder may be in two of the roots. The sort has kept its two rows in order.
    PathSet taken;
    std::erase_if(entries, [&](const CleanupEntry &entry) { return !taken.insert(entry.url.path()).second; });
    if (volume)
        CleanupEntries::markElsewhere(entries, *volume);
    return entries;
}

/// The places that may become rows of a category.
SubtreeSizes::Group rowPaths(const StorageCategory &category) {
    SubtreeSizes::Group paths = CleanupEntries::paths(category.roots, category.listsContents);
    if (!category.exceptions.empty())
        std::erase_if(paths, [&](const std::string &path) {
            return std::find(category.exceptions.begin(), category.exceptions.end(), path) !=
                   category.exceptions.end();
        });
    return paths;
}

MeasuredCategory measuredCategory(const StorageCategory &category, const std::vector<std::string> &paths,
                                  const std::vector<MeasuredItem> &items,
                                  const std::optional<FileURL> &volume) {
    const std::int64_t minimum = StorageCategories::smallestRow(category);
    MeasuredCategory measured{.category = category,
                              .entries = CleanupEntries::measured(paths, items, minimum)};
    if (minimum == 0) // what has gone away has no bytes either
        std::erase_if(measured.entries, [](const CleanupEntry &entry) { return !entry.pin; });
    if (volume)
        CleanupEntries::markElsewhere(measured.entries, *volume);
    measured.size = CleanupEntries::sizeHere(measured.entries);
    measured.measured = true;
    measured.hasUnreadableRoot = CleanupEntries::hasUnreadableRoot(category.roots);
    measured.incomplete = CleanupEntries::incompletePaths(paths, items);
    return measured;
}

} // namespace

std::vector<StorageCategory> StorageCategories::all(const Host &host) {
    return catalogOf(host.system).storageCategories(host, otherUserRoots(host));
}

std::vector<std::string> StorageCategories::otherUserRoots(const Host &host) {
    const OtherUsers &others = catalogOf(host.system).otherUsers;
    const std::string_view own = host.home.fileName();
    std::vector<std::string> roots;
    if (!others.shared.empty())
        roots.push_back(joinPath(others.homes, others.shared));
    for (const std::string &name : CleanupEntries::names(host.placeOf(others.homes)))
        if (name != own && name != others.shared && !name.starts_with('.'))
            roots.push_back(joinPath(others.homes, name));
    return roots;
}

PathSet StorageCategories::claimedPaths(const Host &host) {
    PathSet claimed;
    for (const StorageCategory &category : all(host))
        for (const std::vector<std::string> *places : {&category.roots, &category.alsoCovers})
            for (const std::string &place : *places)
                claimed.insert(standardised(place));
    for (const std::string &path : catalogOf(host.system).skippedPaths)
        claimed.insert(host.placeOf(path));
    claimed.merge(ScanOptions::cloudProviderRoots(host));
    return claimed;
}

std::vector<std::string> StorageCategories::systemDataRoots(const Host &host) {
    return catalogOf(host.system).systemDataRoots(host);
}

std::int64_t StorageCategories::smallestRow(const StorageCategory &category) {
    if (std::holds_alternative<TrashAction>(category.action))
        return 0; // whatever is there can be put back
    return category.measurement == CategoryMeasurement::remainder ? smallestSystemDataRow : 1;
}

Color StorageCategories::color(const StorageCategory &category) {
    return colorNamed(category.colorName).value_or(gray);
}

std::optional<Color> StorageCategories::colorNamed(std::string_view name) {
    const auto found =
        std::find_if(colors.begin(), colors.end(), [&](const NamedColor &one) { return one.name == name; });
    return found == colors.end() ? std::nullopt : std::optional(found->color);
}

MeasuredCategory StorageCategories::measure(const StorageCategory &category, const StopFlag &cancelled,
                                            const Host &host, WalkPool &pool,
                                            const std::optional<FileURL> &volume) {
    const SubtreeSizes::Group paths = rowPaths(category);
    MeasuredCategory measured;
    SubtreeSizes::measure(
        {paths}, ScanOptions::standard(host), cancelled,
        [&](std::size_t, const std::vector<MeasuredItem> &items) {
            measured = measuredCategory(category, paths, items, volume);
        },
        pool);
    return measured;
}

std::vector<CleanupEntry> StorageCategories::measureSystemDataEntries(const StopFlag &cancelled,
                                                                      const Host &host, WalkPool &pool) {
    return measureAll(
               {}, [](const MeasuredCategory &) {}, cancelled, host, pool)
        .entries;
}

SubtreeSizes::Request StorageCategories::request(const std::vector<StorageCategory> &categories,
                                                 const std::function<void(MeasuredCategory)> &finished,
                                                 SystemDataRows &systemData, const Host &host,
                                                 const std::optional<FileURL> &volume) {
    std::vector<StorageCategory> measured;
    std::vector<SubtreeSizes::Group> paths;
    for (const StorageCategory &category : categories) {
        if (category.measurement != CategoryMeasurement::measured)
            continue;
        measured.push_back(category);
        paths.push_back(rowPaths(category));
    }
    paths.push_back(systemDataCandidates(host));
    return {paths, [paths, measured, finished, volume, &systemData](std::size_t i,
                                                                    const std::vector<MeasuredItem> &items) {
                if (i < measured.size())
                    finished(measuredCategory(measured[i], paths[i], items, volume));
                else
                    systemData = {systemDataEntries(paths[i], items, volume),
                                  CleanupEntries::incompletePaths(paths[i], items)};
            }};
}

StorageCategories::SystemDataRows StorageCategories::measureAll(
    const std::vector<StorageCategory> &categories, const std::function<void(MeasuredCategory)> &finished,
    const StopFlag &cancelled, const Host &host, WalkPool &pool, const std::optional<FileURL> &volume) {
    SystemDataRows systemData;
    SubtreeSizes::measureTogether({request(categories, finished, systemData, host, volume)},
                                  ScanOptions::standard(host), cancelled, pool);
    return systemData;
}

} // namespace brimvale
