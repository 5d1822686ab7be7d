#pragma once

#include "CommandLine/Command.h"
#include "Core/Removal/RemovalResult.h"
#include "Core/Text/JsonWriter.h"
#include "Platform/RemovalProgress.h"

#include <string_view>
#include <vector>

namespace brimvale::commandLine {

/// A member that is an array of items with their reasons.
void writeReasons(JsonWriter &json, std::string_view key, const std::vector<RemovalResult::Failure> &items);

/// Writes what a removal has done, and its failures on standard error.
void reportRemoval(Output &output, const RemovalResult &result, bool isJson);

/// Ends a command that was stopped, or whose question was answered with no, before anything was removed.
ExitStatus endUnbegunRemoval(Output &output, bool isJson, ExitStatus status);

/// Ends a command whose removal has been reported.
ExitStatus endRemoval(Output &output, const RemovalResult &result, const RemovalProgress &progress);

} // namespace brimvale::commandLine
