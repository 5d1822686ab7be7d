#include "Core/Storage/AdministratorSizes.h"

#include "Base/Text.h"
#include "Core/Removal/RemovalActions.h"
#include "Core/Scan/MeasuredItem.h"
#include "Core/Storage/CleanupEntries.h"
#include "Platform/FileStatus.h"
#include "Platform/MainBundle.h"

#include <QByteArray>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <algorithm>
#include <cstdint>

namespace brimvale {

namespace {

/// The program and its arguments. A name that is not UTF-8 could not be found again in what it prints.
std::vector<std::string> measuringCommand(const std::vector<std::string> &places) {
    const FileURL program = mainBundle().url.parent().appending("brimvalectl");
    std::vector<std::string> words = {program.path(), "size", "--json", "--"};
    for (const std::string &place : places)
        if (isValidUtf8(place) && words.size() < mostAdministratorPlaces)
            words.push_back(place);
    return words;
}

/// The rows of the places in what the program printed, as far as they were asked for.
std::vector<CleanupEntry> rowsIn(const std::string &printed, const std::vector<std::string> &places) {
    const QJsonDocument document = QJsonDocument::fromJson(QByteArray::fromStdString(printed));
    std::vector<CleanupEntry> rows;
    for (const QJsonValue &one : document.array()) {
        const std::string path = one[QLatin1String("path")].toString().toStdString();
        const std::int64_t bytes = one[QLatin1String("size")].toInteger(-1);
        const bool wasAsked = std::find(places.begin(), places.end(), path) != places.end();
        if (!wasAsked || bytes < 0 || bytes > mostBelievedBytes)
            continue;
        const std::optional<FileStatus> status = fileStatus(path);
        const MeasuredItem item{.bytes = bytes,
                                .modified = status ? status->modified : std::nullopt,
                                .isFolder = status && status->kind == FileKind::directory};
        for (CleanupEntry &row : CleanupEntries::measured({path}, {item}, 0))
            rows.push_back(std::move(row));
    }
    return rows;
}

} // namespace

Result<std::vector<CleanupEntry>, PrivilegedRunError>
measureAsAdministrator(const std::vector<std::string> &places, const std::optional<FileURL> &volume,
                       RemovalActions &actions) {
    const auto run = actions.runProgramAsAdministrator(measuringCommand(places));
    if (const auto *error = std::get_if<PrivilegedRunError>(&run))
        return *error;
    std::vector<CleanupEntry> rows = rowsIn(std::get<ProcessResult>(run).output, places);
    if (rows.empty())
        return PrivilegedRunError{"The program that measures as administrator gave no sizes."};
    if (volume)
        CleanupEntries::markElsewhere(rows, *volume);
    return rows;
}

} // namespace brimvale
