#include "CommandLine/RemovalOperands.h"

#include "CommandLine/GivenPath.h"
#include "Core/Removal/Remover.h"

#include <cstddef>
#include <filesystem>
#include <system_error>
#include <unordered_map>

namespace brimvale::commandLine {

namespace {

/// The place of the item itself, with the links in its parent's path resolved.
FileURL realPlace(const FileURL &item) {
    const FileURL standardized = item.standardized();
    std::error_code error;
    const std::filesystem::path folder = std::filesystem::canonical(standardized.parent().path(), error);
    return error ? standardized : FileURL(folder.native()).appending(standardized.fileName());
}

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

std::optional<RemovalOperands> RemovalOperands::from(const std::vector<std::string> &given) {
    struct Operand {
        FileURL url;
        FileURL place;
        bool isAdmitted;
    };
    std::vector<Operand> operands;
    Places admittedPlaces;
    for (const std::string &path : given) {
        const Result<FileURL> resolved = placeToRemove(path);
        if (const auto *error = std::get_if<FileError>(&resolved)) {
            printPathError(path, *error);
            return std::nullopt;
        }
        const auto &url = std::get<FileURL>(resolved);
        operands.push_back({url, realPlace(url), !Remover::check(url)});
        if (operands.back().isAdmitted)
            admittedPlaces.try_emplace(operands.back().place, operands.size() - 1);
    }

    RemovalOperands result;
    for (std::size_t i = 0; i < operands.size(); ++i) {
        const Operand &operand = operands[i];
        if (goesWithAnother(operand.place, i, admittedPlaces))
            continue;
        result.urls.push_back(operand.url);
        if (operand.isAdmitted)
            result.admitted.push_back(operand.url);
    }
    return result;
}

} // namespace brimvale::commandLine
