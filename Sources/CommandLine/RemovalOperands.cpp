#include "CommandLine/RemovalOperands.h"

#include "CommandLine/GivenPath.h"
#include "Core/Removal/PlannedRemoval.h"
#include "Core/Removal/RemovalGate.h"

#include <cstddef>
#include <optional>
#include <unordered_map>
#include <utility>
#include <variant>

namespace brimvale::commandLine {

namespace {

/// The places the guards allow, each with the first operand that names it.
using Places = std::unordered_map<FileURL, std::size_t>;

bool goesWithAnother(const FileURL &place, std::size_t operand, const Places &admitted) {
    const auto same = admitted.find(place);
    if (same != admitted.end() && same->second != operand)
        return true;
    for (FileURL folder = place; folder.path() != "/";) {
        folder = folder.parent();
        if (admitted.contains(folder))
            return true;
    }
    return false;
}

} // namespace

RemovalOperands RemovalOperands::from(const RemovalPlan &plan, std::vector<RemovalResult::Failure> &others,
                                      const StopFlag &stopped) {
    RemovalOperands operands{.items = entriesOf(plan, others, stopped), .admitted = {}};
    for (const CleanupEntry &item : operands.items)
        operands.admitted.push_back(item.url);
    return operands;
}

std::optional<RemovalOperands> RemovalOperands::from(const std::vector<std::string> &given) {
    struct Operand {
        CleanupEntry item;
        FileURL place; ///< no ancestor is a link
        bool isAdmitted;
    };
    const RemovalGate gate;
    std::vector<Operand> operands;
    Places admittedPlaces;
    for (const std::string &path : given) {
        const Result<FileURL> resolved = placeToRemove(path);
        if (const auto *error = std::get_if<FileError>(&resolved)) {
            printPathError(path, *error);
            return std::nullopt;
        }
        const auto &url = std::get<FileURL>(resolved);
        const RemovalGate::Answer answer = gate.open(url, std::nullopt);
        const auto *item = std::get_if<OpenedItem>(&answer);
        // The removal tells why an allowed item cannot be opened.
        const bool isAdmitted = !std::holds_alternative<std::string>(answer);
        operands.push_back({{.url = url, .pin = item != nullptr ? std::optional(item->pin()) : std::nullopt},
                            item != nullptr ? item->place() : url.standardized(),
                            isAdmitted});
        if (operands.back().isAdmitted)
            admittedPlaces.try_emplace(operands.back().place, operands.size() - 1);
    }

    RemovalOperands result;
    for (std::size_t i = 0; i < operands.size(); ++i) {
        const Operand &operand = operands[i];
        // A refusal is reported even if another path holds the item.
        if (operand.isAdmitted && goesWithAnother(operand.place, i, admittedPlaces))
            continue;
        result.items.push_back(operand.item);
        if (operand.isAdmitted)
            result.admitted.push_back(operand.item.url);
    }
    return result;
}

} // namespace brimvale::commandLine
