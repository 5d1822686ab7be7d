#pragma once

#include "Catalogs/CleanupEntry.h"
#include "Catalogs/CleanupTarget.h"
#include "Catalogs/StorageCategory.h"
#include "Core/Storage/LocalSnapshot.h"
#include "Core/Storage/VolumeInfo.h"
#include "Core/Text/JsonWriter.h"

namespace brimvale::commandLine {

// Each record becomes one JSON object with its members by name: a date in ISO 8601, a place as its path, an
// enumerator by its name, a missing value as null.

void writeRecord(JsonWriter &json, const VolumeInfo &volume);
void writeRecord(JsonWriter &json, const LocalSnapshot &snapshot);
void writeRecord(JsonWriter &json, const CleanupEntry &entry);
void writeRecord(JsonWriter &json, const CleanupTarget &target);
void writeRecord(JsonWriter &json, const StorageCategory &category);
void writeRecord(JsonWriter &json, const MeasuredCategory &category);

/// An array of records.
template<class Records>
void writeRecords(JsonWriter &json, const Records &records) {
    json.beginArray();
    for (const auto &record : records)
        writeRecord(json, record);
    json.end();
}

} // namespace brimvale::commandLine
