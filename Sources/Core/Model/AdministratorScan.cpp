#include "Core/Model/AdministratorScan.h"

#include "Base/ByteSource.h"
#include "Core/Export/ListingReader.h"
#include "Core/Model/ScanSession.h"
#include "Core/Model/Workers.h"
#include "Core/Removal/RemovalActions.h"
#include "Platform/Confinement.h"
#include "Platform/FileStatus.h"
#include "Platform/Host.h"
#include "Platform/MainBundle.h"

#include <memory>
#include <string_view>
#include <utility>
#include <variant>

namespace brimvale {

namespace {

/// A scan as administrator: its tree, or why there is none.
struct Outcome {
    std::shared_ptr<FSNode> tree;
    ScanOrigin origin;
    std::string failure;
};

class PrintedText final : public ByteSource {
public:
    explicit PrintedText(std::string_view text) : text_(text) {}
    [[nodiscard]] std::optional<std::string_view> next() override { return std::exchange(text_, {}); }

private:
    std::string_view text_;
};

FileURL commandLineTool() {
    return mainBundle().url.parent().appending("brimvalectl");
}

Outcome withoutTree(std::string sentence) {
    return {.tree = nullptr, .origin = {}, .failure = std::move(sentence)};
}

/// Blocks while the system's question is open and the tool runs.
Outcome scanned(const FileURL &folder, RemovalActions &actions) {
    const auto run =
        actions.runProgramAsAdministrator({commandLineTool().path(), "scan", "--json", "--", folder.path()});
    if (const auto *error = std::get_if<PrivilegedRunError>(&run))
        return withoutTree(error->message.value_or(
            "No password was entered, or the system did not ask for one. Nothing has changed."));
    PrintedText printed(std::get<ProcessResult>(run).output);
    Result<ImportedTree, ImportFault> read = readListing(printed);
    auto *tree = std::get_if<ImportedTree>(&read);
    if (tree == nullptr || tree->root->path() != folder.path())
        return withoutTree("The program that scans as administrator gave no list.");
    return {
        .tree = std::move(tree->root), .origin = ScanOrigin::here(tree->origin.unreadable), .failure = {}};
}

} // namespace

AdministratorScan::AdministratorScan(Workers &workers, RemovalActions &actions, ScanSession &scan)
    : workers_(workers), actions_(actions), scan_(scan) {}

bool AdministratorScan::isPossible() {
    const std::string runner = Host::current().tools.administratorRunner;
    return Host::currentSystem() == System::linux && !confinement() && !runner.empty() &&
           fileStatus(runner) && fileStatus(commandLineTool().path());
}

void AdministratorScan::start(const FileURL &folder, const std::function<void(const std::string &)> &failed) {
    if (state().isRunning)
        return;
    update([](AdministratorScanState &state) { state.isRunning = true; });
    workers_.run(
        this, [folder, &actions = actions_] { return scanned(folder, actions); },
        [this, failed, shown = std::weak_ptr(scan_->tree)](Outcome outcome) {
            update([](AdministratorScanState &state) { state.isRunning = false; });
            if (outcome.tree == nullptr)
                return failed(outcome.failure);
            if (scan_->isScanning || scan_->tree != shown.lock())
                return failed("Another scan has begun since, so this one is not shown.");
            scan_.showImported(std::move(outcome.tree),
                               {.file = {}, .origin = std::move(outcome.origin), .isByAdministrator = true});
        });
}

} // namespace brimvale
