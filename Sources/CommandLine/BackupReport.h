#pragma once

#include "CommandLine/Output.h"
#include "Core/Backup/Archiver.h"
#include "Core/Backup/BackupManifest.h"

namespace brimvale::commandLine {

/// Prints the result of "backup": the copies and their folder on `output`, the failures on standard error.
void printBackup(Output &output, const ArchiveResult &result);

/// Prints the same as one JSON document, and the failures on standard error as well.
void printBackupDocument(Output &output, const ArchiveResult &result);

/// Prints the result of "backup --verify".
void printVerification(Output &output, const BackupManifest::Verification &verification);
void printVerificationDocument(Output &output, const BackupManifest::Verification &verification);

} // namespace brimvale::commandLine
