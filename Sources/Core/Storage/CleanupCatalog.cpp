#include "Core/Storage/CleanupCatalog.h"

#include "Base/Bytes.h"
#include "Catalogs/Catalog.h"
#include "Core/Storage/CleanupEntries.h"

#include <algorithm>
#include <memory>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace brimvale {

namespace {

/// The items of each target: those that the catalog finds, or what its roots say.
std::vector<CleanupFinding> findingsOf(const std::vector<CleanupTarget> &targets, const Host &host) {
    std::vector<std::string> ids;
    for (const CleanupTarget &target : targets)
        ids.push_back(target.id);
    if (const auto find = catalogOf(host.system).cleanupFindings)
        return find(host, ids);
    std::vector<CleanupFinding> findings;
    for (const CleanupTarget &target : targets) {
        CleanupFinding finding{.roots = target.roots};
        for (std::string &path : CleanupEntries::paths(target.roots, target.contentsOnly))
            finding.items.push_back({std::move(path)});
        findings.push_back(std::move(finding));
    }
    return findings;
}

/// The items, and after them the companions of each.
SubtreeSizes::Group pathsToMeasure(const CleanupFinding &finding) {
    SubtreeSizes::Group paths;
    for (const CleanupFinding::Item &item : finding.items)
        paths.push_back(item.path);
    for (const CleanupFinding::Item &item : finding.items)
        if (item.notes)
            for (const ItemPin &companion : item.notes->companions)
                paths.push_back(companion.place.path());
    return paths;
}

std::vector<CleanupEntry> entriesOf(const CleanupFinding &finding, std::vector<MeasuredItem> measured) {
    std::vector<std::string> paths;
    std::unordered_map<std::string_view, std::shared_ptr<const CleanupNotes>> notes;
    std::size_t companion = finding.items.size();
    for (const CleanupFinding::Item &item : finding.items) {
        const std::size_t companions = item.notes ? item.notes->companions.size() : 0;
        for (std::size_t i = 0; i < companions; ++i)
            measured[paths.size()].bytes =
                checkedAdd(measured[paths.size()].bytes, measured[companion++].bytes);
        paths.push_back(item.path);
        notes.emplace(item.path, item.notes);
    }
    measured.resize(paths.size());
    std::vector<CleanupEntry> entries = CleanupEntries::measured(paths, measured);
    for (CleanupEntry &entry : entries)
        entry.notes = notes.at(entry.url.path());
    return entries;
}

} // namespace

std::vector<CleanupTarget> CleanupCatalog::definitions(const Host &host) {
    return catalogOf(host.system).cleanupTargets(host);
}

CleanupTarget CleanupCatalog::measure(CleanupTarget target, const StopFlag &cancelled, const Host &host,
                                      WalkPool &pool) {
    CleanupTarget measured;
    measureAll(
        {std::move(target)}, [&](CleanupTarget one) { measured = std::move(one); }, cancelled, host, pool);
    return measured;
}

SubtreeSizes::Request CleanupCatalog::request(const std::vector<CleanupTarget> &targets,
                                              const std::function<void(CleanupTarget)> &finished,
                                              const Host &host) {
    std::vector<CleanupFinding> findings = findingsOf(targets, host);
    std::vector<SubtreeSizes::Group> paths;
    for (const CleanupFinding &finding : findings)
        paths.push_back(pathsToMeasure(finding));
    return {std::move(paths), [targets, finished, findings = std::move(findings)](
                                  std::size_t i, const std::vector<MeasuredItem> &items) {
                CleanupTarget measured = targets[i];
                measured.entries = entriesOf(findings[i], items);
                measured.scanned = true;
                measured.hasUnreadableRoot = CleanupEntries::hasUnreadableRoot(findings[i].roots);
                finished(std::move(measured));
            }};
}

void CleanupCatalog::measureAll(const std::vector<CleanupTarget> &targets,
                                const std::function<void(CleanupTarget)> &finished, const StopFlag &cancelled,
                                const Host &host, WalkPool &pool) {
    SubtreeSizes::measureTogether({request(targets, finished, host)}, ScanOptions::standard(host), cancelled,
                                  pool);
}

std::vector<std::string> CleanupCatalog::runningPrograms(const std::vector<CleanupEntry> &entries,
                                                         const Host &host) {
    std::vector<ProgramSigns> programs;
    for (const CleanupEntry &entry : entries)
        if (entry.notes && entry.notes->program)
            programs.push_back(*entry.notes->program);
    const Catalog &catalog = catalogOf(host.system);
    if (programs.empty() || catalog.areRunning == nullptr)
        return {};
    const std::vector<bool> areRunning = catalog.areRunning(host, programs);
    std::vector<std::string> names;
    for (std::size_t i = 0; i < programs.size(); ++i)
        if (areRunning[i] && std::find(names.begin(), names.end(), programs[i].name) == names.end())
            names.push_back(programs[i].name);
    return names;
}

} // namespace brimvale
