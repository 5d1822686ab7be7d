#pragma once

#include "CommandLine/Output.h"
#include "Core/Backup/Archiver.h"
#include "Core/Backup/BackupManifest.h"

namespace brimvale::commandLine {

/// What "backup" prints of a finished backup: what was copied and where on `output`, what failed on standard
/// error.
void printBackup(Output &output, const ArchiveResult &result);

/// The same as one JSON document; failures are on standard error as well.
void printBackupDocument(Output &output, const ArchiveResult &result);

/// What "backup --verify" prints.
void printVerification(Output &output, const BackupManifest::Verification &verification);
void printVerificationDocument(Output &output, const BackupManifest::Verification &verification);

} // namespace brimvale::commandLine
